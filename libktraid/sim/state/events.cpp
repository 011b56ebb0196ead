#include "state/events.h"

#include "state/simClock.h"

#include <algorithm>

namespace sim {

// A mute lasts until the next grave event, which sounds the buzzer again.
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

static void logWithParams(const Context& context, _Event event, const EventParams& params) {
    std::copy(params.begin(), params.end(), event.Params);
    logEvent(context, event);
}

void logEvent(const Context& context, EventName name, KT_U16 device, const EventParams& params) {
    logWithParams(context, newEvent(name, device), params);
}

void logEvent(const Context& context, EventName name, KT_U16 device, EventSeverity severity,
              const EventParams& params) {
    _Event event = newEvent(name, device);
    event.Severity = severity;
    logWithParams(context, event, params);
}

} // namespace sim
