#include "Public/common.h"
#include "commands.h"
#include "lab/lab.h"

#include "Public/lostOutput.h"

#include <algorithm>
#include <cstdio>

enum { RESULT_FAILED = 1, RESULT_USAGE = 2 };

// One line, whatever was typed or stands in a file.
static int say(std::string what) {
    for (char& byte : what)
        if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F) byte = '?';
    fprintf(stderr, "ktsim: %s\n", what.c_str());
    return RESULT_FAILED;
}

// A word where a command should stand is what is wrong, rather than the missing command.
static int refuseWords(const WordsFailure& failure) {
    const std::string what =
        failure.stranger.empty() ? failure.message : "\"" + failure.stranger + "\" is not a command";
    say(what + " (--help tells more)");
    return RESULT_USAGE;
}

static int runWords(int argc, char** argv) {
    const Program app("ktsim",
                      "Makes, shows and changes the simulated adapters that the library libktraid.so.4 plays.\n"
                      "Their state is kept in the file that KTRAID_SIM names, else in the user's state folder.");
    Options options;
    app.requireCommand(1, 1);
    app.addHelpAll();
    app.addVersion(std::string("ktsim ") + CLI_VERSION);
    app.addOption("--state", options.state, "The state's file, instead of KTRAID_SIM")
        .check(checkedBy(
            [](const std::string& path) { return path.empty() ? std::string("should name a file") : std::string(); }));
    addCreate(app, options);
    addShow(app, options);
    addStatus(app, options);
    addCheck(app, options);
    addDisk(app, options);
    addBattery(app, options);
    addEnclosure(app, options);
    addCable(app, options);
    addPower(app, options);
    addClock(app, options);
    addFault(app, options);
    addEvent(app, options);
    addImage(app, options);
    addRun(app, options);
    addRehearse(app);
    fputs(readWords(app, argc, argv).c_str(), stdout);
    return 0;
}

static int runGuarded(int argc, char** argv) {
    try {
        return runWords(argc, argv);
    } catch (const CommandFailure& failure) {
        if (!failure.message.empty()) say(failure.message);
        return failure.result;
    } catch (const WordsFailure& failure) {
        return refuseWords(failure);
    } catch (const sim::StoreFailure& failure) {
        return say(failure.message);
    } catch (const sim::LabError& error) {
        return say("lab " + error.message);
    } catch (const std::exception& error) {
        return say(error.what());
    }
}

// What is left that a handler itself can throw is running out of memory: the end, whatever is done.
int main(int argc, char** argv) {
    fillStandardStreams();
    watchStandardOutput();
    return endOutput(runGuarded(argc, argv));
}
