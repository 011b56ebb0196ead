// What `ktsim status` says of each thing of an adapter, and how urgent it is.
#pragma once

#include "state/store.h"

#include <string>
#include <vector>

// In the order in which people want to see them.
enum class Urgency { Wrong, Busy, Well };
enum class Thing { Adapter, Battery, Enclosure, Port, Array, Vd, Disk };

struct StatusRow {
    Urgency urgency;
    Thing thing;
    std::string text; // one or more lines without the last line end
};

// Every array, virtual disk, disk (those that were pulled out included), linked encryption port, and what is wrong with
// the adapter's flash, the battery and enclosures; by thing, then by id.
std::vector<StatusRow> statusRows(const sim::Context& context);
// "2 disks"
std::string countText(KT_U64 number, const char* what);
