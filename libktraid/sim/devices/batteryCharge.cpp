#include "devices/batteryCharge.h"

#include <algorithm>

namespace sim {

static const KT_U64 LEAK_TIME = 100 * DAY; // from full to empty with nothing going on
static const KT_U64 CACHE_TIME = 3 * DAY;  // from full to empty, keeping a cache
static const KT_U32 MILLIVOLTS_PER_PERCENT = 6;

bool findBattery(const Context& context, _BBU_Info& info) {
    const auto found = find<_BBU_Info>(context, 0);
    if (found) info = *found;
    return found && (found->status & KT_BBU_PRESENT);
}

bool hasBatteryPlace(const Context& context) {
    return (adapterInfo(context).AdvancedFeatures & KT_ADV_BBU) || find<_BBU_Info>(context, 0);
}

BatteryState firstBatteryState(const Context& context) {
    _BBU_Info info = {};
    BatteryState state = {};
    state.since = context.now;
    state.nextRelearn = context.now + RELEARN_PERIOD;
    state.rechargeBelow = DEFAULT_RECHARGE_BELOW;
    state.abnormal = 1;
    if (!findBattery(context, info)) return state;
    state.abnormal = 0;
    state.designCapacity = info.maxCapacity;
    const KT_U32 percent = std::min<KT_U32>(info.percentage, 100);
    const bool agrees = info.maxCapacity && info.capacity * 100U / info.maxCapacity == percent;
    state.charge = agrees ? static_cast<KT_U32>(KT_U64{info.capacity} * BATTERY_FULL / info.maxCapacity)
                          : percent * BATTERY_FULL / 100;
    if (info.status & KT_BBU_CHARGING) state.mode = BATTERY_CHARGING;
    if (info.status & KT_BBU_DISCHARGING) state.mode = BATTERY_DISCHARGING;
    return state;
}

BatteryState batteryState(const Context& context) {
    const auto found = find<BatteryState>(context, 0);
    return found ? *found : firstBatteryState(context);
}

bool isRising(const BatteryState& state) {
    return state.mode == BATTERY_CHARGING && !state.chargerBroken && state.drain == DRAIN_NONE;
}

// Milliseconds that the whole charge takes in the present mode.
static KT_U64 paceOf(const BatteryState& state) {
    if (state.drain != DRAIN_NONE) return state.drain == DRAIN_CACHE ? CACHE_TIME : LEAK_TIME;
    if (isRising(state)) return BATTERY_CHARGE_TIME;
    return state.mode == BATTERY_DISCHARGING ? BATTERY_DISCHARGE_TIME : LEAK_TIME;
}

KT_U32 chargeAt(const BatteryState& state, KT_U64 now) {
    const KT_U64 pace = paceOf(state);
    if (now <= state.since) return state.charge;
    const KT_U64 passed = std::min(now - state.since, pace);
    const auto moved = static_cast<KT_U32>(passed * BATTERY_FULL / pace);
    if (isRising(state)) return std::min(BATTERY_FULL, state.charge + moved);
    return state.charge > moved ? state.charge - moved : 0;
}

KT_U64 whenCharged(const BatteryState& state, KT_U32 level) {
    const KT_U64 pace = paceOf(state);
    const bool rising = isRising(state);
    if (rising ? level <= state.charge : level >= state.charge) return NEVER;
    const KT_U64 way = rising ? level - state.charge : state.charge - level;
    return state.since + (way * pace + BATTERY_FULL - 1) / BATTERY_FULL;
}

int voltageAt(const _BBU_Info& info, KT_U32 charge) {
    const int percent = static_cast<int>(charge / (BATTERY_FULL / 100));
    return info.voltage + (percent - info.percentage) * static_cast<int>(MILLIVOLTS_PER_PERCENT);
}

} // namespace sim
