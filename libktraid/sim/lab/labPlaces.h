// Where the disks of a lab are, and what they hang on. Every disk gets a bay or a port of its own.
#pragma once

#include "changes/places.h"
#include "lab/labReader.h"

#include <map>

namespace sim {

// labLinks.cpp: the enclosures, expanders and port multipliers that the adapter's object lists.
void addLabLinks(Context& context, LabReader& adapter);
// Another expander, or port multiplier, with so many ports, at a port of the adapter; an expander also at one of an
// expander. Answers its id.
KT_U16 addLabExpander(const Context& context, const Place& at, int phys);
void addLabMultiplier(const Context& context, const Place& at, int ports);

// labPlaces.cpp.
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
