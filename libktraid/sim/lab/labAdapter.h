// An adapter of a lab.
#pragma once

#include "lab/labReader.h"
#include "state/store.h"

namespace sim {

// Adds the adapter of context from its object in a lab, with all that it has.
void addLabAdapter(Context& context, LabReader& adapter);

} // namespace sim
