#include "call.h"

using namespace sim;

KT_U8 KT_EVT_GetEvent(KT_U8 a, KT_U8 maxCount, KT_U8* count, _Event* events) {
    return call(
        "KT_EVT_GetEvent", a, Access::Read,
        {num("maxCount", maxCount), out("count", count), outArray("events", events, count)}, [&](Context& context) {
            const KT_U64 last = lastRow(context.store, a, KIND_EVENT).value_or(0);
            *count = 0;
            forEach<_Event>(context, last >= maxCount ? last - maxCount + 1 : 0, [&](KT_U64, const _Event& event) {
                if (*count < maxCount) events[(*count)++] = event;
                return true;
            });
            return KT_OK;
        });
}

KT_U8 KT_EVT_GetEventMessage(KT_U8 a, KT_U8 maxCount, KT_U8* count, _Event_Message* messages) {
    return notSupported("KT_EVT_GetEventMessage", a,
                        {num("maxCount", maxCount), out("count", count), outArray("messages", messages, count)});
}
