#include "fakeLibrary.h"

#include <cstring>
#include <sstream>
#include <unistd.h>

FakeLibrary fake;

static const char fakeHelp[] = "\nhelp of the row\n";

Outcome run(CommandHandler handler, const std::string& line, const std::string& answers) {
    std::istringstream words(line);
    std::vector<std::string> argumentTexts;
    for (std::string word; words >> word;) {
        argumentTexts.push_back(word);
    }
    std::vector<char*> argv;
    for (std::string& word : argumentTexts) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    int pipeEnds[2];
    if (pipe(pipeEnds) != 0 || write(pipeEnds[1], answers.data(), answers.size()) < 0) abort();
    close(pipeEnds[1]);
    dup2(pipeEnds[0], STDIN_FILENO);
    close(pipeEnds[0]);
    _cmd_struct row = {argv[0], 0, handler, fakeHelp, ":"};
    char* text = nullptr;
    size_t size = 0;
    stream = open_memstream(&text, &size);
    int result = handler(static_cast<int>(argumentTexts.size()), argv.data(), &row);
    fclose(stream);
    stream = nullptr;
    Outcome outcome = {result, std::string(text, size)};
    free(text);
    return outcome;
}

void resetFake() {
    fake = {};
    gCurrentAdapter = 0;
    arrayBasedRaid = false;
    gAdapterInfo[0] = {};
    gAdapterInfo[0].Features = 0xFF;
    gAdapterInfo[0].LogicalDriverMode = 0x0FFF;
    gAdapterInfo[0].MaxParityDisks = 3;
    gAdapterInfo[0].DevID = 0x4701;
    fake.ld.RaidMode = fake.dg.RaidMode = KT_RAID5;
    fake.ld.BlkCount = fake.ld.HDCount = fake.dg.PDCount = 3;
    fake.ld.SectorCoefficient = 8;
    fake.dg.BlockSize = 512;
    for (KT_U16 disk = 1; disk <= 3; ++disk) {
        auto block = static_cast<KT_U16>(10 + disk);
        _Block_Info info = {};
        info.ID = block;
        info.HDID = disk;
        info.LDID = 2;
        fake.blocks.push_back(info);
        fake.ld.BlockIDs[disk - 1] = block;
        fake.dg.PDIDs[disk - 1] = disk;
        fake.role[disk].Status = KT_PD_MEMBER;
    }
}

static KT_U8 log(std::vector<std::string>& book, const std::string& name, std::initializer_list<unsigned> numbers) {
    std::string line = name;
    for (unsigned number : numbers) {
        line += " " + std::to_string(number);
    }
    book.push_back(line);
    auto found = fake.failing.find(name);
    return found == fake.failing.end() ? KT_U8{KT_OK} : found->second;
}
static KT_U8 call(const std::string& name, std::initializer_list<unsigned> numbers) {
    return log(fake.calls, name, numbers);
}

// Answers a request for one item, when it is asked for as one has to.
template <class Request, class Record>
static KT_U8 answer(const char* name, Request* request, Record (Request::*records)[1], const Record& record) {
    const _RequestHeader& header = request->header;
    if (header.requestType != KT_REQUEST_ITEM || header.numRequested != 1) return KT_ERR_INVALID_REQUEST;
    KT_U8 status = log(fake.reads, name, {header.startingIndexOrId});
    if (status != KT_OK) return status;
    (request->*records)[0] = record;
    request->header.numReturned = 1;
    request->header.nextStartingIndex = KT_LIST_END;
    return KT_OK;
}

