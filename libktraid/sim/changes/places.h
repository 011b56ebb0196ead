// Where disks can be: the bays of shelves, and the ports of the adapter, its expanders and its port multipliers.
#pragma once

#include "state/store.h"

#include <vector>

namespace sim {

// A place of a disk; `bay` says which one in its enclosure.
struct Place {
    _Link_Endpoint parent;
    KT_U8 bay;
};

// All places that cables leave to disks, in the order in which they are filled: bays of shelves, ports of the adapter,
// of its expanders, of its port multipliers.
std::vector<Place> placesOf(const Context& context);
bool isFor(const Place& place, const _HD_Info& disk);
// The bays of a shelf, through its expander where it has one.
std::vector<Place> baysOf(const Context& context, KT_U16 enclosure);
// The ports of the adapter (KT_LINK_HBA), an expander or a port multiplier, as bays where that is in `enclosure`.
std::vector<Place> portsOf(const Context& context, KT_U8 type, KT_U16 id, KT_U16 enclosure);
// Takes out those that a cable goes to, also while that is pulled.
void leaveCables(const Context& context, std::vector<Place>& places);
void putAt(_HD_Info& disk, const Place& place);

// What a disk takes up, and a place needs free: numbers that stand for a bay and for a port.
std::vector<KT_U64> keysOf(const _HD_Info& disk);
std::vector<KT_U64> keysOf(const Place& place);

// Puts the disk into the first free place, which shelves have before ports: KT_ERR_NO_RESOURCE when there is none. What
// pulled disks have left is taken last.
KT_U8 putAnywhere(const Context& context, _HD_Info& disk);
// Whether another disk is where this one says it is, or that place is not there.
bool isPlaceTaken(const Context& context, const _HD_Info& disk);

} // namespace sim
