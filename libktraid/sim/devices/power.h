// The power of the machine that the adapters are in.
#pragma once

#include "state/store.h"

namespace sim {

// The machine is shut down, or (`pulled`) its plug is pulled out, and its caches are left with what nobody has written.
// Everything due must have happened. Nothing is done when it is off already.
void powerDown(Store& store, bool pulled);
// It boots: each adapter tells what it finds, goes on with what it was doing, and writes what a battery has kept.
// Nothing is done when it is on already.
void powerUp(Store& store);

} // namespace sim
