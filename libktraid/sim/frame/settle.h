// Catching up with time: what was due since the last call happens now, in the order in which it was due.
#pragma once

#include "state/store.h"

namespace sim {

// Whether settle() would change anything; one row is read.
bool settleDue(const Context& context);
// Lets everything happen that was due up to context.now; events carry the moment they were due at.
void settle(Context& context);
// Makes the next call look again what is due; whoever starts, changes or ends something timed calls one of these.
void scheduleRaid(const Context& context, KT_U64 due);
void schedulePeripherals(const Context& context, KT_U64 due);

// Each lets happen what is due at context.now and answers when it wants to be called next (NEVER = not at all); that
// must be later than context.now.
KT_U64 settleRaid(Context& context);        // completion.cpp
KT_U64 settlePeripherals(Context& context); // peripherals.cpp

} // namespace sim
