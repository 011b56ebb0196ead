// The adapter's event log.
#pragma once

#include "events/events.h"
#include "state/store.h"

#include <array>

namespace sim {

inline constexpr KT_U64 EVENTS_KEPT = 12000; // an adapter's log drops the oldest beyond these

// _Event.Params
using EventParams = std::array<KT_U32, 4>;

// Appends one event at context.now with the adapter's next sequence number, as grave as the list of events says.
void logEvent(const Context& context, EventName name, KT_U16 device, const EventParams& params = {});
// The same for an event that is more or less grave this time.
void logEvent(const Context& context, EventName name, KT_U16 device, EventSeverity severity,
              const EventParams& params = {});
// The same for an event that holds more; sequence number, time and adapter are filled in here.
void logEvent(const Context& context, _Event event);

} // namespace sim
