// The arrays and virtual disks of a lab, and the words that labs and reports have for them.
#pragma once

#include "lab/labReader.h"
#include "state/store.h"

namespace sim {

// Adds the arrays and virtual disks that the adapter's object lists.
void addLabVolumes(Context& context, LabReader& adapter);

// Levels, statuses, kinds of activities and their states.
WordList levelWords();
WordList vdStatusWords();
WordList activityWords();
WordList activityStateWords();

} // namespace sim