KT_U8 KT_LD_GetInfo(KT_U8, _LD_Info_Request* request) {
    return answer("LD_GetInfo", request, &_LD_Info_Request::ldInfo, fake.ld);
}
KT_U8 KT_LD_GetStatus(KT_U8, _LD_Status_Request* request) {
    return answer("LD_GetStatus", request, &_LD_Status_Request::ldStatus, fake.ldStatus);
}
KT_U8 KT_DG_GetInfo(KT_U8, _DG_Info_Request* request) {
    return answer("DG_GetInfo", request, &_DG_Info_Request::dgInfo, fake.dg);
}
KT_U8 KT_PD_GetHDRaidStatus(KT_U8, _HD_RAID_Status_Request* request) {
    _HD_RAID_STATUS role = fake.role[request->header.startingIndexOrId];
    return answer("PD_GetHDRaidStatus", request, &_HD_RAID_Status_Request::hdRaidStatus, role);
}
KT_U8 KT_PD_GetBGAStatus(KT_U8, _HD_BGA_Status_Request* request) {
    return answer("PD_GetBGAStatus", request, &_HD_BGA_Status_Request::hdBgaStatus, fake.pdActivity);
}
KT_U8 KT_PD_GetHDInfo_Ext(KT_U8, _HD_Info_Request* request) {
    _HD_Info disk = {};
    disk.BlockSize = fake.sectorSize;
    return answer("PD_GetHDInfo_Ext", request, &_HD_Info_Request::hdInfo, disk);
}
KT_U8 KT_PD_GetHDInfo(KT_U8, _HD_Info_Request* request) {
    _HD_Info disk = {};
    disk.BlockSize = fake.sectorSize;
    return answer("PD_GetHDInfo", request, &_HD_Info_Request::hdInfo, disk);
}
KT_U8 KT_PD_GetFreeSpaceInfo(KT_U8, KT_U16 pd, _HD_FreeSpaceInfo* info) {
    info->ValidSize = info->FreeSize = fake.pdSize;
    return log(fake.reads, "PD_GetFreeSpaceInfo", {pd});
}

KT_U8 KT_BLK_GetInfo(KT_U8, _BLK_Info_Request* request) {
    if (request->header.requestType == KT_REQUEST_ITEM) {
        for (const _Block_Info& block : fake.blocks) {
            if (block.ID != request->header.startingIndexOrId) continue;
            return answer("BLK_GetInfo", request, &_BLK_Info_Request::blkInfo, block);
        }
        return KT_ERR_INVALID_BLOCK;
    }
    KT_U8 status = log(fake.reads, "BLK_GetInfo list", {});
    if (status != KT_OK) return status;
    memcpy(request->blkInfo, fake.blocks.data(), fake.blocks.size() * sizeof(_Block_Info));
    request->header.numReturned = static_cast<KT_U16>(fake.blocks.size());
    request->header.nextStartingIndex = KT_LIST_END;
    return KT_OK;
}

KT_U8 KT_LD_StartINIT(KT_U8, KT_U16 vd, KT_U8 type) {
    return call("LD_StartINIT", {vd, type});
}
KT_U8 KT_LD_StartConsistencyCheck(KT_U8, KT_U16 vd, KT_U8 fix) {
    return call("LD_StartConsistencyCheck", {vd, fix});
}
KT_U8 KT_LD_StartRebuild(KT_U8, KT_U16 vd, KT_U16 pd) {
    return call("LD_StartRebuild", {vd, pd});
}
KT_U8 KT_LD_DG_StartRebuild(KT_U8, KT_U16 dg, KT_U8 count, const KT_U16* pds) {
    return call("LD_DG_StartRebuild", {dg, count, pds[0], pds[count - 1]});
}
KT_U8 KT_PD_StartMediaPatrol(KT_U8, KT_U16 pd) {
    return call("PD_StartMediaPatrol", {pd});
}
KT_U8 KT_LD_BGAControl(KT_U8, KT_U16 vd, KT_U8 code) {
    return call("LD_BGAControl", {vd, code});
}
KT_U8 KT_DG_BGAControl(KT_U8, KT_U16 dg, KT_U8 code) {
    return call("DG_BGAControl", {dg, code});
}
KT_U8 KT_PD_BGAControl(KT_U8, KT_U16 pd, KT_U8 code) {
    return call("PD_BGAControl", {pd, code});
}
KT_U8 KT_LD_PauseAll(KT_U8 adapter) {
    return call("LD_PauseAll", {adapter});
}
KT_U8 KT_LD_GetMigratedLdSize(KT_U8, _Create_LD_Param* param) {
    KT_U8 status = log(fake.reads, "LD_GetMigratedLdSize", {param->LDID, param->RaidMode, param->NumParityDisk});
    if (status == KT_OK) param->Size = fake.migratedSize;
    return status;
}
KT_U8 KT_LD_StartMigration(KT_U8, _Create_LD_Param* param) {
    fake.ldParam = *param;
    return call("LD_StartMigration", {param->LDID});
}
KT_U8 KT_DG_StartMigration(KT_U8, _CreateOrModify_DG_Param* param, KT_U8 sizeOnly) {
    if (sizeOnly == 0) {
        fake.dgParam = *param;
        return call("DG_StartMigration", {param->DGID});
    }
    KT_U8 status = log(fake.reads, "DG_StartMigration size", {param->DGID, param->RaidMode, param->NumParityDisk});
    if (status == KT_OK) param->Size = fake.migratedSize;
    return status;
}
