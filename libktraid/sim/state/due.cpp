#include "state/due.h"

#include <algorithm>

namespace sim {

static AdapterState stateOf(const Context& context) {
    return find<AdapterState>(context, 0).value_or(AdapterState{});
}

bool settleDue(const Context& context) {
    const AdapterState state = stateOf(context);
    return std::min(state.dueRaid, state.duePeripherals) <= context.now;
}

void scheduleRaid(const Context& context, KT_U64 due) {
    AdapterState state = stateOf(context);
    if (due >= state.dueRaid) return;
    state.dueRaid = due;
    save(context, 0, state);
}

void schedulePeripherals(const Context& context, KT_U64 due) {
    AdapterState state = stateOf(context);
    if (due >= state.duePeripherals) return;
    state.duePeripherals = due;
    save(context, 0, state);
}

} // namespace sim
