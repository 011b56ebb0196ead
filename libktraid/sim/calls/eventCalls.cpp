#include "events/eventText.h"
#include "frame/call.h"

#include <ctime>

using namespace sim;

KT_U8 KT_EVT_GetEvent(KT_U8 a, KT_U8 maxCount, KT_U8* count, _Event* events) {
    return call("KT_EVT_GetEvent", a, Access::Read,
                {num("maxCount", maxCount), out("count", count), outArray("events", events, maxCount, count)},
                [&](Context& context) {
                    const KT_U64 last = lastRow(context.store, a, KIND_EVENT).value_or(0);
                    *count = 0;
                    forEach<_Event>(context, last >= maxCount ? last - maxCount + 1 : 0,
                                    [&](KT_U64, const _Event& event) {
                                        if (*count < maxCount) events[(*count)++] = event;
                                        return true;
                                    });
                    return KT_OK;
                });
}

static _Event_Message composeMessage(const _Event& event) {
    _Event_Message message = {};
    message.Class = event.Class;
    message.Code = event.Code;
    message.SequenceNo = event.SequenceNo;
    message.Severity = event.Severity;
    message.AdapterID = event.AdapterID;
    const time_t seconds = event.TimeStamp;
    tm local = {};
    localtime_r(&seconds, &local);
    strftime(message.time, sizeof message.time, "%a %b %e %H:%M:%S %Y", &local);
    char text[EVENT_TEXT_SIZE];
    composeEvent(event, text);
    const char* begin = text + strspn(text, " ");
    strncpy(message.msg, begin, sizeof message.msg - 1);
    return message;
}

KT_U8 KT_EVT_GetEventMessage(KT_U8 a, KT_U8 maxCount, KT_U8* count, _Event_Message* messages) {
    return call("KT_EVT_GetEventMessage", a, Access::Read,
                {num("maxCount", maxCount), out("count", count), outArray("messages", messages, maxCount, count)},
                [&](Context& context) {
                    const KT_U64 last = lastRow(context.store, a, KIND_EVENT).value_or(0);
                    *count = 0;
                    forEach<_Event>(context, last >= maxCount ? last - maxCount + 1 : 0,
                                    [&](KT_U64, const _Event& event) {
                                        if (*count < maxCount) messages[(*count)++] = composeMessage(event);
                                        return true;
                                    });
                    return KT_OK;
                });
}
