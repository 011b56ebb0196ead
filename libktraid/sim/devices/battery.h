// The battery backup unit: charge over time, relearning, and the caches that depend on it.
#pragma once

#include "state/events.h"

#include <vector>

namespace sim {

// False when there is none, or no place for one.
bool hasBattery(const Context& context);
// The record at context.now; status 0 when there is no battery. KT_ERR_NOT_ON_THIS_ADAPTER when there is no place for
// one.
KT_U8 getBattery(const Context& context, _BBU_Info& info);
// A battery as it was read from such an adapter (status 0: none): charged so that it shows the same, and with what is
// wrong with it logged already.
void restoreBattery(const Context& context, const _BBU_Info& shown, KT_U8 rechargeBelow);
// What is wrong with the battery, beside its charge ("too hot"), so that it keeps no cache. None without a battery.
std::vector<const char*> batteryComplaints(const Context& context);

// What happens at context.now; answers when to look again.
KT_U64 settleBattery(const Context& context);

// The power goes, or (DRAIN_NONE) is back: what becomes of the charge from now on.
void drainBattery(const Context& context, KT_U8 drain);
// So that it keeps no cache; the same when there is none.
bool isBatteryEmpty(const Context& context);

// Steps that it takes by itself, and is made to take.
void logBattery(const Context& context, EventName event);
// With what the log says of it. A BATTERY_* mode; the charge is to be that of context.now.
void setBatteryMode(const Context& context, BatteryState& state, KT_U8 mode);
void planRelearn(BatteryState& state, KT_U64 when);

} // namespace sim
