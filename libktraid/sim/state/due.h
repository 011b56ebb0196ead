// When settling has something to do next.
#pragma once

#include "state/store.h"

namespace sim {

// Whether the machine is switched off.
bool isPoweredOff(Store& store);
// Whether the adapter does nothing: the machine is off, or it has booted without firmware. What happens to disks then
// is told at its next boot.
bool isDown(const Context& context);
// Whether disks lost by that number of AdapterState.losses can have missed nothing: the adapter has been down since.
bool wasLostDown(const Context& context, KT_U64 loss);

// Whether settle() would change anything; one row is read.
bool settleDue(const Context& context);
// Makes the next call look again what is due; whoever starts, changes or ends something timed calls one of these.
void scheduleRaid(const Context& context, KT_U64 due);
void schedulePeripherals(const Context& context, KT_U64 due);

} // namespace sim
