// The battery backup unit: charge over time, relearning, and the caches that depend on it.
#pragma once

#include "state/store.h"

#include <vector>

namespace sim {

// What KT_BBU_ChangePower does.
enum : KT_U8 { POWER_STOP = 0, POWER_CHARGE = 1, POWER_DISCHARGE = 2 };

// The record at context.now; status 0 when there is no battery. KT_ERR_NOT_ON_THIS_ADAPTER when there is no place for
// one.
KT_U8 getBattery(const Context& context, _BBU_Info& info);
// A battery as it was read from such an adapter (status 0: none): charged so that it shows the same, and with what is
// wrong with it logged already.
void restoreBattery(const Context& context, const _BBU_Info& shown, KT_U8 rechargeBelow);
// What is wrong with the battery, beside its charge ("too hot"), so that it keeps no cache. None without a battery.
std::vector<const char*> batteryComplaints(const Context& context);
KT_U8 changeBatteryPower(const Context& context, KT_U8 action);

// What happens at context.now; answers when to look again.
KT_U64 settleBattery(const Context& context);

// The power goes, or (DRAIN_NONE) is back: what becomes of the charge from now on.
void drainBattery(const Context& context, KT_U8 drain);
// What was done to it while the adapter was down, for the boot to say.
void tellBattery(const Context& context);
// So that it keeps no cache; the same when there is none.
bool isBatteryEmpty(const Context& context);

// The limits that the settings page states.
struct BatteryLimits {
    KT_U8 rechargeBelow; // percent
    KT_U8 tempLow;       // Celsius
    KT_U8 tempHigh;
    KT_U16 voltLow; // mV
    KT_U16 voltHigh;
};
BatteryLimits batteryLimits(const Context& context);
void setBatteryLimits(const Context& context, const BatteryLimits& limits);

// What people and weather do to it. False when there is no battery (or no place for one).
bool hasBattery(const Context& context);
bool insertBattery(const Context& context);
bool removeBattery(const Context& context);
bool setBatteryCharge(const Context& context, unsigned percent);
bool setBatteryTemperature(const Context& context, KT_S16 hundredths);
bool setBatteryVoltage(const Context& context, KT_U16 millivolts);
bool breakCharger(const Context& context, bool broken);
// Moves the next relearn to that many seconds from now.
bool scheduleRelearn(const Context& context, KT_U64 seconds);

} // namespace sim
