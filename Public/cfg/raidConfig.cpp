#include "Public/cfg/raidConfig.h"

#include "Public/cfg/writer.h"
#include "Public/errorMsg.h"
#include "Public/listing.h"

CfgRaidHolder newCfgRaid() {
    return {static_cast<CfgRaid*>(calloc(1, sizeof(CfgRaid))), &free};
}

// A list of which only a part would be saved, or deleted, is not used at all.
static bool refuseMore(const char* what, unsigned most) {
    fprintf(stderr, "The adapter has more than %u %s, which a configuration text cannot hold.\n", most, what);
    return false;
}

static KT_U8 readSpares(CfgRaid& raid) {
    KT_U16 perPage = recordsPerPage(sizeof(_HD_RAID_STATUS), 128);
    ListEnd end =
        walkList<_HD_RAID_STATUS>(KT_PD_GetHDRaidStatus, EVERYTHING, perPage, [&](const _HD_RAID_STATUS& disk) {
            if ((disk.Status & KT_PD_SPARE) == 0) return true;
            if (raid.spareCount == CFG_MOST_SPARES) return refuseMore("spare disks", CFG_MOST_SPARES);
            raid.spares[raid.spareCount++] = disk;
            return true;
        });
    if (end.stopped || end.unallocated > 0) return KT_ERR_NO_RESOURCE;
    if (end.status != KT_OK) {
        out("\nExecutes get pd spare info  fail (error %d: %s).\n", end.status, ErrorMessage(end.status));
    }
    return end.status;
}

static KT_U8 readVirtualDisks(CfgRaid& raid) {
    KT_U16 perPage = recordsPerPage(sizeof(_LD_Info));
    ListEnd end = walkList<_LD_Info>(KT_LD_GetInfo, EVERYTHING, perPage, [&](const _LD_Info& ld) {
        if (raid.ldCount == CFG_MOST_VDS) return refuseMore("virtual disks", CFG_MOST_VDS);
        raid.lds[raid.ldCount++] = ld;
        return true;
    });
    if (end.stopped || end.unallocated > 0) return KT_ERR_NO_RESOURCE;
    if (end.status != KT_OK) {
        out("\nExecutes get ld info fail (error %d: %s).\n", end.status, ErrorMessage(end.status));
    }
    return end.status;
}

KT_U8 readCfgRaid(CfgRaid& raid) {
    KT_U8 status = readSpares(raid);
    return status == KT_OK ? readVirtualDisks(raid) : status;
}

std::vector<KT_U16> memberDisks(const _LD_Info& ld) {
    std::vector<KT_U16> disks;
    for (unsigned i = 0; i < cfgMembers(ld); ++i) {
        _BLK_Info_Request request;
        const bool there = ld.BlockIDs[i] != KT_NO_ID && getItem(KT_BLK_GetInfo, ld.BlockIDs[i], request) == KT_OK;
        disks.push_back(there ? request.blkInfo[0].HDID : KT_U16{KT_NO_ID});
    }
    return disks;
}
