#include "state/events.h"

#include "state/simClock.h"

namespace sim {

// Muting silences what has happened so far; what happens next is heard again.
static void soundAlarm(const Context& context) {
    auto state = find<AdapterState>(context, 0);
    if (!state || !state->muted) return;
    state->muted = 0;
    save(context, 0, *state);
}

void logEvent(const Context& context, _Event event) {
    const auto last = lastRow(context.store, context.adapter, KIND_EVENT);
    const KT_U64 sequence = last ? *last + 1 : 1;
    event.TimeStamp = static_cast<KT_U32>(shownTime(context) / 1000);
    event.AdapterID = context.adapter;
    event.SequenceNo = static_cast<KT_U32>(sequence);
    save(context, sequence, event);
    if (event.Severity >= SEV_MAJOR) soundAlarm(context);
    if (sequence > EVENTS_KEPT) erase<_Event>(context, sequence - EVENTS_KEPT);
}

void logEvent(const Context& context, KT_U16 eventClass, KT_U16 code, KT_U16 device, KT_U8 severity, KT_U32 p0,
              KT_U32 p1, KT_U32 p2, KT_U32 p3) {
    _Event event = {};
    event.Class = eventClass;
    event.Code = code;
    event.DeviceID = device;
    event.Severity = severity;
    event.Params[0] = p0;
    event.Params[1] = p1;
    event.Params[2] = p2;
    event.Params[3] = p3;
    logEvent(context, event);
}

} // namespace sim
