#include "commands.h"
#include "lab.h"

#include <cstdio>

enum { RESULT_FAILED = 1, RESULT_USAGE = 2 };

static int say(const std::string& what) {
    fprintf(stderr, "ktsim: %s\n", what.c_str());
    return RESULT_FAILED;
}

static int runWords(int argc, char** argv) {
    CLI::App app{"Makes, shows and changes the simulated adapters that the library libktraid.so.4 plays.\n"
                 "Their state is kept in the file that KTRAID_SIM names, else in the user's state folder."};
    Options options;
    app.name("ktsim");
    app.require_subcommand(1);
    app.set_help_all_flag("--help-all", "Print the help of every command");
    app.add_option("--state", options.state, "The state's file, instead of KTRAID_SIM");
    addCreate(app, options);
    addShow(app, options);
    addStatus(app, options);
    addDisk(app, options);
    addBattery(app, options);
    addEnclosure(app, options);
    addClock(app, options);
    addFault(app, options);
    addEvent(app, options);
    addImage(app, options);
    addRun(app, options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : RESULT_USAGE;
    }
    return 0;
}

static int runGuarded(int argc, char** argv) {
    try {
        return runWords(argc, argv);
    } catch (const CommandFailure& failure) {
        return say(failure.message);
    } catch (const sim::StoreFailure& failure) {
        return say(failure.message);
    } catch (const sim::LabError& error) {
        return say("lab " + error.message);
    } catch (const std::exception& error) {
        return say(error.what());
    }
}

/* What is left that a handler itself can throw is running out of memory: the end, whatever is done. */
int main(int argc, char** argv) { // NOLINT(bugprone-exception-escape)
    const int result = runGuarded(argc, argv);
    return fflush(stdout) == 0 ? result : say("the output could not be written");
}
