#include "events/events.h"

static EventSeverity usualSeverity(EventName name) {
    switch (name) {
#define EVENT(class, code, name, severity, ...)                                                                        \
    case EVT_##class##_##name:                                                                                         \
        return SEV_##severity;
#include "events/eventList.inc"
    }
    return SEV_UNKNOWN;
}

_Event newEvent(EventName name, KT_U16 device) {
    _Event event = {};
    event.Class = static_cast<KT_U16>(name >> 16);
    event.Code = static_cast<KT_U16>(name & 0xFFFF);
    event.DeviceID = device;
    event.Severity = usualSeverity(name);
    return event;
}
