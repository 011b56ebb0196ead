#include "call.h"

using namespace sim;

KT_U8 KT_EVT_GetEvent(KT_U8 a, KT_U8 maxCount, KT_U8* count, _Event* events) {
    return notSupported("KT_EVT_GetEvent", a,
                        {num("maxCount", maxCount), out("count", count), outArray("events", events, count)});
}

KT_U8 KT_EVT_GetEventMessage(KT_U8 a, KT_U8 maxCount, KT_U8* count, _Event_Message* messages) {
    return notSupported("KT_EVT_GetEventMessage", a,
                        {num("maxCount", maxCount), out("count", count), outArray("messages", messages, count)});
}
