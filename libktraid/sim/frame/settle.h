// Catching up with time: what was due since the last call happens now, in the order in which it was due.
#pragma once

#include "state/store.h"

namespace sim {

// Lets everything happen that was due up to context.now; events carry the moment they were due at.
void settle(Context& context);

} // namespace sim
