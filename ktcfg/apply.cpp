// ktcfg apply: carries a plan out, command by command, through the handlers of ktsetup.
#include <chrono>
#include <sstream>
#include <thread>
#include <unistd.h>

#include "Public/confirm.h"
#include "Public/hold.h"
#include "Public/saidBy.h"
#include "Public/start.h"
#include "Report/look.h"
#include "Report/wait.h"
#include "ktcfg/planWords.h"
#include "ktcfg/planning.h"
#include "ktsetup/commandTables.h"

using Clock = std::chrono::steady_clock;

namespace {
// A plan that is being carried out.
struct Run {
    const PlanRequest& request;
    const Wanted& wanted;
    const std::vector<PlannedStep>& steps; // as they were shown
    Json report;                           // the adapters, as they were read last
    size_t done = 0;
    bool begun = false;       // a command was carried out, well or not
    std::string stopped = {}; // why it goes no further
};

enum class Next { Ready, Busy, Stop };
} // namespace

// Reads one adapter anew into the report.
static void readAgain(Json& report, KT_U64 adapter) {
    Json fresh = readNow(static_cast<int>(adapter), false);
    for (Json& one : report["adapters"]) {
        if (numberIn(one, "id") == adapter) one = std::move(fresh["adapters"].front());
    }
    Json unread = Json::array();
    for (const Json& refusal : listIn(report, "unread")) {
        if (numberIn(refusal, "adapter") != adapter) unread.push_back(refusal);
    }
    for (const Json& refusal : listIn(fresh, "unread")) {
        unread.push_back(refusal);
    }
    report["unread"] = std::move(unread);
}

static bool startsWith(const std::vector<PlannedStep>& left, const PlannedStep& step) {
    return !left.empty() && left.front().key == step.key;
}

static std::string whyDifferent(const Run& run, const Plan& now) {
    std::string text = "the adapter is no longer as the plan thinks";
    if (run.done > 0 && startsWith(now.steps, run.steps[run.done - 1])) {
        return "the adapter did not do what the last command asked for";
    }
    if (!canBeReached(now)) {
        const std::string why = obstaclesText(now, run.request.file);
        return text + ":\n" + why.substr(0, why.find_last_not_of('\n') + 1);
    }
    return text;
}

// Looks at the adapters of the last step and of the next one: whether all is as the plan thinks, so that the plan made
// anew is what is left of it. The step's words are those of the plan made anew, whose ids are the adapter's own.
static Next lookAt(Run& run, PlannedStep& step) {
    readAgain(run.report, step.adapter);
    if (run.done > 0 && run.steps[run.done - 1].adapter != step.adapter) {
        readAgain(run.report, run.steps[run.done - 1].adapter);
    }
    const Plan now = makePlan(run.report, run.wanted, run.request.options);
    const size_t left = run.steps.size() - run.done;
    bool same = canBeReached(now) && now.steps.size() == left;
    for (size_t i = 0; same && i < left; ++i) {
        same = now.steps[i].key == run.steps[run.done + i].key;
    }
    if (!same) {
        run.stopped = whyDifferent(run, now);
        return Next::Stop;
    }
    step = now.steps.front();
    return step.waits ? Next::Busy : Next::Ready;
}

namespace {
// Shows how far activities are: in place on a terminal, else a line now and then.
struct Display {
    bool terminal = stream != nullptr && isatty(fileno(stream)) != 0;
    size_t lines = 0;
    Clock::time_point last = {};
};
} // namespace

static void showProgress(Display& display, const Awaiting& activities) {
    static constexpr std::chrono::seconds now_and_then(60);
    if (!display.terminal && display.last != Clock::time_point() && Clock::now() - display.last < now_and_then) return;
    display.last = Clock::now();
    std::ostringstream text;
    // The cursor goes back to where they begin; past out(), which lets no control bytes through.
    if (display.terminal && display.lines > 0 && stream != nullptr) fprintf(stream, "\033[%zuA\033[J", display.lines);
    display.lines = writeProgress(text, display.terminal ? lookOfOutput() : Look(), activities);
    out("%s", text.str().c_str());
    flushOutput();
}

