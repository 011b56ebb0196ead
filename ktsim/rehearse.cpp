#include "rehearse.h"

#include "Public/common.h"
#include "child.h"
#include "commands.h"
#include "scratch.h"
#include "twin.h"

#include <cstdio>
#include <iostream>
#include <memory>
#include <sstream>
#include <sys/stat.h>

using namespace sim;

enum { RESULT_USAGE = 2, BY_SIGNAL = 128 };

struct RehearseOptions {
    std::vector<std::string> from;
    std::string until;
    std::string keep;
    std::string script;
    std::string at;
    bool json = false;
    std::vector<std::string> words;
};

using Words = std::vector<std::string>;

static bool isProgram(const std::string& word) {
    return word == "ktsetup" || word == "ktcfg";
}

// The words of one line, as the shell of ktsetup splits it.
static Words wordsOf(std::string line, const std::string& place) {
    line.erase(0, std::min(line.find_first_not_of(" \t"), line.size()));
    std::vector<char*> found(line.size() + 2);
    int count = 0;
    if (!parse(&count, found.data(), line.data()))
        throw CommandFailure{place + ": a quoted text has no end", RESULT_USAGE};
    Words words(found.begin(), found.begin() + count);
    if (!words.empty() && words[0][0] == '#') words.clear();
    return words;
}

static std::vector<Words> readScript(const std::string& name) {
    std::istringstream text(labText(name));
    std::vector<Words> commands;
    std::string line;
    for (int number = 1; std::getline(text, line); ++number) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const std::string place = (name == "-" ? "standard input" : name) + ", line " + std::to_string(number);
        if (line.find('\0') != std::string::npos) throw CommandFailure{place + ": is no text", RESULT_USAGE};
        const Words words = wordsOf(line, place);
        if (words.empty()) continue;
        if (!isProgram(words[0])) throw CommandFailure{place + ": should begin with ktsetup or ktcfg", RESULT_USAGE};
        commands.push_back(words);
    }
    if (commands.empty()) throw CommandFailure{name + ": there is no command in it", RESULT_USAGE};
    return commands;
}

static std::vector<Words> commandsOf(const RehearseOptions& wanted) {
    if (wanted.script.empty() == wanted.words.empty()) {
        throw CommandFailure{"a command after --, or --script FILE, is what is rehearsed (--help tells more)",
                             RESULT_USAGE};
    }
    if (!wanted.script.empty()) return readScript(wanted.script);
    if (!isProgram(wanted.words[0])) {
        throw CommandFailure{"\"" + wanted.words[0] + "\" cannot be rehearsed, only ktsetup and ktcfg can",
                             RESULT_USAGE};
    }
    if (wanted.words.size() == 1 && wanted.words[0] == "ktsetup" && wanted.json)
        throw CommandFailure{"a shell and --json do not go together", RESULT_USAGE};
    return {wanted.words};
}

static void endIfAsked() {
    if (keptSignal()) throw CommandFailure{"ended by a signal; nothing was changed", BY_SIGNAL + keptSignal()};
}

// The words of a script have the quotes that they were typed with.
static std::string lineOf(const Words& words) {
    std::string line;
    for (const std::string& word : words) {
        line += (line.empty() ? "" : " ") + (word.empty() ? "\"\"" : word);
    }
    return line;
}

static void runCommands(const std::vector<Words>& commands, const RehearseOptions& wanted, const std::string& state,
                        Rehearsed& rehearsed) {
    ChildOptions options;
    options.surroundings.state = state;
    options.streams = wanted.json ? Streams::Caught : Streams::Own;
    options.emptyInput = wanted.script == "-" || (wanted.from.size() == 1 && wanted.from[0] == "-");
    for (const Words& words : commands) {
        if (!wanted.json && !wanted.script.empty())
            printf("> %s\n", printable(lineOf(words).c_str(), SIZE_MAX).c_str());
        const ChildResult result = runChild(words, options);
        rehearsed.commands.push_back({words, result.status, result.output});
        endIfAsked();
        if (result.status != 0) return;
    }
}

