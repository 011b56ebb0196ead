// The simulated clock. It is stored with the state, so every process sees the same time.
#pragma once

#include "state/store.h"

namespace sim {

// The last moment that an event can name, in milliseconds since 1970; the clock stands still there.
inline constexpr KT_U64 LAST_MOMENT = 0xFFFFFFFFULL * 1000;

// Milliseconds since 1970 of the machine's own clock.
KT_U64 realNow();
// The time that everything goes by when the machine's clock shows `real`; never earlier than its base.
KT_U64 clockAt(const Clock& clock, KT_U64 real);
// That time now; a state without a clock keeps real time.
KT_U64 simulatedNow(Store& store);
Clock loadClock(Store& store);
// Lets that time be `now`, with what is due until then, and run from here: speed in thousandths of real time.
void setClock(Store& store, KT_U64 now, KT_U32 speed, bool stopped);

// What the adapters' clock shows at `now`, in milliseconds since 1970: the dates of events and virtual disks.
KT_U64 shownAt(const Clock& clock, KT_U64 now);
KT_U64 shownTime(const Context& context);
// Sets what it shows; nothing else happens.
void setShownTime(Store& store, KT_U64 milliseconds);

} // namespace sim
