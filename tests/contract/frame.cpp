#include "frame.h"

#include <map>
#include <memory>

static std::map<KT_U8, KT_U32> gSeen; // the last sequence number that newEvents() gave, by adapter

void ContractTest::SetUp() {
    setenv("KTRAID_SIM", (folder.path + "/state.db").c_str(), 1);
}

void start(const std::string& lab) {
    KT_API_Finalize();
    makeState(lab);
    succeed({advance(0), KT_API_Initialize()});
    gSeen.clear();
    for (KT_U8 adapter = 0; adapter < KT_Adapter_GetCount(); ++adapter)
        newEvents(adapter);
}

KT_U8 reopen() {
    KT_API_Finalize();
    return KT_API_Initialize();
}

static std::string paramsOf(const _Event& event) {
    std::vector<KT_U32> params(std::begin(event.Params), std::end(event.Params));
    while (!params.empty() && params.back() == 0)
        params.pop_back();
    std::string text;
    for (const KT_U32 param : params)
        text += (text.empty() ? "(" : ",") + std::to_string(param);
    return text.empty() ? text : text + ")";
}

std::string newEvents(KT_U8 adapter) {
    std::vector<_Event> events(255);
    KT_U8 count = 0;
    succeed({KT_EVT_GetEvent(adapter, 255, &count, events.data())});
    std::string texts;
    for (size_t i = 0; i < count; ++i) {
        const _Event& event = events[i];
        if (event.SequenceNo <= gSeen[adapter]) continue;
        gSeen[adapter] = event.SequenceNo;
        texts += (texts.empty() ? "" : " ") + std::to_string(event.Class) + "/" + std::to_string(event.Code) + ":" +
                 std::to_string(event.DeviceID) + paramsOf(event);
    }
    return texts;
}

void answer(KT_U8 expected, std::initializer_list<KT_U8> calls, Caller at) {
    EXPECT_EQ(Ints(calls.begin(), calls.end()), Ints(calls.size(), expected)) << at.file << ":" << at.line;
}

void succeed(std::initializer_list<KT_U8> calls, Caller at) {
    answer(KT_OK, calls, at);
}

_Create_LD_Param ldParam(KT_U8 level, const Ids& disks, KT_U64 kib) {
    _Create_LD_Param param = {};
    param.RaidMode = level;
    param.HDCount = static_cast<KT_U8>(disks.size());
    std::copy(disks.begin(), disks.end(), param.HDIDs);
    param.NumParityDisk = level == KT_RAID6 ? 2 : 0;
    param.StripeBlockSize = 64;
    param.SectorCoefficient = 1;
    param.Size = kib;
    return param;
}

_CreateOrModify_DG_Param dgParam(KT_U8 level, const Ids& disks, KT_U64 megabytes) {
    _CreateOrModify_DG_Param param = {};
    param.DGID = KT_NO_ID;
    param.RaidMode = level;
    param.NumParityDisk = level == KT_RAID6 ? 2 : 0;
    param.StripeBlockSize = 64;
    param.Size = megabytes;
    param.BlockSize = 512;
    param.PDCount = static_cast<KT_U8>(disks.size());
    std::copy(disks.begin(), disks.end(), param.PDIDs);
    return param;
}

KT_U8 sendPages(const std::string& bytes, const PageCall& call, KT_U16 first, bool ends) {
    const auto page = std::make_unique<_Flash_Data>();
    page->PageNum = first;
    KT_U8 status = KT_OK;
    for (size_t at = 0; at < bytes.size() && status == KT_OK; ++page->PageNum) {
        page->Size = static_cast<KT_U32>(std::min(sizeof page->Data, bytes.size() - at));
        memcpy(page->Data, bytes.data() + at, page->Size);
        at += page->Size;
        page->isLastPage = ends && at == bytes.size();
        status = call(page.get());
    }
    return status;
}

KT_U8 migrateLd(KT_U8 adapter, KT_U16 id, KT_U8 level, const Ids& disks) {
    _Create_LD_Param param = ldParam(level, disks);
    param.LDID = id;
    return KT_LD_StartMigration(adapter, &param);
}

KT_U8 migrateDg(KT_U8 adapter, KT_U16 id, KT_U8 level, const Ids& disks) {
    _CreateOrModify_DG_Param param = dgParam(level, disks);
    param.DGID = id;
    return KT_DG_StartMigration(adapter, &param, 0);
}

KT_U8 roleOf(KT_U8 adapter, KT_U16 pd) {
    return reader(KT_PD_GetHDRaidStatus, &_HD_RAID_Status_Request::hdRaidStatus)(adapter, pd).Status;
}

std::string look(KT_U8 adapter, KT_U16 vd, std::initializer_list<KT_U8> calls, Caller at) {
    succeed(calls, at);
    static const std::vector<std::string> STATUSES = {
        "online",     "degraded",       "2", "3",  "offline", "partial",   "6",
        "importable", "not importable", "9", "10", "11",      "conflicted"};
    const _LD_Info info = vdInfo(adapter, vd);
    std::string seen = STATUSES.at(info.Status);
    for (int i = 0; i < info.HDCount; ++i) {
        const KT_U16 id = info.BlockIDs[i];
        seen += id == KT_NO_ID ? " -" : " " + std::to_string(blockInfo(adapter, id).HDID);
    }
    const _LD_STATUS status = vdStatus(adapter, vd);
    EXPECT_EQ(status.Status, info.Status);
    if (status.Bga == 0) return seen;
    return seen + ", " + std::to_string(status.Bga) + "/" + std::to_string(status.BgaState) + " " +
           std::to_string(status.BgaPercentage);
}

_SMART_Attribute attribute(KT_U8 adapter, KT_U16 pd, KT_U8 id) {
    _SMART_Info info = {};
    EXPECT_EQ(KT_PD_GET_SMART_INFO(adapter, pd, &info), KT_OK);
    for (const _SMART_Attribute& found : info.Attributes)
        if (found.Id == id) return found;
    ADD_FAILURE() << "no attribute " << int{id};
    return {};
}

_Adapter_Info adapterInfo(KT_U8 adapter) {
    _Adapter_Info info = {};
    KT_U8 version = 0;
    EXPECT_EQ(KT_Adapter_GetInfo(adapter, &version, &info), KT_OK);
    EXPECT_EQ(version, 1);
    return info;
}

Config adapterConfig(KT_U8 adapter) {
    Config config = {};
    EXPECT_EQ(KT_Adapter_GetConfig(adapter, &config), KT_OK);
    return config;
}

KT_U8 configure(KT_U8 adapter, KT_U8 Config::*setting, KT_U8 value) {
    Config config = adapterConfig(adapter);
    config.*setting = value;
    return KT_Adapter_SetConfig(adapter, &config);
}
