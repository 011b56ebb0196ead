#include "Functions/info/info.h"
#include "Functions/info/infoListing.h"
#include "Public/utility.h"

static void printRestoreProgress(const _LD_STATUS* status) {
    LineText line;
    switch (status->BgaState) {
    case KT_STATE_RUNNING:
        // While a member is rebuilt, the data of the hybrid disk is restored; any other activity prepares the disk.
        line.add(status->Bga == KT_BGA_REBUILD ? "restore is %d%% done" : "%d%% done", status->BgaPercentage);
        break;
    case KT_STATE_PAUSED:
    case KT_STATE_AUTO_PAUSED:
        line.add("%s at %d%%", bgaStateWord(status->BgaState), status->BgaPercentage);
        break;
    case KT_STATE_ABORTED:
    case KT_STATE_INTERRUPTED:
        line.add("%s", bgaStateWord(status->BgaState));
        break;
    default:
        line.add("N/A");
        break;
    }
    printStr(REPORT_WIDTH, "initializing status:", line.text);
}

void Tandem_Print(const _LD_Info* ld, const _LD_STATUS* status) {
    printNum(REPORT_WIDTH, "id:", ld->ID);
    printField(REPORT_WIDTH, "name:", ld->Name);
    printStr(REPORT_WIDTH, "status:", ldStatusWord(ld->Status));
    printStr(REPORT_WIDTH, "Tandem mode:", RaidModeStr(ld->RaidMode));
    printMegaBytes(REPORT_WIDTH, "size:", ld->Size);
    printRestoreProgress(status);
    printLayoutLines(ld);
}

static KT_U8 reportTandem(const _LD_Info& ld) {
    _LD_Status_Request request;
    KT_U8 status = getItem(KT_LD_GetStatus, ld.ID, request);
    if (status != KT_OK) {
        out("\nCould not get tandem info for VD ID %d (error %d: %s)\n", ld.ID, status, ErrorMessage(status));
        return status;
    }
    Tandem_Print(&ld, &request.ldStatus[0]);
    out("\n");
    return KT_OK;
}

KT_U8 getTandemInfo(KT_U16 id) {
    static const ListingWords words = {"No tandem virtual disk is found.\n",
                                       "\nTandem Information\n-------------------------\n", "Total # of tandem:"};
    bool all = id == ALL_ITEMS;
    ListingFrame frame = {words};
    KT_U8 status = KT_OK;
    KT_U16 perPage = recordsPerPage(sizeof(_LD_Info));
    ListEnd end =
        walkList<_LD_Info, Cut::Shows>(KT_LD_GetInfo, all ? EVERYTHING : oneItem(id), perPage, [&](const _LD_Info& ld) {
            if (!isHybridMode(ld.RaidMode)) return true;
            frame.begin();
            status = reportTandem(ld);
            return status == KT_OK;
        });
    frame.end(end, all);
    if (!refused(end)) return end.stopped ? status : end.status;
    out("\nCould not get tandem info for VD ID %d (error %d: %s)\n", id, end.status, ErrorMessage(end.status));
    return end.status;
}
