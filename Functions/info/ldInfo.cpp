#include <ctime>

#include "Functions/info/info.h"
#include "Functions/info/infoListing.h"
#include "Public/utility.h"

static constexpr int PROGRESS_WIDTH = 16;

static const char* runStateWord(KT_U8 state) {
    switch (state) {
    case KT_STATE_RUNNING:
        return "running";
    case KT_STATE_ABORTED:
        return "aborted";
    case KT_STATE_PAUSED:
        return "paused";
    case KT_STATE_AUTO_PAUSED:
        return "auto paused";
    case KT_STATE_INTERRUPTED:
        return "interrupted";
    default:
        return "N/A";
    }
}

static const char* cacheWord(KT_U8 cacheMode) {
    switch (cacheMode & 0x0B) {
    case 1:
        return "Off ";
    case 0:
        return "On ";
    default:
        return "";
    }
}

static void printLastWrite(const _LD_Info* ld) {
    time_t seconds = static_cast<time_t>(ld->time_hi) << 16 | ld->time_low;
    tm parts = {};
    char text[32];
    gmtime_r(&seconds, &parts);
    // The line break of the C library's form stays in the line.
    printStr(REPORT_WIDTH, "Last write time:", asctime_r(&parts, text));
}

void LD_PrintInfo(const _LD_Info* ld) {
    printNum(REPORT_WIDTH, "id:", ld->ID);
    printField(REPORT_WIDTH, "name:", ld->Name);
    if (arrayBasedRaid) printNum(REPORT_WIDTH, "array id:", ld->DGID);
    printStr(REPORT_WIDTH, "status:", ldStatusWord(ld->Status));
    if (ld->Status == KT_VD_CONFLICTED || ld->Status == KT_VD_PLUGIN_CONFLICTED) printLastWrite(ld);
    printNum(REPORT_WIDTH, "Stripe size:", ld->StripeBlockSize);
    printStr(REPORT_WIDTH, "RAID mode:", RaidModeStr(ld->RaidMode));
    if (ld->RaidMode == KT_RAID50 || ld->RaidMode == KT_RAID60) {
        printNum(REPORT_WIDTH, "Sub VD count:", ld->SubLDCount);
    }
    if (ld->RaidMode == KT_RAID60 && currentAdapter().MaxDiskGroup == 0) {
        printNum(REPORT_WIDTH, "# of parity disks:", ld->NumParityDisk);
    }
    printStr(REPORT_WIDTH, "Cache mode:", cacheWord(ld->CacheMode));
    printMegaBytes(REPORT_WIDTH, "size:", ld->Size);
    if (ld->RaidMode == KT_RAID6) printNum(REPORT_WIDTH, "RAID6 redundancy:", ld->NumParityDisk);
    printStr(REPORT_WIDTH, "BGA status:", runStateWord(ld->BGAStatus));
    printLayoutLines(ld);
}

void LD_PrintStatus(const _LD_STATUS* status) {
    const char* activity = bgaWord(status->Bga);
    KT_U8 state = status->BgaState;
    if (state == KT_STATE_RUNNING) {
        out("%-*s %s is %d%% done", PROGRESS_WIDTH, "BGA progress:", activity, status->BgaPercentage);
    } else if (state >= KT_STATE_ABORTED && state <= KT_STATE_INTERRUPTED) {
        out("%-*s %s is %s", PROGRESS_WIDTH, "BGA progress:", activity, bgaStateWord(state));
        if (state == KT_STATE_PAUSED || state == KT_STATE_AUTO_PAUSED) out(" at %d%%", status->BgaPercentage);
    }
    out("\n");
}

static void printTarget(KT_U16 id) {
    _LD_Info target = {};
    if (KT_LD_GetTargetLDInfo(gCurrentAdapter, id, &target) != KT_OK) return;
    out("target virtual: \n");
    LD_PrintInfo(&target);
}

// Prints one virtual disk with what it is busy with.
static KT_U8 reportVirtualDisk(const _LD_Info& ld) {
    bool hybrid = isHybridMode(ld.RaidMode);
    if (!hybrid || ld.BGAStatus == 0) LD_PrintInfo(&ld);
    if (ld.BGAStatus != 0) {
        _LD_Status_Request request;
        KT_U8 status = getItem(KT_LD_GetStatus, ld.ID, request);
        if (status != KT_OK) {
            out("Failed to get status for LD %d (error %d: %s).\n", ld.ID, status, ErrorMessage(status));
            return status;
        }
        const _LD_STATUS& activity = request.ldStatus[0];
        if (activity.Bga == KT_BGA_MIGRATION) {
            LD_PrintStatus(&activity);
            printTarget(ld.ID);
        } else if (ld.Status != KT_VD_OFFLINE) {
            if (hybrid) {
                Tandem_Print(&ld, &activity);
            } else {
                LD_PrintStatus(&activity);
            }
        }
    }
    out("\n");
    return KT_OK;
}

KT_U8 getLDInfo(KT_U16 id) {
    static const ListingWords words = {"No virtual disk is found.\n",
                                       "\nVirtual Disk Information\n-------------------------\n", "Total # of VD:"};
    bool all = id == ALL_ITEMS;
    ListingFrame frame = {words};
    KT_U8 status = KT_OK;
    KT_U16 perPage = recordsPerPage(sizeof(_LD_Info));
    ListEnd end =
        walkList<_LD_Info, Cut::Shows>(KT_LD_GetInfo, all ? EVERYTHING : oneItem(id), perPage, [&](const _LD_Info& ld) {
            frame.begin();
            status = reportVirtualDisk(ld);
            return status == KT_OK;
        });
    frame.end(end, all);
    if (!refused(end)) return end.stopped ? status : end.status;
    if (all) {
        out("\nUnable to get info of vd (error %d: %s)\n", end.status, ErrorMessage(end.status));
    } else {
        out("\nUnable to get info of vd %d (error %d: %s)\n", id, end.status, ErrorMessage(end.status));
    }
    return end.status;
}
