#include "lab/labPlaces.h"

#include "lab/labLinks.h"
#include "state/adapterInfo.h"

#include <algorithm>

namespace sim {

static const LabWord PARENT_WORDS[] = {
    {"HBA", KT_LINK_HBA}, {"PM", KT_LINK_PM}, {"expander", KT_LINK_EXPANDER}, {"enclosure", KT_LINK_ENCLOSURE}};
static const KT_U64 DEEPEST_CHAIN = 60; // expanders behind one another

PlaceSaid placeSaid(const LabReader& disk) {
    if (hasWord(disk, "port")) return PlaceSaid::Port;
    const bool device = hasWord(disk, "on") || hasWord(disk, "parent") || hasWord(disk, "enclosure");
    return device ? PlaceSaid::Device : PlaceSaid::Nothing;
}

// What a disk says it hangs on, and its places.
struct LabDevice {
    std::string name; // "ports of expander 0"
    std::vector<Place> places;
};

static KT_U16 takeEnclosure(const Context& context, LabReader& reader, KT_U16 absent) {
    const auto enclosure = static_cast<KT_U16>(takeNumber(reader, "enclosure", absent, KT_NO_ID));
    if (enclosure != KT_NO_ID && !find<_Enclosure_Info>(context, enclosure))
        failLab(reader, "enclosure", "there is no enclosure " + std::to_string(enclosure));
    return enclosure;
}

static LabDevice takeDevice(const Context& context, LabReader& reader) {
    const bool said = hasWord(reader, "on");
    const auto type = static_cast<KT_U8>(takeWord(reader, "on", PARENT_WORDS, std::size(PARENT_WORDS), KT_LINK_HBA));
    const auto id = static_cast<KT_U16>(takeNumber(reader, "parent", 0, 0xFFFE));
    const std::string number = std::to_string(id);
    if (type == KT_LINK_EXPANDER) {
        const auto expander = find<_Exp_Info>(context, id);
        if (!expander) failLab(reader, "parent", "there is no expander " + number);
        const KT_U16 own = expander->Link.Self.EnclosureID;
        const KT_U16 shelf =
            takeEnclosure(context, reader, find<_Enclosure_Info>(context, own) ? own : KT_U16{KT_NO_ID});
        return {"ports of expander " + number, portsOf(context, type, id, shelf)};
    }
    if (type == KT_LINK_PM) {
        if (!find<_PM_Info>(context, id)) failLab(reader, "parent", "there is no port multiplier " + number);
        return {"ports of port multiplier " + number,
                portsOf(context, type, id, takeEnclosure(context, reader, KT_NO_ID))};
    }
    if (type == KT_LINK_ENCLOSURE)
        return {"bays of enclosure " + number, portsOf(context, type, id, takeEnclosure(context, reader, id))};
    const KT_U16 shelf = takeEnclosure(context, reader, KT_NO_ID);
    if (shelf == KT_NO_ID) return {"ports of the adapter", portsOf(context, type, 0, shelf)};
    return {"bays of enclosure " + std::to_string(shelf),
            said ? portsOf(context, type, 0, shelf) : baysOf(context, shelf)};
}

static const KT_U16* ownerOf(const LabPlaces& places, const Place& place) {
    for (const KT_U64 key : keysOf(place)) {
        const auto found = places.taken.find(key);
        if (found != places.taken.end()) return &found->second;
    }
    return nullptr;
}

static void occupy(LabPlaces& places, const _HD_Info& disk) {
    for (const KT_U64 key : keysOf(disk))
        places.taken.emplace(key, disk.Link.Self.DevID);
}

static KT_U8 numberOf(const Place& place) {
    return place.parent.EnclosureID == KT_NO_ID ? place.parent.PhyID[0] : place.bay;
}

static Place placeAtPort(const Context& context, const LabPlaces& places, LabReader& reader, const LabDevice& device,
                         KT_U64 port) {
    const auto at = std::find_if(device.places.begin(), device.places.end(),
                                 [&](const Place& place) { return numberOf(place) == port; });
    if (at == device.places.end()) failLab(reader, "port", "goes beyond the " + device.name);
    std::vector<Place> one = {*at};
    leaveCables(context, one);
    if (one.empty()) failLab(reader, "port", std::to_string(port) + " is a cable's already");
    if (const KT_U16* owner = ownerOf(places, *at))
        failLab(reader, "port", std::to_string(port) + " is disk " + std::to_string(*owner) + "'s already");
    return *at;
}

static Place placeOnDevice(const Context& context, const LabPlaces& places, LabReader& reader, LabDevice device) {
    leaveCables(context, device.places);
    const auto at = std::find_if(device.places.begin(), device.places.end(),
                                 [&](const Place& place) { return !ownerOf(places, place); });
    if (at == device.places.end()) failLab(reader, "port", "goes beyond the " + device.name);
    return *at;
}

static Place openPlace(LabPlaces& places, LabReader& reader, const _HD_Info& disk) {
    while (places.next < places.open.size() && ownerOf(places, places.open[places.next]))
        ++places.next;
    const auto at = std::find_if(places.open.begin() + static_cast<std::ptrdiff_t>(places.next), places.open.end(),
                                 [&](const Place& place) { return isFor(place, disk) && !ownerOf(places, place); });
    if (at == places.open.end()) failLab(reader, "type", "has no port left that it goes with");
    return *at;
}

void placeLabDisk(const Context& context, LabPlaces& places, LabReader& reader, KT_U64 copy, _HD_Info& disk) {
    Place place = {};
    if (placeSaid(reader) == PlaceSaid::Nothing) {
        place = openPlace(places, reader, disk);
    } else {
        const LabDevice device = takeDevice(context, reader);
        const KT_U64 port = takeNumber(reader, "port", NEVER, 255);
        place = port == NEVER ? placeOnDevice(context, places, reader, device)
                              : placeAtPort(context, places, reader, device, port + copy);
    }
    putAt(disk, place);
    occupy(places, disk);
}

// Room for disks that say nothing of their place.

struct Extension {
    KT_U64 count; // 0 = none does
    int ports;
};

static const int EXPANDER_SIZES[] = {28, 255};
static const int MULTIPLIER_SIZES[] = {5, 15};

// Those that can all be filled together: what is in a bay of a shelf without an expander takes a port of the adapter.
static std::vector<Place> openPlaces(const Context& context, LabPlaces places) {
    std::vector<Place> open;
    for (const Place& place : placesOf(context)) {
        if (ownerOf(places, place)) continue;
        _HD_Info disk = {};
        putAt(disk, place);
        occupy(places, disk);
        open.push_back(place);
    }
    return open;
}

static bool takesExpanders(const Context& context) {
    return adapterInfo(context).MaxExpander != 0;
}

// Where expanders, or port multipliers, can be plugged in: from the last port of the adapter down, then behind
// expanders.
static std::vector<Place> plugsAmong(const Context& context, const std::vector<Place>& open) {
    std::vector<Place> plugs;
    const auto add = [&](KT_U8 type) {
        std::copy_if(open.rbegin(), open.rend(), std::back_inserter(plugs), [type](const Place& place) {
            return place.parent.DevType == type && place.parent.EnclosureID == KT_NO_ID;
        });
    };
    add(KT_LINK_HBA);
    if (takesExpanders(context)) add(KT_LINK_EXPANDER);
    return plugs;
}

// The fewest that make `open` places, of which each of them takes one, as many as needed.
static Extension extensionFor(const Context& context, KT_U64 needed, KT_U64 open, KT_U64 plugs) {
    const bool expanders = takesExpanders(context);
    const KT_U64 most = expanders ? plugs * DEEPEST_CHAIN : std::min<KT_U64>(plugs, adapterInfo(context).MaxPM);
    for (KT_U64 count = 1; count <= most; ++count) {
        for (const int ports : expanders ? EXPANDER_SIZES : MULTIPLIER_SIZES) {
            const auto more = static_cast<KT_U64>(expanders ? ports - 1 : ports);
            if (open + count * more - count >= needed) return {count, ports};
        }
    }
    return {0, 0};
}

void makeRoom(const Context& context, LabPlaces& places, const LabReader& adapter, KT_U64 count) {
    places.open = openPlaces(context, places);
    const size_t open = places.open.size();
    if (open >= count) return;
    std::vector<Place> plugs = plugsAmong(context, places.open);
    const Extension extension = extensionFor(context, count, open, plugs.size());
    if (extension.count == 0) {
        failLab(adapter, "disks",
                std::to_string(count) + " of them need a place, and there are " + std::to_string(open) +
                    " left; list \"expanders\" or \"enclosures\", or raise \"PortCount\"");
    }
    for (KT_U64 i = 0; i < extension.count; ++i) {
        if (!takesExpanders(context)) {
            addLabMultiplier(context, plugs[i], extension.ports);
            continue;
        }
        const KT_U16 id = addLabExpander(context, plugs[i], extension.ports);
        plugs.push_back(portsOf(context, KT_LINK_EXPANDER, id, KT_NO_ID).back());
    }
    places.open = openPlaces(context, places);
}

} // namespace sim
