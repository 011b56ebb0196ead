// When settling has something to do next.
#pragma once

#include "state/store.h"

namespace sim {

// Whether settle() would change anything; one row is read.
bool settleDue(const Context& context);
// Makes the next call look again what is due; whoever starts, changes or ends something timed calls one of these.
void scheduleRaid(const Context& context, KT_U64 due);
void schedulePeripherals(const Context& context, KT_U64 due);

} // namespace sim
