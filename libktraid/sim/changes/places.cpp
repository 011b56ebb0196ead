#include "changes/places.h"

#include "state/adapterInfo.h"

#include <algorithm>
#include <vector>

namespace sim {

// A place of a disk; `bay` says which one in its enclosure.
struct Place {
    _Link_Endpoint parent;
    KT_U8 bay;
};

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

// A bay of a shelf without an expander is cabled inside the shelf, so that its port says nothing.
static bool isAt(const _HD_Info& disk, const Place& place) {
    const _Link_Endpoint& mine = disk.Link.Parent;
    const _Link_Endpoint& other = place.parent;
    const bool bay = other.EnclosureID != KT_NO_ID;
    if (bay && disk.Link.Self.EnclosureID == other.EnclosureID && disk.ElementIdx == place.bay) return true;
    if (mine.DevType != other.DevType || mine.PhyID[0] != other.PhyID[0]) return false;
    return other.DevType == KT_LINK_HBA ? !bay : mine.DevID == other.DevID;
}

static bool usesPort(const _Link_Endpoint& end, const _Link_Endpoint& place) {
    if (end.DevType != place.DevType || (end.DevType != KT_LINK_HBA && end.DevID != place.DevID)) return false;
    const KT_U8* last = end.PhyID + std::min<size_t>(end.PhyCnt, std::size(end.PhyID));
    return std::find(end.PhyID, last, place.PhyID[0]) != last;
}

template <class Row, class Test>
static bool anyRow(const Context& context, Test holds) {
    bool any = false;
    forEach<Row>(context, 0, [&](KT_U64 id, const Row& row) { return !(any = holds(id, row)); });
    return any;
}

// A port that a cable goes to stays the cable's, also while that is pulled.
static bool hasCable(const Context& context, const _Link_Endpoint& place) {
    return anyRow<_PM_Info>(context, [&](KT_U64, const _PM_Info& row) { return usesPort(row.Link.Parent, place); }) ||
           anyRow<_Exp_Info>(context, [&](KT_U64, const _Exp_Info& row) { return usesPort(row.Link.Parent, place); }) ||
           anyRow<AwayMultiplier>(
               context, [&](KT_U64, const AwayMultiplier& row) { return usesPort(row.info.Link.Parent, place); }) ||
           anyRow<AwayExpander>(context,
                                [&](KT_U64, const AwayExpander& row) { return usesPort(row.info.Link.Parent, place); });
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

static void addPorts(const Context& context, std::vector<Place>& places) {
    for (KT_U8 port = 0; port < adapterInfo(context).PortCount; ++port)
        places.push_back(placeOn(KT_LINK_HBA, 0, port));
}

static void addExpander(const _Exp_Info& expander, std::vector<Place>& places, KT_U16 enclosure, int count) {
    const _Link_Endpoint& self = expander.Link.Self;
    const KT_U8* uplinks = self.PhyID + std::min<size_t>(self.PhyCnt, std::size(self.PhyID));
    for (int phy = 0; phy < std::min<int>(count, expander.PhyCount); ++phy) {
        if (std::find(self.PhyID, uplinks, phy) == uplinks)
            places.push_back(placeOn(KT_LINK_EXPANDER, self.DevID, static_cast<KT_U8>(phy), enclosure));
    }
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

static void addShelfBays(const Context& context, KT_U16 enclosure, std::vector<Place>& places) {
    const int slots = slotsOf(context, enclosure);
    const int ports = std::max<int>(adapterInfo(context).PortCount, 1);
    const size_t before = places.size();
    forEach<_Exp_Info>(context, 0, [&](KT_U64, const _Exp_Info& expander) {
        if (expander.Link.Self.EnclosureID == enclosure) addExpander(expander, places, enclosure, slots);
        return true;
    });
    if (places.size() != before) return;
    for (int bay = 0; bay < slots; ++bay) {
        places.push_back(placeOn(KT_LINK_HBA, 0, static_cast<KT_U8>(bay % ports), enclosure));
        places.back().bay = static_cast<KT_U8>(bay);
    }
}

// All places of the adapter for such a disk, in the order in which they are filled.
static std::vector<Place> placesFor(const Context& context, const _HD_Info& disk) {
    std::vector<Place> places;
    forEach<_Enclosure_Info>(context, 0, [&](KT_U64 id, const _Enclosure_Info&) {
        addShelfBays(context, static_cast<KT_U16>(id), places);
        return true;
    });
    addPorts(context, places);
    forEach<_Exp_Info>(context, 0, [&](KT_U64, const _Exp_Info& expander) {
        if (!find<_Enclosure_Info>(context, expander.Link.Self.EnclosureID))
            addExpander(expander, places, KT_NO_ID, expander.PhyCount);
        return true;
    });
    // Port multipliers speak SATA only.
    if (disk.HDType & KT_HD_SAS) return places;
    forEach<_PM_Info>(context, 0, [&](KT_U64 id, const _PM_Info& multiplier) {
        for (KT_U8 port = 0; port < multiplier.NumberOfPorts; ++port)
            places.push_back(placeOn(KT_LINK_PM, static_cast<KT_U16>(id), port));
        return true;
    });
    return places;
}

KT_U8 putAnywhere(const Context& context, _HD_Info& disk) {
    std::vector<Place> places = placesFor(context, disk);
    std::erase_if(places, [&](const Place& place) {
        const bool inside = place.parent.EnclosureID != KT_NO_ID && place.parent.DevType == KT_LINK_HBA;
        return (!inside && hasCable(context, place.parent)) || isTaken(context, place, disk.Link.Self.DevID);
    });
    if (places.empty()) return KT_ERR_NO_RESOURCE;
    const auto empty =
        std::find_if(places.begin(), places.end(), [&](const Place& place) { return !isLeft(context, place); });
    const Place place = empty == places.end() ? places.front() : *empty;
    disk.Link.Parent = place.parent;
    disk.Link.Self.EnclosureID = place.parent.EnclosureID;
    disk.ElementIdx = place.bay;
    return KT_OK;
}

} // namespace sim
