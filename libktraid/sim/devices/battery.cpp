#include "devices/battery.h"

#include "devices/batteryCharge.h"
#include "devices/batteryShown.h"
#include "raid/cacheMode.h"
#include "state/due.h"
#include "state/events.h"

#include <algorithm>
#include <cstring>

namespace sim {

static const KT_U64 RELEARN_LIMIT = 24 * HOUR;
static const KT_U32 LOW_CHARGE = BATTERY_FULL / 100 * 30; // below it the cache would not survive
static const KT_U16 WORN_OUT_PERCENT = 60;                // of the design capacity

struct Announcement {
    KT_U64 before;
    EventName event;
};
static const Announcement ANNOUNCEMENTS[] = {{4 * DAY, EVT_BATTERY_RELEARN_IN_4_DAYS},
                                             {2 * DAY, EVT_BATTERY_RELEARN_IN_2_DAYS},
                                             {DAY, EVT_BATTERY_RELEARN_IN_1_DAY},
                                             {5 * HOUR, EVT_BATTERY_RELEARN_IN_5_HOURS}};

void logBattery(const Context& context, EventName event) {
    logEvent(context, event, 0);
}

bool hasBattery(const Context& context) {
    _BBU_Info info = {};
    return findBattery(context, info);
}

static KT_U8 makeBattery(const Context& context, _BBU_Info& info) {
    if (!hasBatteryPlace(context)) return KT_ERR_NOT_ON_THIS_ADAPTER;
    info = {};
    if (!findBattery(context, info)) {
        info = {};
        return KT_OK;
    }
    const BatteryState state = batteryState(context);
    const KT_U32 charge = chargeAt(state, context.now);
    info.voltage = static_cast<KT_U16>(std::clamp(voltageAt(info, charge), 0, 0xFFFF));
    info.status = KT_BBU_PRESENT;
    info.minutesToFull = info.minutesToEmpty = 0;
    if (isRising(state)) {
        info.status |= KT_BBU_CHARGING;
        info.minutesToFull = static_cast<KT_U16>((BATTERY_FULL - charge) * BATTERY_CHARGE_TIME / BATTERY_FULL / MINUTE);
    } else if (state.mode == BATTERY_DISCHARGING && state.drain == DRAIN_NONE) {
        info.status |= KT_BBU_DISCHARGING;
        info.minutesToEmpty = static_cast<KT_U16>(charge * BATTERY_DISCHARGE_TIME / BATTERY_FULL / MINUTE);
    }
    info.capacity = static_cast<KT_U16>((KT_U64{info.maxCapacity} * charge + BATTERY_FULL / 2) / BATTERY_FULL);
    info.percentage = static_cast<KT_U8>(charge / (BATTERY_FULL / 100));
    return KT_OK;
}

KT_U8 getBattery(const Context& context, _BBU_Info& info) {
    const KT_U8 status = makeBattery(context, info);
    const auto told = find<ToldBattery>(context, 0);
    if (status == KT_OK && told && memcmp(&told->made, &info, sizeof info) == 0) info = told->shown;
    return status;
}

// The automatic caches.

static void switchCaches(const Context& context) {
    forEach<VdState>(context, 0, [&](KT_U64 id, const VdState& vd) {
        auto info = vd.cachePolicy & KT_CACHE_AUTO ? find<_LD_Info>(context, id) : std::nullopt;
        if (!info) return true;
        info->CacheMode = cacheModeFor(context, vd.cachePolicy);
        save(context, id, *info);
        return true;
    });
}

// What can be wrong with a battery, and the events that say so and that it is over.
struct Complaint {
    bool (*holds)(const _BBU_Info& info, const BatteryState& state);
    EventName event;
    EventName over;
    const char* word; // null where the percentage tells
};
static const Complaint COMPLAINTS[] = {
    {[](const _BBU_Info&, const BatteryState& state) { return state.charge < LOW_CHARGE; }, EVT_BATTERY_CHARGE_LOW,
     EVT_BATTERY_CHARGE_NORMAL, nullptr},
    {[](const _BBU_Info& info, const BatteryState&) {
         return (info.sensorSupport & KT_SENSOR_TEMPERATURE) && info.temperature < info.tempLow * 100;
     },
     EVT_BATTERY_TOO_COLD, EVT_BATTERY_TEMPERATURE_NORMAL, "too cold"},
    {[](const _BBU_Info& info, const BatteryState&) {
         return (info.sensorSupport & KT_SENSOR_TEMPERATURE) && info.temperature > info.tempHigh * 100;
     },
     EVT_BATTERY_TOO_HOT, EVT_BATTERY_TEMPERATURE_NORMAL, "too hot"},
    {[](const _BBU_Info& info, const BatteryState& state) {
         return (info.sensorSupport & KT_SENSOR_VOLTAGE) && voltageAt(info, state.charge) < info.voltLow;
     },
     EVT_BATTERY_VOLTAGE_LOW, EVT_BATTERY_VOLTAGE_NORMAL, "voltage too low"},
    {[](const _BBU_Info& info, const BatteryState& state) {
         return (info.sensorSupport & KT_SENSOR_VOLTAGE) && voltageAt(info, state.charge) > info.voltHigh;
     },
     EVT_BATTERY_VOLTAGE_HIGH, EVT_BATTERY_VOLTAGE_NORMAL, "voltage too high"},
};

static void checkComplaints(const Context& context, const _BBU_Info& info, BatteryState& state) {
    // "Back to normal" is logged only when no other complaint of that kind (too cold, too hot) holds.
    const auto isOver = [&](EventName event) {
        return std::none_of(std::begin(COMPLAINTS), std::end(COMPLAINTS),
                            [&](const Complaint& each) { return each.over == event && each.holds(info, state); });
    };
    for (size_t i = 0; i < std::size(COMPLAINTS); ++i) {
        const auto bit = static_cast<KT_U8>(1U << i);
        const bool wrong = COMPLAINTS[i].holds(info, state);
        if (wrong == ((state.complaints & bit) != 0)) continue;
        state.complaints = static_cast<KT_U8>(state.complaints ^ bit);
        if (wrong) logBattery(context, COMPLAINTS[i].event);
        if (!wrong && isOver(COMPLAINTS[i].over)) logBattery(context, COMPLAINTS[i].over);
    }
}

static void setAbnormal(const Context& context, BatteryState& state, bool abnormal, bool announce = true) {
    const bool changes = state.abnormal != (abnormal ? 1 : 0);
    state.abnormal = abnormal ? 1 : 0;
    save(context, 0, state);
    if (changes && announce) logBattery(context, abnormal ? EVT_BATTERY_ABNORMAL : EVT_BATTERY_NORMAL);
    if (changes || !announce) switchCaches(context);
}

static KT_U8 complaintsOf(const _BBU_Info& info, const BatteryState& state) {
    unsigned complaints = 0;
    for (size_t i = 0; i < std::size(COMPLAINTS); ++i)
        if (COMPLAINTS[i].holds(info, state)) complaints |= 1U << i;
    return static_cast<KT_U8>(complaints);
}

std::vector<const char*> batteryComplaints(const Context& context) {
    std::vector<const char*> words;
    _BBU_Info info = {};
    if (!hasBatteryPlace(context) || !findBattery(context, info)) return words;
    BatteryState state = batteryState(context);
    state.charge = chargeAt(state, context.now);
    for (const Complaint& each : COMPLAINTS)
        if (each.word && each.holds(info, state)) words.push_back(each.word);
    return words;
}

static bool needsCharge(const BatteryState& state) {
    return state.charge <= state.rechargeBelow * (BATTERY_FULL / 100);
}

void restoreBattery(const Context& context, const _BBU_Info& shown, KT_U8 rechargeBelow) {
    const bool present = (shown.status & KT_BBU_PRESENT) != 0;
    if (present) save(context, 0, shown);
    if (!hasBatteryPlace(context)) return;
    BatteryState state = firstBatteryState(context);
    if (rechargeBelow) state.rechargeBelow = rechargeBelow;
    if (present) {
        state.charge = chargeThatShows(shown);
        // With a charger that works it would be charging at this level.
        if (state.mode == BATTERY_IDLE && needsCharge(state)) {
            state.mode = BATTERY_CHARGING;
            state.chargerBroken = 1;
        }
        state.complaints = complaintsOf(shown, state);
        state.abnormal = state.complaints ? 1 : 0;
    }
    save(context, 0, state);
    ToldBattery told{shown, {}};
    makeBattery(context, told.made);
    if (memcmp(&told.made, &shown, sizeof shown) != 0) save(context, 0, told);
}

// Charge and discharge.

void setBatteryMode(const Context& context, BatteryState& state, KT_U8 mode) {
    if (state.mode == mode) return;
    state.mode = mode;
    if (mode == BATTERY_CHARGING && state.chargerBroken) logBattery(context, EVT_BATTERY_CHARGER_PROBLEM);
    if (mode == BATTERY_CHARGING && !state.chargerBroken) logBattery(context, EVT_BATTERY_CHARGING);
    if (mode == BATTERY_DISCHARGING) logBattery(context, EVT_BATTERY_DISCHARGING);
}

void planRelearn(BatteryState& state, KT_U64 when) {
    state.relearn = RELEARN_NONE;
    state.nextRelearn = when;
    state.announced = 0;
}

static void startRelearn(const Context& context, BatteryState& state) {
    state.relearn = RELEARN_DISCHARGING;
    state.relearnStarted = context.now;
    logBattery(context, EVT_BATTERY_RELEARN_STARTED);
    setBatteryMode(context, state, BATTERY_DISCHARGING);
}

// A relearned battery knows its capacity anew: a hundredth less each time.
static void finishRelearn(const Context& context, _BBU_Info& info, BatteryState& state) {
    const bool sound = info.maxCapacity * 100U >= state.designCapacity * KT_U32{WORN_OUT_PERCENT};
    info.maxCapacity = static_cast<KT_U16>(info.maxCapacity - info.maxCapacity / 100);
    ++info.rechargeCycle;
    save(context, 0, info);
    logBattery(context, EVT_BATTERY_RELEARN_DONE);
    planRelearn(state, state.nextRelearn + RELEARN_PERIOD);
    if (sound && info.maxCapacity * 100U < state.designCapacity * KT_U32{WORN_OUT_PERCENT})
        logBattery(context, EVT_BATTERY_TO_BE_REPLACED);
}

static void settleCharge(const Context& context, _BBU_Info& info, BatteryState& state) {
    if (state.mode == BATTERY_CHARGING && state.charge == BATTERY_FULL) {
        state.mode = BATTERY_IDLE;
        logBattery(context, EVT_BATTERY_CHARGED);
        if (state.relearn == RELEARN_CHARGING) finishRelearn(context, info, state);
        if (state.relearn == RELEARN_PENDING) startRelearn(context, state);
    } else if (state.mode == BATTERY_DISCHARGING && state.charge == 0) {
        logBattery(context, EVT_BATTERY_STOPPED_DISCHARGING);
        if (state.relearn == RELEARN_DISCHARGING) {
            state.relearn = RELEARN_CHARGING;
            logBattery(context, EVT_BATTERY_RELEARN_GOES_ON);
        }
        setBatteryMode(context, state, BATTERY_CHARGING);
    } else if (state.mode == BATTERY_IDLE && needsCharge(state)) {
        setBatteryMode(context, state, BATTERY_CHARGING);
    }
}

static void settleRelearn(const Context& context, BatteryState& state) {
    const bool runs = state.relearn == RELEARN_DISCHARGING || state.relearn == RELEARN_CHARGING;
    if (runs && context.now - state.relearnStarted >= RELEARN_LIMIT) {
        logBattery(context, EVT_BATTERY_RELEARN_TIMEOUT);
        planRelearn(state, context.now + RELEARN_PERIOD);
        setBatteryMode(context, state, BATTERY_CHARGING);
    }
    if (state.relearn != RELEARN_NONE) return;
    // Of the announcements that are due only the latest is worth making.
    KT_U8 due = state.announced;
    while (due < std::size(ANNOUNCEMENTS) && context.now + ANNOUNCEMENTS[due].before >= state.nextRelearn)
        ++due;
    if (due != state.announced && context.now < state.nextRelearn) logBattery(context, ANNOUNCEMENTS[due - 1].event);
    state.announced = due;
    if (context.now < state.nextRelearn) return;
    if (state.mode != BATTERY_CHARGING) {
        startRelearn(context, state);
        return;
    }
    state.relearn = RELEARN_PENDING;
    logBattery(context, EVT_BATTERY_RELEARN_PENDING);
}

static KT_U64 nextRelearnStep(const BatteryState& state) {
    if (state.relearn == RELEARN_PENDING) return NEVER;
    if (state.relearn != RELEARN_NONE) return state.relearnStarted + RELEARN_LIMIT;
    if (state.announced >= std::size(ANNOUNCEMENTS)) return state.nextRelearn;
    const KT_U64 before = ANNOUNCEMENTS[state.announced].before;
    return state.nextRelearn > before ? state.nextRelearn - before : 0;
}

KT_U64 settleBattery(const Context& context) {
    if (!hasBatteryPlace(context)) return NEVER;
    const bool first = !find<BatteryState>(context, 0);
    BatteryState state = batteryState(context);
    _BBU_Info info = {};
    if (!findBattery(context, info)) {
        setAbnormal(context, state, true, !first);
        return NEVER;
    }
    state.charge = chargeAt(state, context.now);
    state.since = context.now;
    settleCharge(context, info, state);
    settleRelearn(context, state);
    checkComplaints(context, info, state);
    setAbnormal(context, state, state.complaints != 0, !first);
    KT_U64 next = std::min(nextRelearnStep(state), whenCharged(state, LOW_CHARGE));
    next = std::min(next, whenCharged(state, isRising(state) ? BATTERY_FULL : 0));
    // The complaint begins below the low mark, so that the moment to look is when one millionth less is reached.
    next = std::min(next, whenCharged(state, LOW_CHARGE - 1));
    if (state.mode == BATTERY_IDLE)
        next = std::min(next, whenCharged(state, state.rechargeBelow * (BATTERY_FULL / 100)));
    return next;
}

// Without power.

void drainBattery(const Context& context, KT_U8 drain) {
    if (!hasBattery(context)) return;
    BatteryState state = batteryState(context);
    state.charge = chargeAt(state, context.now);
    state.since = context.now;
    state.drain = drain;
    save(context, 0, state);
}

bool isBatteryEmpty(const Context& context) {
    return !hasBattery(context) || chargeAt(batteryState(context), context.now) == 0;
}

} // namespace sim
