#include "devices/batteryDeeds.h"

#include "devices/battery.h"
#include "devices/batteryCharge.h"
#include "raid/keptCaches.h"
#include "state/due.h"
#include "state/events.h"

#include <algorithm>

namespace sim {

static const KT_U64 POSTPONED_BY = DAY;

static void settleNow(const Context& context, const BatteryState& state) {
    save(context, 0, state);
    if (isDown(context)) return;
    schedulePeripherals(context, settleBattery(context));
}

KT_U8 changeBatteryPower(const Context& context, KT_U8 action) {
    if (!hasBatteryPlace(context)) return KT_ERR_NOT_ON_THIS_ADAPTER;
    if (action > POWER_DISCHARGE) return KT_ERR_INVALID_PARAMETER;
    _BBU_Info info = {};
    if (!findBattery(context, info)) return KT_ERR_INVALID_BBU;
    BatteryState state = batteryState(context);
    state.charge = chargeAt(state, context.now);
    state.since = context.now;
    if (action == POWER_CHARGE && state.charge == BATTERY_FULL) return KT_ERR_INVALID_REQUEST;
    if (action == POWER_DISCHARGE && state.charge == 0) return KT_ERR_INVALID_REQUEST;
    if (state.relearn != RELEARN_NONE) {
        logBattery(context, EVT_BATTERY_RELEARN_POSTPONED);
        planRelearn(state, context.now + POSTPONED_BY);
    }
    if (action == POWER_STOP && state.mode == BATTERY_CHARGING) logBattery(context, EVT_BATTERY_STOPPED_CHARGING);
    if (action == POWER_STOP && state.mode == BATTERY_DISCHARGING) logBattery(context, EVT_BATTERY_STOPPED_DISCHARGING);
    const KT_U8 modes[] = {BATTERY_IDLE, BATTERY_CHARGING, BATTERY_DISCHARGING};
    setBatteryMode(context, state, modes[action]);
    settleNow(context, state);
    return KT_OK;
}

BatteryLimits batteryLimits(const Context& context) {
    _BBU_Info info = {};
    if (!findBattery(context, info)) return BatteryLimits{DEFAULT_RECHARGE_BELOW, 0, 60, 3300, 4300};
    const auto celsius = [](KT_S16 value) { return static_cast<KT_U8>(std::clamp<int>(value, 0, 255)); };
    return BatteryLimits{batteryState(context).rechargeBelow, celsius(info.tempLow), celsius(info.tempHigh),
                         info.voltLow, info.voltHigh};
}

void setBatteryLimits(const Context& context, const BatteryLimits& limits) {
    _BBU_Info info = {};
    if (!findBattery(context, info)) return;
    const BatteryLimits before = batteryLimits(context);
    BatteryState state = batteryState(context);
    if (limits.rechargeBelow != before.rechargeBelow && limits.rechargeBelow <= 100) {
        state.rechargeBelow = limits.rechargeBelow;
        logBattery(context, EVT_BATTERY_CHARGE_THRESHOLD_CHANGED);
    }
    if (limits.voltLow != before.voltLow || limits.voltHigh != before.voltHigh) {
        info.voltLow = limits.voltLow;
        info.voltHigh = limits.voltHigh;
        logBattery(context, EVT_BATTERY_VOLTAGE_LIMITS_CHANGED);
    }
    if (limits.tempLow != before.tempLow || limits.tempHigh != before.tempHigh) {
        info.tempLow = limits.tempLow;
        info.tempHigh = limits.tempHigh;
        logBattery(context, EVT_BATTERY_TEMPERATURE_LIMITS_CHANGED);
    }
    save(context, 0, info);
    settleNow(context, state);
}

static void logChange(const Context& context, KT_U8 change) {
    if (change == BATTERY_CHANGE_REMOVED) logBattery(context, EVT_BATTERY_REMOVED);
    if (change == BATTERY_CHANGE_REPLACED) logBattery(context, EVT_BATTERY_REPLACED);
    if (change != BATTERY_CHANGE_NEW) return;
    logBattery(context, EVT_BATTERY_NEW);
    logBattery(context, EVT_BATTERY_PRESENT);
}

// Logs what was done, or keeps it for the boot to tell: another battery than before in all, none, or one where none
// was.
static void noteChange(const Context& context, BatteryState& state, const BatteryState& before, KT_U8 change) {
    state.untold = BATTERY_CHANGE_NONE;
    if (!isDown(context)) return logChange(context, change);
    const bool was = before.untold == BATTERY_CHANGE_REMOVED || before.untold == BATTERY_CHANGE_REPLACED ||
                     (before.untold == BATTERY_CHANGE_NONE && change != BATTERY_CHANGE_NEW);
    const bool is = change != BATTERY_CHANGE_REMOVED;
    if (was && is) state.untold = BATTERY_CHANGE_REPLACED;
    if (was && !is) state.untold = BATTERY_CHANGE_REMOVED;
    if (!was && is) state.untold = BATTERY_CHANGE_NEW;
}

void tellBattery(const Context& context) {
    BatteryState state = batteryState(context);
    if (state.untold == BATTERY_CHANGE_NONE) return;
    logChange(context, state.untold);
    state.untold = BATTERY_CHANGE_NONE;
    save(context, 0, state);
}

bool insertBattery(const Context& context) {
    if (!hasBatteryPlace(context)) return false;
    if (isDown(context) && hasBattery(context)) loseKeptCaches(context);
    _BBU_Info info = {};
    const bool replaces = findBattery(context, info);
    const BatteryState before = batteryState(context);
    const BatteryLimits limits = batteryLimits(context);
    info = {};
    info.status = KT_BBU_PRESENT;
    info.sensorSupport = KT_SENSOR_TEMPERATURE | KT_SENSOR_VOLTAGE | KT_SENSOR_CAPACITY;
    info.temperature = 2500;
    info.tempLow = limits.tempLow;
    info.tempHigh = limits.tempHigh;
    info.voltage = 3900;
    info.voltLow = limits.voltLow;
    info.voltHigh = limits.voltHigh;
    info.maxCapacity = 650;
    info.percentage = 50;
    save(context, 0, info);
    erase<BatteryState>(context, 0);
    BatteryState state = firstBatteryState(context);
    state.rechargeBelow = limits.rechargeBelow;
    state.abnormal = before.abnormal;
    state.drain = isDown(context) ? DRAIN_LEAK : DRAIN_NONE;
    noteChange(context, state, before, replaces ? BATTERY_CHANGE_REPLACED : BATTERY_CHANGE_NEW);
    settleNow(context, state);
    return true;
}

bool removeBattery(const Context& context) {
    _BBU_Info info = {};
    if (!findBattery(context, info)) return false;
    BatteryState state = batteryState(context);
    save(context, 0, _BBU_Info{});
    if (isDown(context)) loseKeptCaches(context);
    noteChange(context, state, state, BATTERY_CHANGE_REMOVED);
    state.complaints = 0;
    state.relearn = RELEARN_NONE;
    settleNow(context, state);
    return true;
}

// Changes the record, and the state with the charge brought up to now, by `change(info, state)`.
template <class Change>
static bool changeBattery(const Context& context, Change change) {
    _BBU_Info info = {};
    if (!findBattery(context, info)) return false;
    BatteryState state = batteryState(context);
    state.charge = chargeAt(state, context.now);
    state.since = context.now;
    change(info, state);
    save(context, 0, info);
    settleNow(context, state);
    return true;
}

bool setBatteryCharge(const Context& context, unsigned percent) {
    return changeBattery(context,
                         [&](_BBU_Info&, BatteryState& state) { state.charge = percent * (BATTERY_FULL / 100); });
}

bool setBatteryTemperature(const Context& context, KT_S16 hundredths) {
    return changeBattery(context, [&](_BBU_Info& info, BatteryState&) { info.temperature = hundredths; });
}

bool setBatteryVoltage(const Context& context, KT_U16 millivolts) {
    return changeBattery(context, [&](_BBU_Info& info, BatteryState& state) {
        info.voltage = millivolts;
        info.percentage = static_cast<KT_U8>(state.charge / (BATTERY_FULL / 100));
    });
}

bool breakCharger(const Context& context, bool broken) {
    return changeBattery(context, [&](_BBU_Info&, BatteryState& state) {
        if (broken && !state.chargerBroken) logBattery(context, EVT_BATTERY_CHARGER_PROBLEM);
        if (!broken && state.chargerBroken && state.mode == BATTERY_CHARGING) logBattery(context, EVT_BATTERY_CHARGING);
        state.chargerBroken = broken ? 1 : 0;
    });
}

bool scheduleRelearn(const Context& context, KT_U64 seconds) {
    return changeBattery(context, [&](_BBU_Info&, BatteryState& state) {
        planRelearn(state, context.now + std::min(seconds, 100 * RELEARN_PERIOD / 1000) * 1000);
    });
}

} // namespace sim
