// Shows what adapters there are and how they are, for people and for programs. Reads only.
#include <algorithm>
#include <cstring>
#include <ext/stdio_sync_filebuf.h>
#include <iostream>

#include "Public/common.h"
#include "Public/lostOutput.h"
#include "Report/eventCursor.h"
#include "ktreport/commands.h"

// Monitoring systems take 2 for "critical": there, words that are not understood are "unknown".
static int usageResult(int argc, char** argv) {
    const bool check = std::any_of(argv, argv + argc, [](const char* word) { return strcmp(word, "check") == 0; });
    return check ? RESULT_UNREADABLE : RESULT_USAGE;
}

static int runWords(int argc, char** argv) {
    const Program app(
        "ktreport",
        "Shows what adapters, arrays, virtual disks and disks there are, what is wrong with them and what to do.\n"
        "Reads only: nothing is changed.");
    Invocation invocation;
    app.requireCommand(0, 1);
    app.addVersion(std::string("ktreport ") + CLI_VERSION);
    app.addHelpAll();
    addShow(app, invocation);
    addJson(app, invocation);
    addCheck(app, invocation);
    addDiff(app, invocation);
    addEvents(app, invocation);
    addMap(app, invocation);
    addMetrics(app, invocation);
    addPage(app, invocation);
    addWait(app, invocation);
    std::cout << readWords(app, argc, argv);
    return invocation.result;
}

static int runGuarded(int argc, char** argv) {
    try {
        return runWords(argc, argv);
    } catch (const WordsFailure& failure) {
        return say(failure.message + " (--help tells more)", usageResult(argc, argv));
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
int main(int argc, char** argv) {
    fillStandardStreams();
    watchStandardOutput();
    __gnu_cxx::stdio_sync_filebuf<char> watched(stdout);
    std::streambuf* const unwatched = std::cout.rdbuf(&watched);
    const int result = runGuarded(argc, argv);
    flushStream(stdout);
    std::cout.rdbuf(unwatched);
    return tellLostOutput() || result != RESULT_OK ? result : RESULT_UNREADABLE;
}
