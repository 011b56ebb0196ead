#include "Functions/info/info.h"
#include "Functions/info/infoListing.h"
#include "Public/utility.h"

namespace {
// The phys of one end of a link, as "0, 1, 2, 3"; a record that counts more than it holds shows what it holds.
struct PhyList {
    char text[5 * sizeof(_Link_Endpoint::PhyID) + 1];
    explicit PhyList(const _Link_Endpoint& end) {
        constexpr KT_U8 room = sizeof end.PhyID;
        getPhyIdString(text, end.PhyID, end.PhyCnt < room ? end.PhyCnt : room);
    }
};
} // namespace

static void printParent(const _Link_Endpoint& parent) {
    PhyList phys(parent);
    SasAddressText address(parent.SAS_Address);
    LineText line;
    switch (parent.DevType) {
    case KT_LINK_HBA:
        line.add("HBA %d, port [%s] on SAS address %s", parent.DevID, phys.text, address.text);
        break;
    case KT_LINK_EXPANDER:
        line.add("expander %d, port [%s] on SAS addr %s", parent.DevID, phys.text, address.text);
        break;
    default:
        line.add("unknown device %d", parent.DevID);
        break;
    }
    printStr(REPORT_WIDTH, "Links to:", line.text);
}

// The expander's own ports: where the link from the parent arrives.
static void printOwnPorts(const _Link_Endpoint& self) {
    LineText line;
    line.add("port [%s] on SAS addr %s", PhyList(self).text, SasAddressText(self.SAS_Address).text);
    printStr(REPORT_WIDTH, "From parent:", line.text);
}

static void printRouteTable(const _Exp_Info* expander) {
    if (expander->Configuring) {
        out("Configuring route table...\n");
    } else if (expander->RouteTableConfigurable) {
        out("Route table is not self configurable.\n");
    } else {
        out("Route table is self configurable.\n");
    }
}

void Exp_PrintInfo(const _Exp_Info* expander) {
    const _Link_Endpoint& self = expander->Link.Self;
    printNum(REPORT_WIDTH, "Adapter:", expander->AdapterID);
    printNum(REPORT_WIDTH, "Expander ID:", self.DevID);
    printNum(REPORT_WIDTH, "Enclosure ID:", self.EnclosureID);
    printNum(REPORT_WIDTH, "Total # of PHYs:", expander->PhyCount);
    printParent(expander->Link.Parent);
    printOwnPorts(self);
    printField(REPORT_WIDTH, "Vendor ID:", expander->VendorID);
    printField(REPORT_WIDTH, "Product ID:", expander->ProductID);
    printField(REPORT_WIDTH, "Product revision:", expander->ProductRevision);
    printField(REPORT_WIDTH, "Component vendor ID:", expander->ComponentVendorID);
    printRouteTable(expander);
}

KT_U8 getExpInfo(KT_U16 id) {
    static const ListingWords words = {"No expander is found.\n", "\nExpander Information\n-------------------------\n",
                                       "Total # of expander:"};
    if (currentAdapter().MaxExpander == 0) {
        out("Expander is not supported on adapter %d.\n", gCurrentAdapter);
        return KT_ERR_NOT_SUPPORTED;
    }
    ListEnd end = printListing<_Exp_Info>(KT_PD_GetExpanderInfo, id, words, Exp_PrintInfo);
    if (!refused(end)) return end.status;
    if (id == ALL_ITEMS) {
        out("\nUnable to get info of expander (error %d: %s)\n", end.status, ErrorMessage(end.status));
    } else {
        out("\nUnable to get info of expander %d (error %d: %s)\n", id, end.status, ErrorMessage(end.status));
    }
    return end.status;
}
