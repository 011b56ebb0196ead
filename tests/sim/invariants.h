// What holds in every state, whatever calls, crashes and times made it.
#pragma once

#include "state/store.h"

#include <string>
#include <vector>

// What is wrong with the state, one line each: blocks that overlap or reach beyond their disk, lists of blocks that do
// not agree with the blocks, virtual disks whose blocks are not theirs, arrays and spares that disagree with their
// disks, events out of sequence. By rules: also what holds only where the adapters' rules made the state, not a lab.
std::vector<std::string> findViolations(sim::Store& store, bool byRules = false);
