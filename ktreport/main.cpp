// Shows what adapters there are and how they are, for people and for programs. Reads only.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ext/stdio_sync_filebuf.h>
#include <iostream>

#include "Public/common.h"
#include "Public/lostOutput.h"
#include "Report/eventCursor.h"
#include "ktreport/commands.h"

int say(std::string what, int result) {
    for (char& byte : what) {
        if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F) byte = '?';
    }
    fprintf(stderr, "ktreport: %s\n", what.c_str());
    return result;
}

void addAdapter(CLI::App& command, Invocation& invocation) {
    command.add_option("-a,--adapter", invocation.adapter, "Only this adapter")->check(CLI::Range(0, 254));
}

void addFrom(CLI::App& command, Invocation& invocation) {
    command.add_option("--from", invocation.from, "Reports in files instead of the adapters; - is standard input");
}

void addThresholds(CLI::App& command, Invocation& invocation) {
    command.add_option("--thresholds", invocation.thresholds, "Numbers that decide, instead of /etc/ktreport.json");
}

std::vector<Report> reportsFor(const Invocation& invocation, ReadOptions options) {
    options.adapter = invocation.adapter;
    return gatherReports(invocation.from, options, loadThresholds(invocation.thresholds));
}

void sayLeftOut(Invocation& invocation, const std::vector<LeftOut>& leftOut) {
    for (const LeftOut& file : leftOut) {
        invocation.result = say(file.message + " (left out)", RESULT_LEFT_OUT);
    }
}

std::vector<Report> readableReportsFor(Invocation& invocation) {
    ReadOptions options;
    options.adapter = invocation.adapter;
    ReadableReports gathered = gatherReadable(invocation.from, options, loadThresholds(invocation.thresholds));
    sayLeftOut(invocation, gathered.leftOut);
    return std::move(gathered.reports);
}

// Monitoring systems take 2 for "critical": there, words that are not understood are "unknown".
static int usageResult(int argc, char** argv) {
    const bool check = std::any_of(argv, argv + argc, [](const char* word) { return strcmp(word, "check") == 0; });
    return check ? RESULT_UNREADABLE : RESULT_USAGE;
}

static int runWords(int argc, char** argv) {
    CLI::App app{
        "Shows what adapters, arrays, virtual disks and disks there are, what is wrong with them and what to do.\n"
        "Reads only: nothing is changed."};
    Invocation invocation;
    app.name("ktreport");
    app.require_subcommand(0, 1);
    app.set_version_flag("--version", std::string("ktreport ") + CLI_VERSION, "Print the version and exit");
    app.set_help_all_flag("--help-all", "Print the help of every command");
    addShow(app, invocation);
    addJson(app, invocation);
    addCheck(app, invocation);
    addDiff(app, invocation);
    addEvents(app, invocation);
    addMap(app, invocation);
    addMetrics(app, invocation);
    addPage(app, invocation);
    addWait(app, invocation);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return app.exit(error);
        return say(std::string(error.what()) + " (--help tells more)", usageResult(argc, argv));
    }
    return invocation.result;
}

static int runGuarded(int argc, char** argv) {
    try {
        return runWords(argc, argv);
    } catch (const UsageFailure& failure) {
        return say(failure.message + " (--help tells more)", usageResult(argc, argv));
    } catch (const LoadFailure& failure) {
        return say(failure.message, RESULT_UNREADABLE);
    } catch (const CursorFailure& failure) {
        return say(failure.message, RESULT_UNREADABLE);
    } catch (const ReadFailure& failure) {
        return say(failure.message, RESULT_UNREADABLE);
    } catch (const std::exception& error) {
        return say(error.what(), RESULT_UNREADABLE);
    }
}

// What is left that a handler itself can throw is running out of memory: the end, whatever is done.
int main(int argc, char** argv) { // NOLINT(bugprone-exception-escape)
    fillStandardStreams();
    watchStandardOutput();
    __gnu_cxx::stdio_sync_filebuf<char> watched(stdout);
    std::streambuf* const unwatched = std::cout.rdbuf(&watched);
    const int result = runGuarded(argc, argv);
    flushStream(stdout);
    std::cout.rdbuf(unwatched);
    return tellLostOutput() || result != RESULT_OK ? result : RESULT_UNREADABLE;
}
