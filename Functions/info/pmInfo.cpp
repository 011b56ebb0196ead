#include "Functions/info/info.h"
#include "Functions/info/infoListing.h"

void PM_PrintInfo(const _PM_Info* pm) {
    const _Link_Endpoint& parent = pm->Link.Parent;
    LineText linksTo;
    if (!addParent(linksTo, parent)) linksTo.add("unknown device %d port %d", parent.DevID, parent.PhyID[0]);
    LineText specRevision;
    specRevision.add("%d.%d", pm->SpecRevision >> 4, pm->SpecRevision & 0x0F);
    printNum(REPORT_WIDTH, "Adapter:", pm->AdapterID);
    printNum(REPORT_WIDTH, "PM ID:", pm->Link.Self.DevID);
    printNum(REPORT_WIDTH, "# of ports:", pm->NumberOfPorts);
    printStr(REPORT_WIDTH, "Links to:", linksTo.text);
    printNum(REPORT_WIDTH, "Vendor ID:", pm->VendorID);
    printNum(REPORT_WIDTH, "Device ID:", pm->DeviceID);
    printNum(REPORT_WIDTH, "Product revision:", pm->ProductRevision);
    printStr(REPORT_WIDTH, "PM spec revision:", specRevision.text);
}

KT_U8 getPMInfo(KT_U16 id) {
    static const ListingWords words = {"No port multiplexer is found.\n",
                                       "\nPort Multiplexer Information\n-------------------------\n", "Total # of PM:"};
    if (currentAdapter().MaxPM == 0) {
        out("PM is not supported on adapter %d.\n", gCurrentAdapter);
        return KT_ERR_NOT_SUPPORTED;
    }
    ListEnd end = printListing<_PM_Info>(KT_PD_GetPMInfo, id, words, PM_PrintInfo);
    if (!refused(end)) return end.status;
    if (id == ALL_ITEMS) {
        out("\nUnable to get info of PM (error %d: %s)\n", end.status, ErrorMessage(end.status));
    } else {
        out("\nUnable to get info of PM %d (error %d: %s)\n", id, end.status, ErrorMessage(end.status));
    }
    return end.status;
}
