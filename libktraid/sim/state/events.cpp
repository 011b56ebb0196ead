#include "state/events.h"

#include "state/simClock.h"

#include <algorithm>

namespace sim {

// A mute lasts until the next grave event, which sounds the buzzer again.
static void soundAlarm(const Context& context, AdapterState state) {
    if (!state.muted) return;
    state.muted = 0;
    save(context, 0, state);
}

// An adapter without power notices nothing, one without firmware only what its boot loader does.
static bool isNoticed(const AdapterState& state, const _Event& event) {
    return state.down == ADAPTER_UP || (state.down == ADAPTER_DEAD && event.Class == EVT_FLASH);
}

void logEvent(const Context& context, _Event event) {
    const AdapterState state = find<AdapterState>(context, 0).value_or(AdapterState{});
    if (!isNoticed(state, event)) return;
    const auto last = lastRow(context.store, context.adapter, KIND_EVENT);
    const KT_U64 sequence = last ? *last + 1 : 1;
    event.TimeStamp = static_cast<KT_U32>(shownTime(context) / 1000);
    event.AdapterID = context.adapter;
    event.SequenceNo = static_cast<KT_U32>(sequence);
    save(context, sequence, event);
    if (event.Severity >= SEV_MAJOR) soundAlarm(context, state);
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