// False when a signal came meanwhile.
static bool rest(std::chrono::milliseconds span) {
    for (const Clock::time_point end = Clock::now() + span; Clock::now() < end;) {
        if (heldSignal() != 0) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return heldSignal() == 0;
}

// Waits as long as the step has to. False when it cannot be carried out.
static bool waitFor(Run& run, PlannedStep& step) {
    Display display;
    Awaiting activities;
    Awaited everything;
    for (;;) {
        const Next next = lookAt(run, step);
        if (next != Next::Busy) return next == Next::Ready;
        if (!run.request.wait) {
            run.stopped = "the next command needs what goes on to have ended; --wait waits for it";
            return false;
        }
        lookAgain(activities, run.report, everything);
        for (const auto& [key, activity] : activities) {
            if (activity.going.state != "paused") continue;
            run.stopped = "the " + activity.going.kind + " of " + activity.going.name + " is paused; resume it first";
            return false;
        }
        if (stateOf(activities) != Waiting::GoesOn) {
            run.stopped = "what the next command waits for has come to a stop before its end";
            return false;
        }
        showProgress(display, activities);
        if (!rest(std::chrono::milliseconds(1000))) return false;
    }
}

// What starting the library says is news only when it does not start.
static bool startQuietly() {
    bool started = false;
    const std::string said = saidBy([&] { started = startLibrary(); });
    if (!started) out("%s", said.c_str());
    return started;
}

// The command as ktsetup would carry it out by itself; its result.
static int carryOut(const PlannedStep& step) {
    std::vector<std::string> words = step.words;
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    gCurrentAdapter = static_cast<KT_U8>(step.adapter);
    if (!startQuietly()) return KT_ERR_FAILED;
    const int result = cmdDispatcher(static_cast<int>(words.size()), argv.data());
    KT_API_Finalize();
    return result;
}

static void runSteps(Run& run) {
    // Behind the first signal no command is begun, and none is cut short.
    const Hold hold("a command of the plan may be half done");
    while (run.done < run.steps.size() && heldSignal() == 0) {
        PlannedStep step = run.steps[run.done];
        if (!waitFor(run, step)) break;
        out("%zu of %zu: %s\n", run.done + 1, run.steps.size(), commandText(step).c_str());
        flushOutput();
        run.begun = true;
        const int result = carryOut(step);
        flushOutput();
        if (result != 0) {
            run.stopped = "the command failed (status " + std::to_string(result) + ")";
            break;
        }
        ++run.done;
    }
    if (heldSignal() != 0 && run.stopped.empty()) run.stopped = "a signal came";
}

static bool goesOn(const Json& report) {
    for (const Json& adapter : listIn(report, "adapters")) {
        for (const Going& going : activitiesOf(adapter)) {
            const bool ended = going.state == "aborted" || going.state == "interrupted";
            if (going.of != ActivityOf::Disk && !ended) return true;
        }
    }
    return false;
}

static int tellIdle(const Json& report) {
    if (!goesOn(report)) return RESULT_AS_WANTED;
    out("Something still goes on; \"ktreport wait\" waits for its end.\n");
    return RESULT_NOT_IDLE;
}

static int stop(const Run& run) {
    const bool isList = run.stopped.ends_with('\n'); // of differences, a line each
    out("\nStopped: %s%s", run.stopped.c_str(), isList ? "" : ".\n");
    if (run.done > 0) out("Done:\n%s", stepsText(run.steps, 0, run.done).c_str());
    if (run.done < run.steps.size()) {
        out("Not done:\n%s", stepsText(run.steps, run.done, run.steps.size()).c_str());
    }
    out("%s\"ktcfg apply\" with the same file goes on from here.\n", run.begun ? "" : "Nothing was changed. ");
    return RESULT_NOT_WANTED;
}

// Looks at everything once more.
static int finish(Run& run) {
    if (!run.stopped.empty()) return stop(run);
    run.report = readNow(-1, false);
    const Plan left = makePlan(run.report, run.wanted, run.request.options);
    if (!canBeReached(left) || !left.steps.empty()) {
        run.stopped = "all commands were carried out, but the adapters are not as wanted; different is:\n" +
                      differencesText(left);
        return stop(run);
    }
    out("As wanted. %zu %s carried out.\n", run.done, run.done == 1 ? "command was" : "commands were");
    return tellIdle(run.report);
}

static bool agreed(const PlanRequest& request, const Plan& plan) {
    if (request.yes) return true;
    bool deletes = false;
    for (const PlannedStep& step : plan.steps)
        deletes = deletes || step.deletes;
    out("%sCarry this out? (y or n)\n", deletes ? "What the plan deletes is lost. " : "");
    if (confirmYesOrNo()) return true;
    out("Nothing is changed.\n");
    return false;
}

static int apply(const PlanRequest& request) {
    const std::optional<Planning> planning = planFor(request);
    if (!planning) return RESULT_NOT_WANTED;
    if (planning->plan.steps.empty()) {
        out("Nothing to do: all is as wanted.\n%s", leftAloneText(planning->plan).c_str());
        return tellIdle(planning->report);
    }
    const std::optional<Rehearsal> rehearsal = rehearsed(request, *planning);
    if (!rehearsal) return RESULT_NOT_WANTED;
    out("%s", planText(planning->plan, *rehearsal).c_str());
    if (!agreed(request, planning->plan)) return RESULT_NOT_WANTED;
    Run run = {request, planning->wanted, planning->plan.steps, planning->report};
    try {
        setCommandSets(ldBasedCommands, arrayBasedCommands);
        runSteps(run);
        return finish(run);
    } catch (const ReadFailure& failure) {
        run.stopped = failure.message;
    } catch (const IncompleteReport& failure) {
        run.stopped = failure.message;
    }
    return stop(run);
}

int doApply(int argc, char** argv, _cmd_struct* row) {
    PlanRequest request;
    int result = 0;
    if (!readRequest({argc, argv, row}, applyOptions, request, result)) return result;
    return guarded(apply, request);
}
