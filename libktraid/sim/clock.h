/* The simulated clock. It is stored with the state, so every process sees the same time. */
#ifndef KTSIM_CLOCK_H
#define KTSIM_CLOCK_H

#include "store.h"

namespace sim {

/* The last moment that an event can name, in milliseconds since 1970; the clock stands still there. */
inline constexpr KT_U64 LAST_MOMENT = 0xFFFFFFFFULL * 1000;

/* Milliseconds since 1970 of the machine's own clock. */
KT_U64 realNow();
/* What `clock` shows when the machine's clock shows `real`; never earlier than its base. */
KT_U64 clockAt(const Clock& clock, KT_U64 real);
/* The state's clock now; a state without one keeps real time. */
KT_U64 simulatedNow(Store& store);
Clock loadClock(Store& store);
/* Sets the time to `now` and how it runs from here: speed in thousandths of real time. */
void setClock(Store& store, KT_U64 now, KT_U32 speed, bool stopped);

} // namespace sim
#endif
