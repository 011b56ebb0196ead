#include "clock.h"

#include <time.h>

namespace sim {

KT_U64 realNow() {
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<KT_U64>(now.tv_sec) * 1000 + static_cast<KT_U64>(now.tv_nsec) / 1000000;
}

KT_U64 clockAt(const Clock& clock, KT_U64 real) {
    if (clock.stopped || real <= clock.realBase) return clock.base;
    const KT_U64 passed = real - clock.realBase;
    if (clock.base >= LAST_MOMENT) return clock.base;
    const KT_U64 room = LAST_MOMENT - clock.base;
    if (clock.speed != 0 && passed / 1000 >= room / clock.speed) return LAST_MOMENT;
    return clock.base + passed / 1000 * clock.speed + passed % 1000 * clock.speed / 1000;
}

Clock loadClock(Store& store) {
    const auto clock = find<Clock>(store, ADAPTER_GLOBAL, 0);
    if (clock) return *clock;
    const KT_U64 real = realNow();
    return Clock{real, real, 1000, 0, {}};
}

KT_U64 simulatedNow(Store& store) {
    return clockAt(loadClock(store), realNow());
}

void setClock(Store& store, KT_U64 now, KT_U32 speed, bool stopped) {
    /* A clock that stands has nothing to do with real time: states that are alike look alike. */
    save(store, ADAPTER_GLOBAL, 0, Clock{now, stopped ? 0 : realNow(), speed, static_cast<KT_U8>(stopped ? 1 : 0), {}});
}

} // namespace sim
