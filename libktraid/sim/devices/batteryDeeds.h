// What is done to the battery: by the calls, by the settings page, by people and the weather.
#pragma once

#include "state/store.h"

namespace sim {

// What KT_BBU_ChangePower does.
enum : KT_U8 { POWER_STOP = 0, POWER_CHARGE = 1, POWER_DISCHARGE = 2 };

KT_U8 changeBatteryPower(const Context& context, KT_U8 action);

// What was done to it while the adapter was down, for the boot to say.
void tellBattery(const Context& context);

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
bool insertBattery(const Context& context);
bool removeBattery(const Context& context);
bool setBatteryCharge(const Context& context, unsigned percent); // 0 to 100
bool setBatteryTemperature(const Context& context, KT_S16 hundredths);
bool setBatteryVoltage(const Context& context, KT_U16 millivolts);
bool breakCharger(const Context& context, bool broken);
// Moves the next relearn to that many seconds from now.
bool scheduleRelearn(const Context& context, KT_U64 seconds);

} // namespace sim
