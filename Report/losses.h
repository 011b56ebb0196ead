// Which changes lose something: data, redundancy, the last copy of anything.
#pragma once

#include <vector>

#include "Report/diff.h"

// Virtual disks that are gone, offline or overwritten; redundancy, spares, disks, keys, sound images.
bool isLoss(const Change& change);
// The changes that are losses, data first.
std::vector<Change> takeLosses(const std::vector<Change>& changes);
