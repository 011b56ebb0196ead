// ktreport wait: until what goes on has ended.
#include <chrono>
#include <iostream>
#include <thread>

#include "Report/wait.h"
#include "ktreport/commands.h"

enum { RESULT_FAILED = 1, RESULT_TIMED_OUT = 4 };

using Clock = std::chrono::steady_clock;

namespace {
struct WaitWords {
    std::optional<unsigned> vd;
    std::optional<unsigned> array;
    std::optional<unsigned> pd;
    bool all = false;
    std::string timeout;
};
} // namespace

// "90", "90s", "30m", "2h", "1d" in seconds.
static std::optional<std::chrono::seconds> durationOf(const std::string& text) {
    if (text.empty()) return std::nullopt;
    static const std::pair<char, unsigned> units[] = {{'s', 1}, {'m', 60}, {'h', 3600}, {'d', 86400}};
    unsigned factor = 1;
    std::string digits = text;
    for (const auto& [letter, seconds] : units) {
        if (text.back() != letter) continue;
        factor = seconds;
        digits.pop_back();
    }
    if (digits.empty() || digits.size() > 6 || digits.find_first_not_of("0123456789") != std::string::npos) {
        throw UsageFailure{"--timeout: " + text + " is no time; 90, 90s, 30m, 2h and 1d are"};
    }
    return std::chrono::seconds(std::stoul(digits) * factor);
}

static Awaited awaitedIn(const Invocation& invocation, const WaitWords& words) {
    Awaited awaited;
    awaited.adapter = static_cast<KT_U64>(std::max(invocation.adapter, 0));
    const auto take = [&](const std::optional<unsigned>& id, ActivityOf of) {
        if (!id) return;
        awaited.of = of;
        awaited.id = *id;
    };
    take(words.vd, ActivityOf::VirtualDisk);
    take(words.array, ActivityOf::Array);
    take(words.pd, ActivityOf::Disk);
    return awaited;
}

static Json readNow(const Invocation& invocation) {
    ReadOptions options;
    options.attributes = false;
    return std::move(reportsFor(invocation, options).front().document);
}

// What cannot be read now may be the very thing that is awaited.
static void checkRead(const Json& document) {
    static const char* const needed[] = {"KT_LD_GetInfo",   "KT_LD_GetStatus",    "KT_DG_GetInfo",
                                         "KT_PD_GetHDInfo", "KT_PD_GetBGAStatus", "KT_Adapter_GetInfo"};
    for (const Json& refusal : listIn(document, "unread")) {
        const std::string call = textIn(refusal, "call");
        if (std::find(std::begin(needed), std::end(needed), call) == std::end(needed)) continue;
        throw ReadFailure{shown(call) + ": " + shown(textIn(refusal, "text"))};
    }
}

namespace {
// Shows how far it is: in place on a terminal, else whenever much has changed.
struct Display {
    Look look = lookOfOutput();
    size_t lines = 0;
    std::string last = {};
    Clock::time_point when = {};
};
} // namespace

static void showActivities(Display& display, const Awaiting& activities, bool ended) {
    static constexpr std::chrono::seconds now_and_then(60);
    if (display.look.colours) {
        if (display.lines > 0) std::cout << "\033[" << display.lines << "A\033[J";
        display.lines = writeProgress(std::cout, display.look, activities);
    } else if (ended || display.when == Clock::time_point() || Clock::now() - display.when >= now_and_then) {
        writeProgress(std::cout, Look(), activities);
        display.when = Clock::now();
    }
    std::cout.flush();
}

static int waitFor(const Invocation& invocation, const WaitWords& words) {
    const Awaited awaited = awaitedIn(invocation, words);
    const auto timeout = durationOf(words.timeout);
    const Clock::time_point begin = Clock::now();
    Awaiting activities;
    Display display;
    for (bool first = true;; first = false) {
        const Json document = readNow(invocation);
        checkRead(document);
        if (first && !isThere(document, awaited)) throw UsageFailure{"there is nothing of that id to wait for"};
        lookAgain(activities, document, awaited);
        if (activities.empty()) {
            std::cout << "Nothing is going on.\n";
            return RESULT_OK;
        }
        const Waiting state = stateOf(activities);
        showActivities(display, activities, state != Waiting::GoesOn);
        if (state == Waiting::Done) return RESULT_OK;
        if (state == Waiting::Failed) return RESULT_FAILED;
        if (timeout && Clock::now() - begin >= *timeout) return RESULT_TIMED_OUT;
        const auto pause = display.look.colours ? std::chrono::milliseconds(1000) : std::chrono::milliseconds(2000);
        const auto left =
            timeout ? std::chrono::duration_cast<std::chrono::milliseconds>(begin + *timeout - Clock::now()) : pause;
        std::this_thread::sleep_for(std::min(left, pause));
    }
}

void addWait(const Command& app, Invocation& invocation) {
    const Command wait = app.addCommand("wait", "Wait until activities have ended");
    auto words = std::make_shared<WaitWords>();
    addAdapter(wait, invocation);
    const Command what = wait.addChoice("what");
    what.addOption("--vd", words->vd, "What goes on with this virtual disk (of adapter 0 without -a)");
    what.addOption("--array", words->array, "What goes on with this array");
    what.addOption("--pd", words->pd, "What goes on with this disk");
    what.addFlag("--all", words->all, "Everything (the default)");
    wait.addOption("--timeout", words->timeout, "Wait no longer than this: 90, 90s, 30m, 2h, 1d");
    wait.onGiven([&invocation, words] { invocation.result = waitFor(invocation, *words); });
}
