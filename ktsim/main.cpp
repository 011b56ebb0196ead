#include "Public/common.h"
#include "commands.h"
#include "lab/lab.h"

#include "Public/lostOutput.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

enum { RESULT_FAILED = 1, RESULT_USAGE = 2 };

// One line, whatever was typed or stands in a file.
static int say(std::string what) {
    for (char& byte : what)
        if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F) byte = '?';
    fprintf(stderr, "ktsim: %s\n", what.c_str());
    return RESULT_FAILED;
}

// A word where a command should stand is what is wrong, rather than the missing command.
static int refuseWords(const CLI::App& app, const CLI::ParseError& error) {
    const CLI::App* command = &app;
    while (!command->get_subcommands().empty())
        command = command->get_subcommands().front();
    const auto& commands = command->get_subcommands([](const CLI::App*) { return true; });
    const std::vector<std::string> words = command->remaining();
    std::string what = error.what();
    if (!words.empty() && !commands.empty()) what = "\"" + words[0] + "\" is not a command";
    say(what + " (--help tells more)");
    return RESULT_USAGE;
}

static int runWords(int argc, char** argv) {
    CLI::App app{"Makes, shows and changes the simulated adapters that the library libktraid.so.4 plays.\n"
                 "Their state is kept in the file that KTRAID_SIM names, else in the user's state folder."};
    Options options;
    app.name("ktsim");
    app.require_subcommand(1);
    app.set_help_all_flag("--help-all", "Print the help of every command");
    app.set_version_flag("--version", std::string("ktsim ") + CLI_VERSION, "Print the version and exit");
    app.add_option("--state", options.state, "The state's file, instead of KTRAID_SIM")
        ->check(
            [](const std::string& path) { return path.empty() ? std::string("should name a file") : std::string(); });
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
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0) return refuseWords(app, error);
        std::ostringstream help;
        app.exit(error, help, help);
        fputs(help.str().c_str(), stdout);
    }
    return 0;
}

static int runGuarded(int argc, char** argv) {
    try {
        return runWords(argc, argv);
    } catch (const CommandFailure& failure) {
        if (!failure.message.empty()) say(failure.message);
        return failure.result;
    } catch (const sim::StoreFailure& failure) {
        return say(failure.message);
    } catch (const sim::LabError& error) {
        return say("lab " + error.message);
    } catch (const std::exception& error) {
        return say(error.what());
    }
}

// What is left that a handler itself can throw is running out of memory: the end, whatever is done.
int main(int argc, char** argv) { // NOLINT(bugprone-exception-escape)
    fillStandardStreams();
    watchStandardOutput();
    return endOutput(runGuarded(argc, argv));
}
