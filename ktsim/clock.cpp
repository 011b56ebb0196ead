#include "commands.h"
#include "frame/settle.h"
#include "media/selfTest.h"
#include "state/due.h"
#include "state/simClock.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>

using namespace sim;

std::string clockText(Store& store);

static KT_U64 shownNow(Store& store) {
    return shownAt(loadClock(store), simulatedNow(store));
}

std::string clockText(Store& store) {
    const Clock clock = loadClock(store);
    std::string text = momentText(shownNow(store));
    if (clock.stopped) return text + ", stopped";
    if (clock.speed == 1000) return text + ", running in real time";
    char speed[32];
    snprintf(speed, sizeof speed, "%.10g", clock.speed / 1000.0);
    return text + ", running " + speed + " times as fast as real time";
}

static bool running(const Activity& activity) {
    return activity.kind != 0 && activity.state == KT_STATE_RUNNING;
}

static bool busy(const Context& context) {
    bool any = false;
    forEach<VdState>(context, 0, [&](KT_U64, const VdState& vd) { return !(any = running(vd.activity)); });
    if (!any) forEach<DgState>(context, 0, [&](KT_U64, const DgState& dg) { return !(any = running(dg.activity)); });
    if (!any) forEach<PdState>(context, 0, [&](KT_U64, const PdState& pd) { return !(any = running(pd.patrol)); });
    return any;
}

// When the first of the drives that test themselves is done.
static KT_U64 firstTestEnd(const Context& context) {
    KT_U64 first = NEVER;
    forEach<SolidState>(context, 0, [&](KT_U64 pd, const SolidState&) {
        first = std::min(first, testEnd(context, static_cast<KT_U16>(pd)));
        return true;
    });
    return first;
}

// The next moment at which something happens on an adapter that is at work; NEVER when none is.
static KT_U64 nextDue(Store& store, KT_U64 now) {
    KT_U64 due = NEVER;
    for (unsigned i = 0; i < adapterCount(store); ++i) {
        const Context context{store, static_cast<KT_U8>(i), now};
        if (isDown(context)) continue;
        due = std::min(due, firstTestEnd(context));
        if (busy(context)) due = std::min(due, find<AdapterState>(context, 0).value_or(AdapterState{}).dueRaid);
    }
    return due;
}

// Lets that much time pass, and what is due in it happen.
static void pass(Store& store, KT_U64 milliseconds) {
    const Clock clock = loadClock(store);
    if (milliseconds > LAST_MOMENT - shownNow(store))
        throw CommandFailure{"the adapters' clock ends at " + momentText(LAST_MOMENT)};
    setClock(store, simulatedNow(store) + milliseconds, clock.speed, clock.stopped != 0);
    settleAll(store);
}

KT_U64 passUntilIdle(Store& store, const std::function<void()>& look) {
    static const int MANY = 100000; // steps; activities that start one another for ever must not keep us
    const KT_U64 start = simulatedNow(store);
    for (int step = 0; step < MANY; ++step) {
        const KT_U64 now = simulatedNow(store);
        const KT_U64 due = nextDue(store, now);
        if (due == NEVER) return now - start;
        pass(store, std::max(due, now) - now);
        look();
    }
    throw CommandFailure{"the adapters do not come to rest"};
}

static void advanceUntilIdle(Store& store) {
    printf("Idle after %s.\n", durationText(wholeSeconds(passUntilIdle(store, [] {}))).c_str());
}

void passTime(Store& store, const std::string& text) {
    KT_U64 seconds = 0;
    if (!parseDuration(text, seconds))
        throw CommandFailure{"\"" + text + "\" is not a duration such as 90m, 2h30m or 3d"};
    pass(store, seconds * 1000);
}

static void setSpeed(Store& store, double speed) {
    setClock(store, simulatedNow(store), static_cast<KT_U32>(std::lround(speed * 1000)), false);
}

static Command addClockChange(const Command& clock, Options& options, const char* word, const char* help,
                              const std::function<void(Store&)>& work) {
    const Command command = clock.addCommand(word, help);
    command.onGiven([&options, work] { changeState(options, work); });
    return command;
}

void addClock(const Command& app, Options& options) {
    const Command clock = app.addCommand("clock", "The adapters' clock");
    clock.requireCommand(1, 1);
    const auto text = std::make_shared<std::string>();
    const auto speed = std::make_shared<double>(1);
    addClockChange(clock, options, "show", "Print the time and how it runs",
                   [](Store& store) { printf("%s\n", clockText(store).c_str()); });
    addClockChange(clock, options, "stop", "Stop the clock; advance still moves it",
                   [](Store& store) { setClock(store, simulatedNow(store), loadClock(store).speed, true); });
    addClockChange(clock, options, "start", "Let the clock run on at the speed it had",
                   [](Store& store) { setClock(store, simulatedNow(store), loadClock(store).speed, false); });
    const Command faster = addClockChange(clock, options, "speed", "Let the clock run, X times as fast as real time",
                                          [speed](Store& store) { setSpeed(store, *speed); });
    faster.addOption("X", *speed, "1 is real time").required().check(between(0.001, 1000000));
    const Command jump = addClockChange(clock, options, "advance", "Let time pass at once; what is due in it happens",
                                        [text](Store& store) { passTime(store, *text); });
    jump.addOption("DURATION", *text, "For instance 45s, 90m, 2h30m, 3d").required();
    const Command set = addClockChange(clock, options, "set", "Set the time that is shown (nothing happens in between)",
                                       [text](Store& store) { setShownTime(store, readTime(*text)); });
    set.addOption("TIME", *text, "In UTC: \"2026-01-05 08:00:00\"").required();
    const Command until = addClockChange(clock, options, "until", "Let time pass until every activity has ended",
                                         [](Store& store) { advanceUntilIdle(store); });
    until.addOption("idle", *text, "The word idle").required().check(oneOf({"idle"}));
}
