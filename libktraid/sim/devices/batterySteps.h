// Steps that the battery takes by itself, and is made to take.
#pragma once

#include "state/events.h"

namespace sim {

void logBattery(const Context& context, EventName event);
// With what the log says of it. BATTERY_*; the charge is to be that of context.now.
void setBatteryMode(const Context& context, BatteryState& state, KT_U8 mode);
void planRelearn(BatteryState& state, KT_U64 when);

} // namespace sim
