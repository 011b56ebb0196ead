#include "Public/newFile.h"
#include "commands.h"
#include "frame/invariants.h"
#include "frame/settle.h"
#include "lab/lab.h"
#include "state/due.h"
#include "state/simClock.h"
#include "state/storeFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <unistd.h>

using namespace sim;

std::string statePathOf(const Options& options) {
    return options.state.empty() ? statePath() : options.state;
}

Store* openState(const Options& options) {
    return openStore(statePathOf(options), fillFromLab, labNamed("default"));
}

void makeFile(const std::string& name, const std::string& bytes, mode_t mode) {
    NewFile file = {};
    const bool made = createNewFile(name.c_str(), file, mode) == Created::Yes;
    const bool written = made && writeNewFile(file, bytes.data(), bytes.size());
    if (written && keepNewFile(file)) return;
    const int reason = errno;
    if (made && !written) dropNewFile(file);
    throw CommandFailure{name + ": " + strerror(reason)};
}

void addAdapterOption(const Command& command, Options& options) {
    command.addOption("-a,--adapter", options.adapter, "The adapter's index").showDefault();
}

void addForceOption(const Command& command, Options& options) {
    command.addFlag("-f,--force", options.force, "Do it without asking");
}

bool confirm(const Options& options, const std::string& question) {
    if (options.force) return true;
    printf("%s [y/N] ", question.c_str());
    fflush(stdout);
    char answer[64] = "";
    const bool answered = fgets(answer, sizeof answer, stdin) != nullptr;
    if (!answered || !isatty(STDIN_FILENO)) printf("\n");
    return answered && (answer[0] == 'y' || answer[0] == 'Y');
}

unsigned adapterCount(Store& store) {
    return find<GlobalState>(store, ADAPTER_GLOBAL, 0).value_or(GlobalState{}).adapterCount;
}

void settleAll(Store& store) {
    const KT_U64 now = simulatedNow(store);
    for (unsigned i = 0; i < adapterCount(store); ++i) {
        Context context{store, static_cast<KT_U8>(i), now};
        if (settleDue(context)) settle(context);
    }
}

void changeState(const Options& options, const std::function<void(Store&)>& work) {
    Store* store = openState(options);
    try {
        beginTransaction(*store, Access::Write);
        settleAll(*store);
        work(*store);
        commitTransaction(*store);
    } catch (...) {
        closeStore(store); // which undoes what was not committed
        throw;
    }
    closeStore(store);
}

void changeAdapter(const Options& options, const std::function<void(Context&)>& work) {
    changeState(options, [&](Store& store) {
        const unsigned adapters = adapterCount(store);
        if (options.adapter >= adapters) {
            throw CommandFailure{"there is no adapter " + std::to_string(options.adapter) + ", only " +
                                 std::to_string(adapters) + " of them"};
        }
        Context context{store, static_cast<KT_U8>(options.adapter), simulatedNow(store)};
        work(context);
        checkAfterCall("ktsim", context);
    });
}

std::string printable(const void* text, size_t size) {
    std::string shown;
    const auto* bytes = static_cast<const unsigned char*>(text);
    for (size_t i = 0; i < size && bytes[i] != 0; ++i)
        shown += bytes[i] >= 0x20 && bytes[i] < 0x7F ? static_cast<char>(bytes[i]) : '?';
    while (!shown.empty() && shown.back() == ' ')
        shown.pop_back();
    return shown;
}

static KT_U64 unitSeconds(char unit) {
    switch (unit) {
    case 's':
        return 1;
    case 'm':
        return 60;
    case 'h':
        return 3600;
    case 'd':
        return 86400;
    case 'w':
        return 604800;
    default:
        return 0;
    }
}

bool parseDuration(const std::string& text, KT_U64& seconds) {
    static const KT_U64 LONGEST = 100ULL * 366 * 86400;
    seconds = 0;
    size_t at = 0;
    while (at < text.size()) {
        KT_U64 number = 0;
        const size_t digits = at;
        for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
            number = number * 10 + static_cast<KT_U64>(text[at] - '0');
            if (number > LONGEST) return false;
        }
        const KT_U64 unit = at < text.size() ? unitSeconds(text[at]) : 0;
        if (at == digits || unit == 0) return false;
        ++at;
        seconds += number * unit;
        if (seconds > LONGEST) return false;
    }
    return !text.empty();
}

KT_U64 readTime(const std::string& text) {
    tm parts = {};
    const char* end = strptime(text.c_str(), "%Y-%m-%d %H:%M:%S", &parts);
    const tm asked = parts;
    const time_t seconds = timegm(&parts);
    // timegm() makes the second of March of the thirtieth of February.
    const bool exists = asked.tm_mday == parts.tm_mday && asked.tm_sec == parts.tm_sec;
    if (!end || *end || !exists) throw CommandFailure{"\"" + text + "\" is not a time such as \"2026-01-05 08:00:00\""};
    if (seconds <= 0 || static_cast<KT_U64>(seconds) * 1000 > LAST_MOMENT) {
        throw CommandFailure{"the adapters' clock begins at " + momentText(1000) + " and ends at " +
                             momentText(LAST_MOMENT)};
    }
    return static_cast<KT_U64>(seconds) * 1000;
}

std::string momentText(KT_U64 milliseconds) {
    const auto seconds = static_cast<time_t>(milliseconds / 1000);
    tm parts = {};
    gmtime_r(&seconds, &parts);
    char text[64];
    strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S UTC", &parts);
    return text;
}

WordCheck between(double least, double most) {
    char range[64];
    snprintf(range, sizeof range, "%.10g to %.10g", least, most);
    const std::string name = range;
    const auto wrong = [least, most, name](const std::string& text) {
        char* end = nullptr;
        const double number = strtod(text.c_str(), &end);
        const bool inside = !text.empty() && *end == '\0' && number >= least && number <= most;
        return inside ? std::string() : text + " is not a number from " + name;
    };
    return checkedBy(wrong, name);
}

KT_U64 wholeSeconds(KT_U64 milliseconds) {
    return (milliseconds + 999) / 1000;
}

std::string durationText(KT_U64 seconds) {
    const struct {
        KT_U64 seconds;
        const char* word;
    } units[] = {{86400, " d"}, {3600, " h"}, {60, " min"}, {1, " s"}};
    std::string text;
    int shown = 0;
    for (const auto& unit : units) {
        const KT_U64 amount = seconds / unit.seconds;
        if ((amount == 0 && !(shown == 0 && unit.seconds == 1)) || shown == 2) continue;
        text += (shown ? " " : "") + std::to_string(amount) + unit.word;
        seconds %= unit.seconds;
        ++shown;
    }
    return text;
}
