#include "events/eventText.h"

#include "events/events.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

// What stands at a conversion of a text.
enum Value : KT_U8 {
    None,
    Device,
    Kind, // "Virtual Disk" or "Tandemix"
    Param0,
    Param1,
    Param2,
    Param3,
    Param0Low, // the low eight bits of Param0
    Sequence,
    LastSequence, // Param2, which is a sequence number like the event's own
    Serial,       // the sense data as text
    Class,
    Code
};

// Which events of a class and code a text is for.
enum When : KT_U8 {
    Always,
    WithSerial, // the sense data holds the adapter's serial number
    WithParam0, // Params[0] is not 0
    OnHybrid    // the virtual disk is a hybrid one
};

struct EventRow {
    EventName name;
    When when;
    // Held in place: a table of pointers would be work at every start of the program.
    char text[88];
    Value values[5];
};

// The first row that fits an event describes it.
const EventRow eventRows[] = {
#define EVENT(class, code, name, severity, text, ...) {EVT_##class##_##name, Always, text, {__VA_ARGS__}},
#define EVENT_WHEN(condition, class, name, text, ...) {EVT_##class##_##name, condition, text, {__VA_ARGS__}},
#include "events/eventList.inc"
};

// clang-format off
// Events without a row, by class.
struct UnknownRow {
    KT_U16 eventClass;
    const char* text;
};
const UnknownRow unknownRows[] = {
    {EVT_ADAPTER, "Unknown adapter event code %d"},
    {EVT_VD, "Unknown VD event code %d"},
    {EVT_PD, "Unknown PD event code %d"},
    {EVT_PM, "%s Unknown PM event class: code = %d"},
    {EVT_EXPANDER, "Unknown expander event code %d"},
    {EVT_MDD, "%s Unknown MDD event class: code = %d"},
    {EVT_BSL, "%s Unknown BSL event class: code = %d"},
    {EVT_SAS, "%s Unknown SAS event class: code = %d"},
    {EVT_ENCLOSURE, "%s Unknown Enclosure event class: code = %d"},
    {EVT_BATTERY, "Unknown battery event code %d"},
    {EVT_FLASH, "%s Unknown Flash event class: code = %d"},
    {EVT_CACHE, "%s Unknown Cache event class: code = %d"},
    {EVT_MISC, "%s Unknown miscellaneous event: code = %d"},
};
// clang-format on

// The part of the text that is written so far; what does not fit is dropped.
struct Composed {
    char (&text)[EVENT_TEXT_SIZE];
    size_t length;
};

} // namespace

__attribute__((format(printf, 2, 3))) static void add(Composed& composed, const char* format, ...) {
    const size_t room = EVENT_TEXT_SIZE - composed.length;
    va_list arguments;
    va_start(arguments, format);
    const int written = vsnprintf(composed.text + composed.length, room, format, arguments);
    va_end(arguments);
    if (written > 0) composed.length += std::min(static_cast<size_t>(written), room - 1);
}

static void addSerial(Composed& composed, const _Event& event) {
    const size_t valid = std::min<size_t>(event.SenseDataLength, sizeof event.SenseData);
    for (size_t i = 0; i < valid && event.SenseData[i] != 0; ++i) {
        const KT_U8 byte = event.SenseData[i];
        add(composed, "%c", byte >= 0x20 && byte < 0x7F ? byte : '?');
    }
}

static KT_U32 number(const _Event& event, Value value) {
    switch (value) {
    case Device:
        return event.DeviceID;
    case Param0:
        return event.Params[0];
    case Param1:
        return event.Params[1];
    case Param2:
    case LastSequence:
        return event.Params[2];
    case Param3:
        return event.Params[3];
    case Param0Low:
        return event.Params[0] & 0xFF;
    case Sequence:
        return event.SequenceNo;
    case Class:
        return event.Class;
    case Code:
        return event.Code;
    default:
        return 0;
    }
}

static bool isHybrid(const _Event& event) {
    return event.Params[3] == 1;
}

