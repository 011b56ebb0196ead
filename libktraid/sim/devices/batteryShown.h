// From what a battery shows back to its charge.
#pragma once

#include "ktraid.h"

namespace sim {

// The charge, of BATTERY_FULL, at which a battery shows that percentage, capacity and minutes; where they contradict
// each other, one that shows the percentage.
KT_U32 chargeThatShows(const _BBU_Info& info);

} // namespace sim