// A copy of the state, with its clock as it is.
static void copyState(const std::string& from, const std::string& to) {
    Store* store = openExistingStore(from);
    std::string image;
    try {
        image = imageOf(*store);
    } catch (...) {
        closeStore(store);
        throw;
    }
    closeStore(store);
    makeFile(to, image, 0600);
}

// What `work` makes of the state in one transaction.
static void inState(const std::string& path, const std::function<void(Store&)>& work) {
    Options options;
    options.state = path;
    changeState(options, work);
}

static void letTimePass(const std::string& state, const std::string& until) {
    inState(state, [&](Store& store) {
        if (until == "idle") {
            passUntilIdle(store, [] {});
        } else {
            passTime(store, until);
        }
    });
}

static void checkWords(const RehearseOptions& wanted) {
    KT_U64 seconds = 0;
    if (!wanted.until.empty() && wanted.until != "idle" && !parseDuration(wanted.until, seconds))
        throw CommandFailure{"--until: should be idle, or a duration such as 90m, 2h30m or 3d", RESULT_USAGE};
    struct stat info = {};
    if (!wanted.keep.empty() && lstat(wanted.keep.c_str(), &info) == 0)
        throw CommandFailure{wanted.keep + ": is there already", RESULT_NO_TWIN};
    const bool twice =
        wanted.script == "-" && std::find(wanted.from.begin(), wanted.from.end(), "-") != wanted.from.end();
    if (twice) throw CommandFailure{"only one of --from and --script can come from standard input", RESULT_USAGE};
}

static int rehearse(const RehearseOptions& wanted) {
    checkWords(wanted);
    const std::vector<Words> commands = commandsOf(wanted);
    keepSignals();
    const Json report = reportFrom(wanted.from);
    endIfAsked();
    Scratch scratch;
    makeScratch(scratch);
    const std::string state = scratch.path("state.db");
    Rehearsed rehearsed;
    const std::string name = wanted.from.empty() ? "the adapters" : wanted.from[0];
    rehearsed.before = makeTwin(state, report, name, wanted.at.empty() ? 0 : readTime(wanted.at));
    inState(state, [&](Store& store) { rehearsed.risksBefore = risksNow(store); });
    endIfAsked();
    runCommands(commands, wanted, state, rehearsed);
    copyState(state, scratch.path("ahead.db"));
    inState(scratch.path("ahead.db"), [&](Store& store) { rehearsed.outlook = lookAhead(store); });
    if (!wanted.until.empty()) letTimePass(state, wanted.until);
    rehearsed.after = reportOf(state, report.value("records", false));
    endIfAsked();
    if (!wanted.keep.empty()) copyState(state, wanted.keep);
    std::ostringstream told;
    if (wanted.json) {
        told << foretoldAsJson(rehearsed).dump(1, ' ', true, Json::error_handler_t::replace) << '\n';
    } else {
        told << '\n';
        writeForetold(told, rehearsed);
    }
    fputs(told.str().c_str(), stdout);
    return rehearsed.commands.back().status;
}

void addRehearse(const Command& app) {
    const Command command = app.addCommand(
        "rehearse", "Try commands of ktsetup or ktcfg on a twin of the adapters: rehearse -- ktsetup WORDS ...");
    const auto wanted = std::make_shared<RehearseOptions>();
    command
        .addOption("--from", wanted->from, "A report instead of the adapters of this machine (ktreport json --records)")
        .oneEachTime();
    command.addOption("--until", wanted->until, "Let time pass behind the commands: idle, or a duration such as 2h30m");
    command.addOption("--keep", wanted->keep, "Keep the state of the twin in this new file");
    command.addOption("--at", wanted->at, "The time on the twin's stopped clock (default: when the report was made)");
    command.addOption("--script", wanted->script, "Commands, one a line; - for standard input");
    command.addFlag("--json", wanted->json, "Print all of it for programs");
    command.addOption("COMMAND", wanted->words, "The command and its words, after --");
    command.onGiven([wanted] {
        const int result = rehearse(*wanted);
        if (result != 0) throw CommandFailure{"", result};
    });
}