// Writes the value at the conversion that `at` points to and returns what stands behind it.
static const char* addValue(Composed& composed, const char* at, const _Event& event, Value value) {
    if (strncmp(at, "%08x", 4) == 0) {
        add(composed, "%08x", number(event, value));
        return at + 4;
    }
    if (value == Kind) {
        add(composed, "%s", isHybrid(event) ? "Tandemix" : "Virtual Disk");
    } else if (value == Serial) {
        addSerial(composed, event);
    } else if (at[1] == 'x') {
        add(composed, "%x", number(event, value));
    } else if (at[1] == 'X') {
        add(composed, "%X", number(event, value));
    } else if (value == Sequence || value == LastSequence) {
        add(composed, "%u", number(event, value));
    } else {
        add(composed, "%d", static_cast<int>(number(event, value)));
    }
    return at + 2;
}

static void compose(const _Event& event, const char* text, const Value* values, Composed& composed) {
    const char* at = strncmp(text, "%s", 2) == 0 ? text + 2 : text;
    while (*at != '\0') {
        if (*at != '%') {
            add(composed, "%c", *at++);
        } else if (at[1] == '%') {
            add(composed, "%c", '%');
            at += 2;
        } else {
            at = addValue(composed, at, event, *values++);
        }
    }
}

static bool fits(const EventRow& row, const _Event& event) {
    if (!isEvent(event, row.name)) return false;
    switch (row.when) {
    case WithSerial:
        return event.SenseDataLength != 0;
    case WithParam0:
        return event.Params[0] != 0;
    case OnHybrid:
        return isHybrid(event);
    default:
        return true;
    }
}

void composeEvent(const _Event& event, char (&text)[EVENT_TEXT_SIZE]) {
    Composed composed = {text, 0};
    text[0] = '\0';
    for (const EventRow& row : eventRows) {
        if (fits(row, event)) return compose(event, row.text, row.values, composed);
    }
    static const Value code[] = {Code};
    for (const UnknownRow& row : unknownRows) {
        if (row.eventClass == event.Class) return compose(event, row.text, code, composed);
    }
    static const Value classAndCode[] = {Class, Code};
    compose(event, "WARNING: Unknown event class %d, code %d", classAndCode, composed);
}

static const char* placeholder(Value value) {
    switch (value) {
    case Device:
        return "<device>";
    case Kind:
        return "Virtual Disk";
    case Param0:
    case Param0Low:
        return "<param 1>";
    case Param1:
        return "<param 2>";
    case Param2:
    case LastSequence:
        return "<param 3>";
    case Param3:
        return "<param 4>";
    case Serial:
        return "<sense text>";
    case Sequence:
        return "<sequence>";
    default:
        return "<number>";
    }
}

bool describeEvents(unsigned row, KT_U16& eventClass, KT_U16& code, char (&text)[EVENT_TEXT_SIZE]) {
    if (row >= sizeof eventRows / sizeof eventRows[0]) return false;
    const EventRow& events = eventRows[row];
    eventClass = static_cast<KT_U16>(events.name >> 16);
    code = static_cast<KT_U16>(events.name & 0xFFFF);
    Composed composed = {text, 0};
    text[0] = '\0';
    const Value* value = events.values;
    const char* at = events.text;
    // The leading "%s" is always empty, the blank behind it a margin.
    if (strncmp(at, "%s", 2) == 0) at += 2;
    at += *at == ' ' ? 1 : 0;
    while (*at != '\0') {
        if (*at != '%') {
            add(composed, "%c", *at++);
        } else if (at[1] == '%') {
            add(composed, "%c", '%');
            at += 2;
        } else {
            add(composed, "%s", placeholder(*value++));
            at += strncmp(at, "%08x", 4) == 0 ? 4 : 2;
        }
    }
    return true;
}

bool isAdapterDetected(const _Event& event) {
    return isEvent(event, EVT_ADAPTER_DETECTED);
}

const char* severityText(KT_U8 severity) {
    static const char* const words[] = {
#define SEVERITY(code, name, word) "[" #name "]",
#include "events/eventList.inc"
    };
    return severity < sizeof words / sizeof words[0] ? words[severity] : words[0];
}
