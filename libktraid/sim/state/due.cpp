#include "state/due.h"

#include <algorithm>

namespace sim {

static AdapterState stateOf(const Context& context) {
    return find<AdapterState>(context, 0).value_or(AdapterState{});
}

bool isPoweredOff(Store& store) {
    return find<GlobalState>(store, ADAPTER_GLOBAL, 0).value_or(GlobalState{}).powerOff != 0;
}

bool isDown(const Context& context) {
    return stateOf(context).down != ADAPTER_UP;
}

bool wasLostDown(const Context& context, KT_U64 loss) {
    const AdapterState state = stateOf(context);
    return state.down != ADAPTER_UP && loss > state.lossesAtOff;
}

bool settleDue(const Context& context) {
    const AdapterState state = stateOf(context);
    return state.down == ADAPTER_UP && std::min(state.dueRaid, state.duePeripherals) <= context.now;
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
