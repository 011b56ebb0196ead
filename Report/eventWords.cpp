// The event log's words: the fields of each event, as labs have them, and what the event says.
#include "Report/parts.h"
#include "Report/records.h"
#include "events/eventText.h"

Json eventOf(const _Event& event) {
    Json object = Json::object();
    addFields(object, eventFields, &event);
    // Four values each time: "..." saves nothing here.
    object["Params"] = Json{event.Params[0], event.Params[1], event.Params[2], event.Params[3]};
    if (isZero(event.SenseData)) object.erase("SenseData");
    char text[EVENT_TEXT_SIZE];
    composeEvent(event, text);
    const char* begin = text + strspn(text, " ");
    add(object, "time", timeText(event.TimeStamp));
    addCode(object, "severity", severityWords, event.Severity, "severityCode");
    add(object, "text", begin);
    return object;
}

void addEvents(Json& object, const AdapterReading& adapter) {
    if (!adapter.events) return;
    Json events = Json::array();
    for (const _Event& event : *adapter.events) {
        events.push_back(eventOf(event));
    }
    add(object, "events", std::move(events));
}
