#include "frame/settle.h"

#include "activities/completion.h"
#include "devices/battery.h"

#include <algorithm>
#include <cstdio>

namespace sim {

static AdapterState stateOf(const Context& context) {
    return find<AdapterState>(context, 0).value_or(AdapterState{});
}

// A rule that asks for the very next millisecond more often than this, each time anew, never gets past its moment.
static const int TOO_MANY = 1000;
// More steps than the busiest adapter has in all the years that the clock can show.
static const int MOST_STEPS = 50000;

// The rules of one kind, activities or battery: they wait for their moment, deal with it and name the next one.
namespace {
struct Rules {
    KT_U64 (*settle)(Context& context);
    KT_U64 AdapterState::*due;
    int inARow;
};
} // namespace

static void tellEndless(const Context& context) {
    fprintf(stderr, "ktraid-sim: adapter %d: more happens than can be caught up with; is the state damaged?\n",
            context.adapter);
}

// Lets happen what is due at context.now; `end` is when there is nothing more to be caught up with.
static void step(Context& context, Rules& rules, KT_U64 end) {
    const KT_U64 later = context.now + 1;
    KT_U64 next = rules.settle(context);
    rules.inARow = next <= later ? rules.inARow + 1 : 0;
    // It would otherwise be asked about every millisecond of a long absence.
    const bool stuck = rules.inARow > TOO_MANY;
    if (stuck) tellEndless(context);
    next = std::max(next, stuck ? end + 1 : later);
    AdapterState after = stateOf(context);
    // While settling, a rule may have scheduled a moment of its own. It counts, unless it is already past.
    KT_U64& mine = after.*rules.due;
    mine = mine >= later && !stuck ? std::min(mine, next) : next;
    save(context, 0, after);
}

void settle(Context& context) {
    const KT_U64 now = context.now;
    Rules activities = {settleActivities, &AdapterState::dueRaid, 0};
    Rules battery = {[](Context& at) { return settleBattery(at); }, &AdapterState::duePeripherals, 0};
    for (int steps = 0;; ++steps) {
        AdapterState state = stateOf(context);
        const KT_U64 due = std::min(state.dueRaid, state.duePeripherals);
        if (due > now) break;
        if (steps == MOST_STEPS) {
            // Whatever keeps it busy is no adapter's doing. What is not done is left for the next call.
            tellEndless(context);
            state.dueRaid = std::max(state.dueRaid, now + 1);
            state.duePeripherals = std::max(state.duePeripherals, now + 1);
            save(context, 0, state);
            break;
        }
        // 0 = nobody knows yet: look at this moment.
        context.now = due == 0 ? now : due;
        step(context, state.dueRaid <= context.now ? activities : battery, now);
    }
    context.now = now;
}

} // namespace sim
