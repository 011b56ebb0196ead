#include "Public/disks.h"

#include <cstring>

#include "Public/errorMsg.h"
#include "Public/listing.h"

DiskRole diskRole(KT_U8 status) {
    if ((status & KT_PD_OFFLINE) != 0) return DiskRole::Offline;
    if ((status & KT_PD_SPARE) != 0) return DiskRole::Spare;
    if ((status & KT_PD_FOREIGN) != 0) return DiskRole::Foreign;
    return DiskRole::Usable;
}

KT_U8 readDiskStatus(KT_U16 pd, KT_U8& bits) {
    _HD_RAID_Status_Request request;
    KT_U8 status = getItem(KT_PD_GetHDRaidStatus, pd, request);
    if (status != KT_OK) {
        out("Failed to get status for PD %d (error %d: %s)\n", pd, status, ErrorMessage(status));
    }
    bits = status == KT_OK ? request.hdRaidStatus[0].Status : KT_U8{0};
    return status;
}

KT_U8 findFileSystems(const PdList& disks, FileSystems& found) {
    _HD_MBR_Info info = {};
    info.HDCount = disks.count;
    memcpy(info.HDIDs, disks.ids, disks.count * sizeof disks.ids[0]);
    KT_U8 status = KT_PD_GetMBRInfo(gCurrentAdapter, &info);
    if (status != KT_OK) return status;
    for (unsigned i = 0; i < disks.count; ++i) {
        if (info.hasMBR[i] == 0) continue;
        found.ids.add("%d ", disks.ids[i]);
        ++found.count;
    }
    return KT_OK;
}

bool readDisk(KT_U16 pd, _HD_Info_Request& request, KT_U8& status) {
    status = askItem(KT_PD_GetHDInfo_Ext, pd, request);
    if (status == KT_OK && request.header.numReturned == 1) return true;
    status = askItem(KT_PD_GetHDInfo, pd, request);
    return status == KT_OK && request.header.numReturned == 1;
}

bool isSolidState(const _HD_Info& disk) {
    return (disk.HDType & KT_HD_SSD) != 0 || disk.HD_SSD_Type != 0;
}

bool readSolidState(KT_U16 pd, _HD_Info_Request& request, int& result) {
    KT_U8 status = KT_OK;
    if (!readDisk(pd, request, status)) {
        if (status == KT_OK) status = KT_ERR_FAILED;
        out("Unable to get info of PD %d (error %d : %s)\n", pd, status, ErrorMessage(status));
        result = status;
        return false;
    }
    if (isSolidState(request.hdInfo[0])) return true;
    out("PD %d is not a solid-state disk\n", pd);
    result = 1;
    return false;
}

bool sharesDisks() {
    return currentAdapter().DevID < 0x4701;
}

KT_U8 HDisFreeDiskForKelo(unsigned short pdId, unsigned short ldId) {
    // Older controllers, and the array-based ones, sort this out in their firmware.
    if (sharesDisks() || arrayBasedRaid) return KT_OK;
    bool taken = false;
    KT_U16 perPage = recordsPerPage(sizeof(_Block_Info), 512);
    ListEnd end = walkList<_Block_Info>(KT_BLK_GetInfo, EVERYTHING, perPage, [&](const _Block_Info& block) {
        taken = taken || (block.HDID == pdId && block.LDID != KT_BLOCK_FREE && block.LDID != ldId);
        return true;
    });
    if (taken) return KT_ERR_PD_TYPES_DIFFER;
    return end.status;
}
