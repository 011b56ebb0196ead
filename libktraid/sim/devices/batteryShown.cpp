#include "devices/batteryShown.h"

#include "devices/batteryCharge.h"

#include <algorithm>

namespace sim {

// Millionths of the charge at which a whole number of steps, rounded down, is shown: `steps` of them make a full
// charge.
static void narrow(KT_U64 shown, KT_U64 steps, KT_U32& least, KT_U32& most) {
    const KT_U64 from = (shown * BATTERY_FULL + steps - 1) / steps;
    const KT_U64 to = ((shown + 1) * BATTERY_FULL + steps - 1) / steps - 1;
    least = static_cast<KT_U32>(std::clamp<KT_U64>(from, least, BATTERY_FULL));
    most = static_cast<KT_U32>(std::min<KT_U64>(to, most));
}

KT_U32 chargeThatShows(const _BBU_Info& info) {
    KT_U32 least = 0;
    KT_U32 most = BATTERY_FULL;
    narrow(std::min<KT_U8>(info.percentage, 100), 100, least, most);
    const KT_U32 plain = least;
    if (info.maxCapacity) {
        const KT_U64 half = KT_U64{info.capacity} * BATTERY_FULL;
        const KT_U64 from =
            half > BATTERY_FULL / 2 ? (half - BATTERY_FULL / 2 + info.maxCapacity - 1) / info.maxCapacity : 0;
        const KT_U64 to = (half + BATTERY_FULL / 2 - 1) / info.maxCapacity;
        least = static_cast<KT_U32>(std::clamp<KT_U64>(from, least, BATTERY_FULL));
        most = static_cast<KT_U32>(std::min<KT_U64>(to, most));
    }
    if (info.status & KT_BBU_DISCHARGING) {
        narrow(info.minutesToEmpty, BATTERY_DISCHARGE_TIME / MINUTE, least, most);
        least = std::max(least, KT_U32{1}); // an empty one discharges no further
    }
    if (info.status & KT_BBU_CHARGING) {
        KT_U32 lackLeast = 0;
        KT_U32 lackMost = BATTERY_FULL;
        narrow(info.minutesToFull, BATTERY_CHARGE_TIME / MINUTE, lackLeast, lackMost);
        least = std::max(least, BATTERY_FULL - lackMost);
        most = std::min(most, BATTERY_FULL - lackLeast);
    }
    if (least > most) return plain;
    const KT_U64 capacity = KT_U64{info.capacity} * BATTERY_FULL / std::max<KT_U16>(info.maxCapacity, 1);
    return static_cast<KT_U32>(std::clamp<KT_U64>(capacity, least, most));
}

} // namespace sim
