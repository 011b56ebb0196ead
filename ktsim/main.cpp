#include "commands.h"
#include "lab.h"

#include <cstdio>

enum { RESULT_FAILED = 1, RESULT_USAGE = 2 };

static int runParsed(CLI::App& app, int argc, char** argv) {
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : RESULT_USAGE;
    } catch (const CommandFailure& failure) {
        fprintf(stderr, "ktsim: %s\n", failure.message.c_str());
        return RESULT_FAILED;
    } catch (const sim::StoreFailure& failure) {
        fprintf(stderr, "ktsim: %s\n", failure.message.c_str());
        return RESULT_FAILED;
    } catch (const sim::LabError& error) {
        fprintf(stderr, "ktsim: lab %s\n", error.message.c_str());
        return RESULT_FAILED;
    }
    return 0;
}

int main(int argc, char** argv) {
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
    addBattery(app, options);

    addClock(app, options);
    addFault(app, options);
    addEvent(app, options);

    addImage(app, options);
    addRun(app, options);
    const int result = runParsed(app, argc, argv);
    if (fflush(stdout) != 0) {
        fprintf(stderr, "ktsim: the output could not be written\n");
        return RESULT_FAILED;
    }
    return result ? result : options.result;
}
