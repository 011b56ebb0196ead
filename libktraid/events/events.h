// The events that adapters log, by name. The names, classes and severities are made of the rows of eventList.inc; the
// texts are in eventText.h.
#pragma once

#include "ktraid.h"

// _Event.Class: EVT_VD and the like.
enum EventClass : KT_U16 {
#define EVENT_CLASS(code, name) EVT_##name = (code),
#include "events/eventList.inc"
};

// _Event.Severity: SEV_MAJOR and the like.
enum EventSeverity : KT_U8 {
#define SEVERITY(code, name, word) SEV_##name = (code),
#include "events/eventList.inc"
};

// Class and code in one number: EVT_VD_OFFLINE and the like.
enum EventName : KT_U32 {
#define EVENT(class, code, name, ...) EVT_##class##_##name = KT_U32{EVT_##class} << 16 | (code),
#include "events/eventList.inc"
};

constexpr bool isEvent(const _Event& event, EventName name) {
    return (KT_U32{event.Class} << 16 | event.Code) == name;
}

// An event of that name about a device, as grave as the list says; all other fields are 0.
_Event newEvent(EventName name, KT_U16 device);
