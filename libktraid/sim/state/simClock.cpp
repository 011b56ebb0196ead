#include "state/simClock.h"

#include <algorithm>
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
    const KT_U64 room = LAST_MOMENT - shownAt(clock, clock.base);
    if (clock.speed != 0 && passed / 1000 >= room / clock.speed) return clock.base + room;
    return clock.base + passed / 1000 * clock.speed + passed % 1000 * clock.speed / 1000;
}

Clock loadClock(Store& store) {
    const auto clock = find<Clock>(store, ADAPTER_GLOBAL, 0);
    if (clock) return *clock;
    const KT_U64 real = realNow();
    return Clock{real, real, 1000, 0, {}, 0};
}

KT_U64 simulatedNow(Store& store) {
    return clockAt(loadClock(store), realNow());
}

void setClock(Store& store, KT_U64 now, KT_U32 speed, bool stopped) {
    // A stopped clock stores no real time, so that equal states are equal byte by byte.
    const KT_U64 realBase = stopped ? 0 : realNow();
    const int64_t ahead = loadClock(store).ahead;
    save(store, ADAPTER_GLOBAL, 0, Clock{now, realBase, speed, static_cast<KT_U8>(stopped ? 1 : 0), {}, ahead});
}

KT_U64 shownAt(const Clock& clock, KT_U64 now) {
    return std::min(now + static_cast<KT_U64>(clock.ahead), LAST_MOMENT);
}

KT_U64 shownTime(const Context& context) {
    return shownAt(loadClock(context.store), context.now);
}

void setShownTime(Store& store, KT_U64 milliseconds) {
    const KT_U64 now = simulatedNow(store);
    Clock clock = loadClock(store);
    setClock(store, now, clock.speed, clock.stopped != 0); // one that had come to its end runs from here
    clock = loadClock(store);
    clock.ahead = static_cast<int64_t>(milliseconds - now);
    save(store, ADAPTER_GLOBAL, 0, clock);
}

} // namespace sim
