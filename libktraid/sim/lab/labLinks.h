// What the disks of a lab hang on.
#pragma once

#include "changes/places.h"
#include "lab/labReader.h"

namespace sim {

// Adds the enclosures, expanders and port multipliers that the adapter's object lists.
void addLabLinks(Context& context, LabReader& adapter);
// Another expander, or port multiplier, with so many ports, at a port of the adapter; an expander also at one of an
// expander. Answers its id.
KT_U16 addLabExpander(const Context& context, const Place& at, int phys);
void addLabMultiplier(const Context& context, const Place& at, int ports);

} // namespace sim
