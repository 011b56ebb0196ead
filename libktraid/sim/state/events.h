// The adapter's event log.
#pragma once

#include "state/store.h"

namespace sim {

inline constexpr KT_U64 EVENTS_KEPT = 12000; // an adapter's log drops the oldest beyond these

enum EventClass : KT_U16 {
    EVT_ADAPTER = 0,
    EVT_VD = 1,
    EVT_PD = 2,
    EVT_EXPANDER = 4,
    EVT_BATTERY = 9,
    EVT_FLASH = 10,
    EVT_MISC = 12,
    EVT_ARRAY = 13,
    EVT_ENVIRONMENT = 15
};

enum EventSeverity : KT_U8 {
    SEV_UNKNOWN = 0,
    SEV_OTHER = 1,
    SEV_INFO = 2,
    SEV_WARNING = 3,
    SEV_MINOR = 4,
    SEV_MAJOR = 5,
    SEV_CRITICAL = 6,
    SEV_FATAL = 7
};

// Appends one event at context.now with the adapter's next sequence number.
void logEvent(const Context& context, KT_U16 eventClass, KT_U16 code, KT_U16 device, KT_U8 severity, KT_U32 p0 = 0,
              KT_U32 p1 = 0, KT_U32 p2 = 0, KT_U32 p3 = 0);
// The same for an event that already holds its sense data; sequence number, time and adapter are filled in here.
void logEvent(const Context& context, _Event event);

} // namespace sim
