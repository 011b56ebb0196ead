#include "lab/labLinks.h"

#include "lab/labPeripherals.h"
#include "state/adapterInfo.h"

#include <algorithm>
#include <cstring>

namespace sim {

static const int USUAL_PHYS = 28;
static const int USUAL_PORTS = 5;

// Wide links of four: to the adapter as long as it has ports for them, then from expander to expander.
static _Link_Endpoint expanderParent(const Context& context, KT_U16 id) {
    const _Adapter_Info adapter = adapterInfo(context);
    const KT_U16 links = std::max<KT_U16>(adapter.PortCount / 4, 1);
    _Link_Endpoint parent = {context.adapter, KT_LINK_HBA, 4, {0, 1, 2, 3}, {}, KT_NO_ID, {}};
    if (id >= links) {
        const auto above = static_cast<KT_U16>(id - links);
        parent = _Link_Endpoint{above, KT_LINK_EXPANDER, 4, {20, 21, 22, 23}, {}, KT_NO_ID, {}};
        const auto expander = find<_Exp_Info>(context, above);
        memcpy(parent.SAS_Address, expander->Link.Self.SAS_Address, sizeof parent.SAS_Address);
        return parent;
    }
    for (int i = 0; i < 4; ++i)
        parent.PhyID[i] = static_cast<KT_U8>(4 * id + i);
    memcpy(parent.SAS_Address, adapter.PortSasAddress[std::min(4 * id, 15)], sizeof parent.SAS_Address);
    return parent;
}

// The shelf that the expander is in: the first one in the first shelf, and so on.
static KT_U16 shelfOf(const Context& context, KT_U16 expander) {
    KT_U16 shelf = KT_NO_ID;
    KT_U16 number = 0;
    forEach<_Enclosure_Info>(context, 0, [&](KT_U64 id, const _Enclosure_Info&) {
        shelf = static_cast<KT_U16>(id);
        return number++ < expander;
    });
    return shelf;
}

static _Exp_Info newExpander(const Context& context, KT_U16 id) {
    _Exp_Info expander = {};
    expander.AdapterID = context.adapter;
    expander.RouteTableConfigurable = 1;
    expander.PhyCount = USUAL_PHYS;
    expander.RouteIndexes = 128;
    memcpy(expander.VendorID, "TARNWARE", 8);
    memcpy(expander.ProductID, "Fanout 28       ", 16);
    memcpy(expander.ProductRevision, "1.07", 4);
    memcpy(expander.ComponentVendorID, "TARNWARE", 8);
    expander.ComponentID = 0x0228;
    expander.ComponentRevision = 2;
    const KT_U8 address[8] = {0x50, 0x0A, 0x1F, 0x40, 0x00, 0x28, context.adapter, static_cast<KT_U8>(id)};
    expander.Link.Self = _Link_Endpoint{id, KT_LINK_EXPANDER, 4, {24, 25, 26, 27}, {}, KT_NO_ID, {}};
    memcpy(expander.Link.Self.SAS_Address, address, sizeof address);
    return expander;
}

static void addExpanders(Context& context, LabReader& adapter) {
    KT_U16 id = 0;
    for (LabReader& reader : takeObjects(adapter, "expanders")) {
        _Exp_Info expander = newExpander(context, id);
        expander.Link.Parent = expanderParent(context, id);
        expander.Link.Self.EnclosureID = shelfOf(context, id);
        takeFields(reader, KIND_EXPANDER, &expander);
        takeNothingElse(reader);
        save(context, id++, expander);
    }
}

template <class Row>
static KT_U16 countRows(const Context& context) {
    KT_U16 count = 0;
    forEach<Row>(context, 0, [&](KT_U64, const Row&) {
        ++count;
        return true;
    });
    return count;
}

KT_U16 addLabExpander(const Context& context, const Place& at, int phys) {
    const auto id = countRows<_Exp_Info>(context);
    _Exp_Info expander = newExpander(context, id);
    expander.PhyCount = static_cast<KT_U8>(phys);
    if (phys != USUAL_PHYS) memcpy(expander.ProductID, "Fanout Large    ", 16);
    // A narrow link: the last of its ports goes up.
    expander.Link.Self.PhyCnt = 1;
    memset(expander.Link.Self.PhyID, 0, sizeof expander.Link.Self.PhyID);
    expander.Link.Self.PhyID[0] = static_cast<KT_U8>(phys - 1);
    expander.Link.Parent = at.parent;
    const auto above = find<_Exp_Info>(context, at.parent.DevID);
    if (at.parent.DevType == KT_LINK_HBA) {
        expander.Link.Parent.DevID = context.adapter;
        const KT_U8 port = std::min<KT_U8>(at.parent.PhyID[0], 15);
        memcpy(expander.Link.Parent.SAS_Address, adapterInfo(context).PortSasAddress[port], 8);
    } else if (above) {
        memcpy(expander.Link.Parent.SAS_Address, above->Link.Self.SAS_Address, 8);
    }
    save(context, id, expander);
    return id;
}

static _PM_Info newMultiplier(const Context& context, KT_U16 id, KT_U8 port) {
    _PM_Info multiplier = {};
    multiplier.AdapterID = context.adapter;
    multiplier.ProductRevision = 1;
    multiplier.SpecRevision = 0x12;
    multiplier.NumberOfPorts = USUAL_PORTS;
    multiplier.VendorID = 0x1FA4;
    multiplier.DeviceID = 0x3705;
    multiplier.Link.Parent = _Link_Endpoint{context.adapter, KT_LINK_HBA, 1, {port}, {}, KT_NO_ID, {}};
    multiplier.Link.Self = _Link_Endpoint{id, KT_LINK_PM, 1, {0}, {}, KT_NO_ID, {}};
    return multiplier;
}

static void addPortMultipliers(Context& context, LabReader& adapter) {
    KT_U16 id = 0;
    for (LabReader& reader : takeObjects(adapter, "portMultipliers")) {
        // From the last port down; single disks take those from the first on.
        const int port = std::max(adapterInfo(context).PortCount - 1 - id, 0);
        _PM_Info multiplier = newMultiplier(context, id, static_cast<KT_U8>(port));
        takeFields(reader, KIND_PM, &multiplier);
        takeNothingElse(reader);
        save(context, id++, multiplier);
    }
}

void addLabMultiplier(const Context& context, const Place& at, int ports) {
    const auto id = countRows<_PM_Info>(context);
    _PM_Info multiplier = newMultiplier(context, id, at.parent.PhyID[0]);
    multiplier.NumberOfPorts = static_cast<KT_U8>(ports);
    save(context, id, multiplier);
}

static void addEnclosures(Context& context, LabReader& adapter) {
    KT_U16 next = 0;
    for (LabReader& reader : takeObjects(adapter, "enclosures")) {
        const auto id = static_cast<KT_U16>(takeNumber(reader, "id", next, 0xFFFE));
        if (find<_Enclosure_Info>(context, id)) failLab(reader, "id", "is another enclosure's already");
        _Enclosure_Info enclosure = {};
        enclosure.EnclosureID = id;
        enclosure.AdapterID = context.adapter;
        const KT_U8 logical[8] = {0x50, 0x0A, 0x1F, 0x40, 0x00, 0x3E, context.adapter, static_cast<KT_U8>(id)};
        memcpy(enclosure.LogicalID, logical, sizeof logical);
        memcpy(enclosure.VendorID, "TARNWARE", 8);
        memcpy(enclosure.ProductID, "Shelf 24        ", 16);
        memcpy(enclosure.RevisionLevel, "0103", 4);
        save(context, id, enclosure);
        addLabElements(context, id, reader);
        enclosure = find<_Enclosure_Info>(context, id).value_or(enclosure);
        takeFields(reader, KIND_ENCLOSURE, &enclosure);
        takeNothingElse(reader);
        save(context, id, enclosure);
        next = static_cast<KT_U16>(id + 1);
    }
}

void addLabLinks(Context& context, LabReader& adapter) {
    addEnclosures(context, adapter);
    addExpanders(context, adapter);
    addPortMultipliers(context, adapter);
}

} // namespace sim
