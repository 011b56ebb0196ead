#include "Functions/info/info.h"
#include "Functions/info/infoListing.h"

void Spare_PrintInfo(const _HD_RAID_STATUS* spare) {
    bool dedicated = (spare->Status & KT_PD_DEDICATED_SPARE) != 0;
    printNum(REPORT_WIDTH, "PD ID:", spare->HDID);
    printStr(REPORT_WIDTH, "Spare type:", dedicated ? "dedicated" : "global");
    if (dedicated) printNum(REPORT_WIDTH, "Array ID:", spare->DGID);
    printStr(REPORT_WIDTH, "In use:", spare->Status & KT_PD_SPARE_IN_USE ? "yes" : "no");
}

KT_U8 getSpareInfo(KT_U16 id) {
    static const ListingWords words = {"No spare drive is found.\n",
                                       "\nSpare Drive Information\n-------------------------\n", "Total # of spare:"};
    bool all = id == ALL_ITEMS;
    ListingFrame frame = {words};
    KT_U16 perPage = recordsPerPage(sizeof(_HD_RAID_STATUS));
    auto print = [&](const _HD_RAID_STATUS& disk) {
        if ((disk.Status & KT_PD_SPARE) == 0) return true;
        frame.begin();
        Spare_PrintInfo(&disk);
        out("\n");
        return true;
    };
    ListEnd end =
        walkList<_HD_RAID_STATUS, Cut::Shows>(KT_PD_GetHDRaidStatus, all ? EVERYTHING : oneItem(id), perPage, print);
    frame.end(end, all);
    if (!refused(end)) return end.status;
    if (all) {
        out("\nUnable to get info of spare (error %d: %s)\n", end.status, ErrorMessage(end.status));
    } else {
        out("\nUnable to get info of spare %d (error %d: %s)\n", id, end.status, ErrorMessage(end.status));
    }
    return end.status;
}
