#include "Functions/info/info.h"
#include "Functions/info/infoListing.h"
#include "Public/utility.h"

static void printSlots(const _DG_Info* dg) {
    constexpr int slots = sizeof dg->VDSlotSize / sizeof dg->VDSlotSize[0];
    printNum(REPORT_WIDTH, "Total array slot:", dg->VDSlotCount);
    for (int i = 0; i < dg->VDSlotCount && i < slots; ++i) {
        auto size = static_cast<long long>(dg->VDSlotSize[i] >> 10);
        if (dg->VDSlotSize[i] == 0) continue;
        if (dg->VDIDs[i] == KT_NO_ID) {
            out("  slot %d: free, %lld M\n", i, size);
        } else {
            out("  slot %d: VD %d, %lld M\n", i, dg->VDIDs[i], size);
        }
    }
}

template <size_t N>
static void printIds(const char* label, const KT_U16 (&ids)[N], unsigned count) {
    LineText line;
    for (unsigned i = 0; i < count && i < N; ++i) {
        line.add(i == 0 ? "%d" : " %d", ids[i]);
    }
    printStr(REPORT_WIDTH, label, line.text);
}

static void printActivity(const _DG_Info* dg) {
    LineText line;
    if (dg->BgaState == KT_STATE_RUNNING) {
        line.add("%s", bgaWord(dg->BgaType));
    } else if (dg->BgaState >= KT_STATE_ABORTED && dg->BgaState <= KT_STATE_INTERRUPTED) {
        line.add("%s %s", bgaWord(dg->BgaType), bgaStateWord(dg->BgaState));
    } else {
        line.add("none");
    }
    printStr(REPORT_WIDTH, "BGA status:", line.text);
}

static const char* statusWord(KT_U8 status) {
    switch (status) {
    case 0:
        return "functional";
    case 1:
        return "At least one PD is missing from this array";
    default:
        return "offline";
    }
}

void DG_PrintInfo(const _DG_Info* dg) {
    printNum(REPORT_WIDTH, "ID:", dg->DGID);
    printField(REPORT_WIDTH, "Name:", dg->Name);
    printNum(REPORT_WIDTH, "Stripe size:", dg->StripeBlockSize);
    printNum(REPORT_WIDTH, "Block size:", static_cast<long>(dg->BlockSize));
    printStr(REPORT_WIDTH, "RAID mode:", RaidModeStr(dg->RaidMode));
    if (dg->RaidMode == KT_RAID50 || dg->RaidMode == KT_RAID60) {
        printNum(REPORT_WIDTH, "Sub VD count:", dg->SubVDCount);
    }
    if (dg->RaidMode == KT_RAID60) printNum(REPORT_WIDTH, "# of parity disks:", dg->NumParityDisk);
    if (dg->RaidMode == KT_RAID6) printNum(REPORT_WIDTH, "RAID6 redundancy:", dg->NumParityDisk);
    printMegaBytes(REPORT_WIDTH, "Total space:", dg->TotalManagedSpace);
    printMegaBytes(REPORT_WIDTH, "Remaining space:", dg->RemainingManagedSpace);
    printMegaBytes(REPORT_WIDTH, "Member used space:", dg->SmallestAvailablePDSize);
    printSlots(dg);
    printNum(REPORT_WIDTH, "# of PDs:", dg->PDCount);
    printIds("PD IDs:", dg->PDIDs, dg->PDCount);
    printNum(REPORT_WIDTH, "# of spare PDs:", dg->SparePDCount);
    if (dg->SparePDCount != 0) printIds("Spare PD IDs:", dg->SparePDIDs, dg->SparePDCount);
    printActivity(dg);
    printStr(REPORT_WIDTH, "Status:", statusWord(dg->Status));
}

KT_U8 getDGInfo(KT_U16 id) {
    static const ListingWords words = {"No array is found.\n", "\nArray Information\n-------------------------\n",
                                       "Total # of array:"};
    ListEnd end = printListing<_DG_Info>(KT_DG_GetInfo, id, words, DG_PrintInfo);
    if (!refused(end)) return end.status;
    if (id == ALL_ITEMS) {
        out("\nUnable to get info of array(error %d: %s)\n", end.status, ErrorMessage(end.status));
    } else {
        out("\nUnable to get info of array %d (error %d: %s)\n", id, end.status, ErrorMessage(end.status));
    }
    return end.status;
}
