#include "changes/places.h"

#include "state/adapterInfo.h"

#include <algorithm>
#include <set>

namespace sim {

static Place placeOn(KT_U8 parent, KT_U16 id, KT_U8 port, KT_U16 enclosure = KT_NO_ID) {
    Place place = {};
    place.parent.DevType = parent;
    place.parent.DevID = id;
    place.parent.PhyCnt = 1;
    place.parent.PhyID[0] = port;
    place.parent.EnclosureID = enclosure;
    place.bay = enclosure == KT_NO_ID ? KT_U8{0} : port;
    return place;
}

static KT_U64 bayKey(KT_U16 enclosure, KT_U8 bay) {
    return (KT_U64{0xFF} << 32) + (KT_U64{enclosure} << 8) + bay;
}

static KT_U64 portKey(const _Link_Endpoint& parent) {
    const KT_U16 id = parent.DevType == KT_LINK_HBA ? KT_U16{0} : parent.DevID;
    return (KT_U64{parent.DevType} << 32) + (KT_U64{id} << 8) + parent.PhyID[0];
}

std::vector<KT_U64> keysOf(const _HD_Info& disk) {
    std::vector<KT_U64> keys = {portKey(disk.Link.Parent)};
    const KT_U16 enclosure = disk.Link.Self.EnclosureID;
    if (enclosure != KT_NO_ID) keys.push_back(bayKey(enclosure, static_cast<KT_U8>(disk.ElementIdx)));
    return keys;
}

// A bay of a shelf without an expander is cabled inside the shelf, so that its port says nothing.
static bool isCabledInside(const Place& place) {
    return place.parent.EnclosureID != KT_NO_ID &&
           (place.parent.DevType == KT_LINK_HBA || place.parent.DevType == KT_LINK_ENCLOSURE);
}

std::vector<KT_U64> keysOf(const Place& place) {
    std::vector<KT_U64> keys;
    if (place.parent.EnclosureID != KT_NO_ID) keys.push_back(bayKey(place.parent.EnclosureID, place.bay));
    if (!isCabledInside(place)) keys.push_back(portKey(place.parent));
    return keys;
}

static bool isAt(const _HD_Info& disk, const Place& place) {
    const std::vector<KT_U64> used = keysOf(disk);
    const std::vector<KT_U64> needed = keysOf(place);
    return std::find_first_of(used.begin(), used.end(), needed.begin(), needed.end()) != used.end();
}

template <class Row, class Test>
static bool anyRow(const Context& context, Test holds) {
    bool any = false;
    forEach<Row>(context, 0, [&](KT_U64 id, const Row& row) { return !(any = holds(id, row)); });
    return any;
}

template <class Row, class Link>
static void addCables(const Context& context, std::set<KT_U64>& keys, Link linkOf) {
    forEach<Row>(context, 0, [&](KT_U64, const Row& row) {
        _Link_Endpoint end = linkOf(row).Parent;
        const size_t phys = std::min<size_t>(end.PhyCnt, std::size(end.PhyID));
        for (const KT_U8 phy : std::vector<KT_U8>(end.PhyID, end.PhyID + phys)) {
            end.PhyID[0] = phy;
            keys.insert(portKey(end));
        }
        return true;
    });
}

// The ports that cables go to. They stay the cables', also while those are pulled.
static std::set<KT_U64> cablesOf(const Context& context) {
    std::set<KT_U64> keys;
    addCables<_PM_Info>(context, keys, [](const _PM_Info& row) { return row.Link; });
    addCables<_Exp_Info>(context, keys, [](const _Exp_Info& row) { return row.Link; });
    addCables<AwayMultiplier>(context, keys, [](const AwayMultiplier& row) { return row.info.Link; });
    addCables<AwayExpander>(context, keys, [](const AwayExpander& row) { return row.info.Link; });
    return keys;
}

void leaveCables(const Context& context, std::vector<Place>& places) {
    const std::set<KT_U64> cables = cablesOf(context);
    std::erase_if(
        places, [&](const Place& place) { return !isCabledInside(place) && cables.count(portKey(place.parent)) != 0; });
}

static bool isThere(const Context& context, const _Link_Endpoint& parent) {
    if (parent.EnclosureID != KT_NO_ID && !find<_Enclosure_Info>(context, parent.EnclosureID)) return false;
    if (parent.DevType == KT_LINK_EXPANDER) return find<_Exp_Info>(context, parent.DevID).has_value();
    return parent.DevType != KT_LINK_PM || find<_PM_Info>(context, parent.DevID).has_value();
}

static bool isTaken(const Context& context, const Place& place, KT_U16 self) {
    return anyRow<_HD_Info>(context, [&](KT_U64 id, const _HD_Info& disk) { return id != self && isAt(disk, place); });
}

bool isPlaceTaken(const Context& context, const _HD_Info& disk) {
    const Place place = {disk.Link.Parent, static_cast<KT_U8>(disk.ElementIdx)};
    return !isThere(context, disk.Link.Parent) || isTaken(context, place, disk.Link.Self.DevID);
}

static bool isLeft(const Context& context, const Place& place) {
    return anyRow<PulledDisk>(context, [&](KT_U64, const PulledDisk& disk) { return isAt(disk.info, place); });
}

static int slotsOf(const Context& context, KT_U16 enclosure) {
    int slots = 0;
    for (const KT_U8 type : {KT_SES_DEVICE, KT_SES_ARRAY_DEVICE}) {
        const KT_U64 first = (KT_U64{enclosure} << 16) + (KT_U64{type} << 8);
        forEach<EnclosureElement>(context, first, [&](KT_U64 id, const EnclosureElement&) {
            slots += id < first + 256 ? 1 : 0;
            return id < first + 256;
        });
    }
    return slots;
}

// All but those that go up to the adapter.
static std::vector<Place> physOf(const Context& context, const _Exp_Info& expander, KT_U16 enclosure) {
    std::vector<Place> places;
    const _Link_Endpoint& self = expander.Link.Self;
    const KT_U8* uplinks = self.PhyID + std::min<size_t>(self.PhyCnt, std::size(self.PhyID));
    const int count = enclosure == KT_NO_ID ? expander.PhyCount : slotsOf(context, enclosure);
    for (int phy = 0; phy < std::min<int>(count, expander.PhyCount); ++phy) {
        if (std::find(self.PhyID, uplinks, phy) == uplinks)
            places.push_back(placeOn(KT_LINK_EXPANDER, self.DevID, static_cast<KT_U8>(phy), enclosure));
    }
    return places;
}

std::vector<Place> portsOf(const Context& context, KT_U8 type, KT_U16 id, KT_U16 enclosure) {
    std::vector<Place> places;
    if (type == KT_LINK_EXPANDER) {
        const auto expander = find<_Exp_Info>(context, id);
        return expander ? physOf(context, *expander, enclosure) : places;
    }
    const int ports = std::max<int>(adapterInfo(context).PortCount, 1);
    const int count = type == KT_LINK_PM      ? find<_PM_Info>(context, id).value_or(_PM_Info{}).NumberOfPorts
                      : enclosure != KT_NO_ID ? slotsOf(context, enclosure)
                                              : adapterInfo(context).PortCount;
    for (int number = 0; number < count; ++number) {
        const int port = type == KT_LINK_PM ? number : number % ports;
        places.push_back(placeOn(type, id, static_cast<KT_U8>(port), enclosure));
        if (enclosure != KT_NO_ID) places.back().bay = static_cast<KT_U8>(number);
    }
    return places;
}

static void append(std::vector<Place>& places, const std::vector<Place>& more) {
    places.insert(places.end(), more.begin(), more.end());
}

std::vector<Place> baysOf(const Context& context, KT_U16 enclosure) {
    std::vector<Place> bays;
    forEach<_Exp_Info>(context, 0, [&](KT_U64, const _Exp_Info& expander) {
        if (expander.Link.Self.EnclosureID == enclosure) append(bays, physOf(context, expander, enclosure));
        return true;
    });
    return bays.empty() ? portsOf(context, KT_LINK_HBA, 0, enclosure) : bays;
}

std::vector<Place> placesOf(const Context& context) {
    std::vector<Place> places;
    forEach<_Enclosure_Info>(context, 0, [&](KT_U64 id, const _Enclosure_Info&) {
        append(places, baysOf(context, static_cast<KT_U16>(id)));
        return true;
    });
    append(places, portsOf(context, KT_LINK_HBA, 0, KT_NO_ID));
    forEach<_Exp_Info>(context, 0, [&](KT_U64, const _Exp_Info& expander) {
        if (!find<_Enclosure_Info>(context, expander.Link.Self.EnclosureID))
            append(places, physOf(context, expander, KT_NO_ID));
        return true;
    });
    forEach<_PM_Info>(context, 0, [&](KT_U64 id, const _PM_Info&) {
        append(places, portsOf(context, KT_LINK_PM, static_cast<KT_U16>(id), KT_NO_ID));
        return true;
    });
    leaveCables(context, places);
    return places;
}

// Port multipliers speak SATA only.
bool isFor(const Place& place, const _HD_Info& disk) {
    return place.parent.DevType != KT_LINK_PM || !(disk.HDType & KT_HD_SAS);
}

void putAt(_HD_Info& disk, const Place& place) {
    disk.Link.Parent = place.parent;
    disk.Link.Self.EnclosureID = place.parent.EnclosureID;
    disk.ElementIdx = place.bay;
}

KT_U8 putAnywhere(const Context& context, _HD_Info& disk) {
    std::vector<Place> places = placesOf(context);
    std::erase_if(places, [&](const Place& place) {
        return !isFor(place, disk) || isTaken(context, place, disk.Link.Self.DevID);
    });
    if (places.empty()) return KT_ERR_NO_RESOURCE;
    const auto empty =
        std::find_if(places.begin(), places.end(), [&](const Place& place) { return !isLeft(context, place); });
    putAt(disk, empty == places.end() ? places.front() : *empty);
    return KT_OK;
}

} // namespace sim
