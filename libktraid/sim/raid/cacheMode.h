// Cache modes that follow the battery.
#pragma once

#include "state/store.h"

namespace sim {

// Whether what a cache holds would survive a power failure.
bool batteryKeepsCache(const Context& context);
// Cache mode in force: KT_CACHE_AUTO is resolved by the battery.
KT_U8 cacheModeFor(const Context& context, KT_U8 policy);

} // namespace sim
