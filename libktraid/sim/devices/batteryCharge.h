// How much a battery holds at a moment: its charge moves by itself, evenly, so it is worked out and nothing has to
// tick.
#pragma once

#include "state/adapterInfo.h"

namespace sim {

inline constexpr KT_U32 BATTERY_FULL = 1000000;
inline constexpr KT_U64 MINUTE = 60 * 1000;
inline constexpr KT_U64 HOUR = 60 * MINUTE;
inline constexpr KT_U64 DAY = 24 * HOUR;
inline constexpr KT_U64 BATTERY_CHARGE_TIME = 4 * HOUR; // from empty to full
inline constexpr KT_U64 BATTERY_DISCHARGE_TIME = 3 * HOUR;
inline constexpr KT_U64 RELEARN_PERIOD = 30 * DAY;
inline constexpr KT_U8 DEFAULT_RECHARGE_BELOW = 85;

// Whether there is a battery, and its record; whether the adapter has a place for one.
bool findBattery(const Context& context, _BBU_Info& info);
bool hasBatteryPlace(const Context& context);
// How it does. The state of a battery that nobody has looked at yet follows from its record.
BatteryState batteryState(const Context& context);
BatteryState firstBatteryState(const Context& context);

// Whether its charge grows: what a broken charger should charge runs down.
bool isRising(const BatteryState& state);
KT_U32 chargeAt(const BatteryState& state, KT_U64 now); // of BATTERY_FULL
// When the charge will have reached `level`; NEVER when it moves away from it or is there.
KT_U64 whenCharged(const BatteryState& state, KT_U32 level);
int voltageAt(const _BBU_Info& info, KT_U32 charge); // millivolts

} // namespace sim
