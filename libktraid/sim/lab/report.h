// Reports as labs: what was read from adapters becomes a state whose adapters look and behave the same.
//
// A report leaves nothing to defaults as a lab's silence does. Its lower-case words make the library's records, and the
// records' own fields, where the report has them, override them. What no call of the library tells has one stated
// value each (docs/ktraid-sim.7.scd).
#pragma once

#include "lab/lab.h"
#include "lab/labReader.h"

namespace sim {

// Fills an empty state from a report. Throws LabError.
void fillFromReport(Store& store, LabReader& report, const BuiltInLab& source);

} // namespace sim
