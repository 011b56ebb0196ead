// Where the disks of a lab are: every disk gets a bay or a port of its own.
#pragma once

#include "changes/places.h"
#include "lab/labReader.h"

#include <map>

namespace sim {

struct LabPlaces {
    std::map<KT_U64, KT_U16> taken; // keysOf() the disks that have their place; whose it is
    std::vector<Place> open;        // for disks that say nothing of theirs
    size_t next = 0;                // all before are taken
};
enum class PlaceSaid { Port, Device, Nothing };
PlaceSaid placeSaid(const LabReader& disk);
// Lists the places for `count` disks that say nothing of theirs. Where there are too few, the adapter gets expanders,
// or port multipliers; it is a mistake when that does not do.
void makeRoom(const Context& context, LabPlaces& places, const LabReader& adapter, KT_U64 count);
// Puts a disk, the copy-th of the lab's object, where that says. What is taken, or not there, is a mistake.
void placeLabDisk(const Context& context, LabPlaces& places, LabReader& reader, KT_U64 copy, _HD_Info& disk);

} // namespace sim
