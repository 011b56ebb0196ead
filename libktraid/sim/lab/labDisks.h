// The disks of a lab.
#pragma once

#include "lab/labReader.h"
#include "state/store.h"

namespace sim {

// Adds the disks that the adapter's object lists, each at a place of its own.
void addLabDisks(Context& context, LabReader& adapter);

} // namespace sim
