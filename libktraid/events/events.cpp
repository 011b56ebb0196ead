#include "events/events.h"

namespace {
struct Severity {
    EventName name;
    EventSeverity usual;
};
constexpr Severity severities[] = {
#define EVENT(class, code, name, severity, ...) {EVT_##class##_##name, SEV_##severity},
#include "events/eventList.inc"
};

constexpr bool isEachOnce() {
    for (const Severity& row : severities) {
        for (const Severity* other = severities; other != &row; ++other) {
            if (other->name == row.name) return false;
        }
    }
    return true;
}
static_assert(isEachOnce(), "no two events have the same class and code");
} // namespace

static EventSeverity usualSeverity(EventName name) {
    for (const Severity& row : severities) {
        if (row.name == name) return row.usual;
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
