#include "Functions/info/infoListing.h"

#include "Functions/info/info.h"
#include "Public/vdBlocks.h"

void printUnallocated(size_t bytes) {
    out("Unable to allocate buffer for %d bytes (error %d: %s).\n", static_cast<int>(bytes), KT_ERR_NO_RESOURCE,
        ErrorMessage(KT_ERR_NO_RESOURCE));
}

bool addParent(LineText& line, const _Link_Endpoint& parent) {
    int id = parent.DevID;
    int port = parent.PhyID[0];
    switch (parent.DevType) {
    case KT_LINK_HBA:
        line.add("HBA port %d", port);
        return true;
    case KT_LINK_PM:
        line.add("PM %d, port %d", id, port);
        return true;
    case KT_LINK_EXPANDER:
        line.add("Expander %d, port %d", id, port);
        return true;
    case KT_LINK_ENCLOSURE:
        line.add("enclosure %d, HBA port %d", id, port);
        return true;
    default:
        return false;
    }
}

const char* bgaWord(unsigned bga) {
    switch (bga) {
    case KT_BGA_REBUILD:
        return "rebuilding";
    case KT_BGA_INIT_QUICK:
    case KT_BGA_INIT_FOREGROUND:
    case KT_BGA_INIT_BACKGROUND:
        return "initializing";
    case KT_BGA_CHECK_FIX:
    case KT_BGA_CHECK:
        return "synchronizing";
    case KT_BGA_MIGRATION:
        return "migration";
    case KT_BGA_COPY_BACK:
        return "copy back";
    default:
        return "unknown bga action";
    }
}

const char* bgaStateWord(unsigned state) {
    switch (state) {
    case KT_STATE_ABORTED:
        return "aborted";
    case KT_STATE_PAUSED:
        return "paused";
    case KT_STATE_AUTO_PAUSED:
        return "auto paused";
    default:
        return "interrupted";
    }
}

const char* runningOsWord(KT_U8 kind, KT_U8 status) {
    if (status == KT_OK) return "no";
    bool onDisk = kind == KT_DEVICE_PD && status == KT_ERR_PD_HAS_OS;
    return status == KT_ERR_VD_HAS_OS || onDisk ? "yes" : "unknown";
}

const char* ldStatusWord(KT_U8 status) {
    switch (status) {
    case KT_VD_ONLINE:
        return "online";
    case KT_VD_DEGRADED:
        return "degraded";
    case KT_VD_DELETED:
        return "deleted";
    case KT_VD_OFFLINE:
        return "offline";
    case KT_VD_PARTIALLY_OPTIMAL:
        return "partially optimal";
    case KT_VD_FOREIGN:
        return "foreign";
    case KT_VD_IMPORTABLE:
        return "importable foreign";
    case KT_VD_NOT_IMPORTABLE:
        return "not importable foreign";
    case KT_VD_CONFLICTED:
        return "conflicted";
    case KT_VD_PLUGIN_CONFLICTED:
        return "plugin conflicted";
    case KT_VD_USING_TABLE:
        return "using table";
    default:
        return "unknown";
    }
}

// How many disks stand between two separators of the layout line; 0 = none.
static unsigned disksPerGroup(const _LD_Info* ld) {
    switch (ld->RaidMode) {
    case KT_RAID10:
        return 2;
    case KT_RAID50:
    case KT_RAID60:
        return ld->HDCount / 2U;
    default:
        return ld->HDCount;
    }
}

static void addBlock(KT_U16 id, LineText& blocks, LineText& disks) {
    blocks.add("%d ", id);
    _BLK_Info_Request request;
    if (getItem(KT_BLK_GetInfo, id, request) == KT_OK) {
        disks.add("%d ", request.blkInfo[0].HDID);
    } else {
        disks.add("? ");
    }
}

void printLayoutLines(const _LD_Info* ld) {
    const BlockSlots slots = blockSlots(*ld);
    unsigned group = disksPerGroup(ld);
    LineText blocks;
    LineText disks;
    for (unsigned i = 0; i < slots.count; ++i) {
        if (ld->BlockIDs[i] == slots.empty) {
            disks.add("* ");
        } else {
            addBlock(ld->BlockIDs[i], blocks, disks);
        }
        if (group != 0 && (i + 1) % group == 0 && i + 1 < slots.count) disks.add("| ");
    }
    printStr(REPORT_WIDTH, "Block ids:", blocks.text);
    printNum(REPORT_WIDTH, "# of PDs:", ld->HDCount);
    printStr(REPORT_WIDTH, "PD RAID setup:", disks.text);
    KT_U8 status = KT_DiskHasOS(gCurrentAdapter, KT_DEVICE_VD, 1, &ld->ID);
    printStr(REPORT_WIDTH, "Running OS:", runningOsWord(KT_DEVICE_VD, status));
}
