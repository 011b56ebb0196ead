// Whether a virtual disk was made of all that there was: no call tells it, but what lies behind it on its disks does.
#pragma once

#include "state/store.h"

namespace sim {

// Notes it for every virtual disk.
void findWhole(const Context& context);

} // namespace sim
