#include "frame/settle.h"

#include "activities/completion.h"
#include "devices/battery.h"

#include <algorithm>

namespace sim {

static AdapterState stateOf(const Context& context) {
    return find<AdapterState>(context, 0).value_or(AdapterState{});
}

// More moments in a row than any rule has reason to want a look again at the very next one.
static const int TOO_MANY = 1000;

void settle(Context& context) {
    const KT_U64 now = context.now;
    int inARow = 0;
    for (;;) {
        const AdapterState before = stateOf(context);
        const KT_U64 due = std::min(before.dueRaid, before.duePeripherals);
        if (due > now) break;
        // 0 = nobody knows yet: look at this moment.
        context.now = due == 0 ? now : due;
        const KT_U64 later = context.now + 1;
        const bool raid = before.dueRaid <= context.now;
        KT_U64 next = raid ? settleActivities(context) : settleBattery(context);
        inARow = next <= later ? inARow + 1 : 0;
        // A rule that never gets past its moment would be asked about every millisecond of a long absence.
        const bool stuck = inARow > TOO_MANY;
        next = std::max(next, stuck ? now + 1 : later);
        AdapterState after = stateOf(context);
        // What the rules scheduled meanwhile counts too, unless it is the moment just dealt with.
        KT_U64& mine = raid ? after.dueRaid : after.duePeripherals;
        mine = mine >= later && !stuck ? std::min(mine, next) : next;
        save(context, 0, after);
    }
    context.now = now;
}

} // namespace sim
