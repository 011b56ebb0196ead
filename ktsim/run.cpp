#include "child.h"
#include "commands.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <unistd.h>
#include <vector>

enum { NOT_EXECUTABLE = 126, NOT_FOUND = 127 }; // as shells answer

static void run(const Options& options, const std::vector<std::string>& command) {
    std::string state = statePathOf(options);
    if (state[0] != '/') {
        char here[PATH_MAX];
        if (getcwd(here, sizeof here)) state = std::string(here) + "/" + state;
    }
    setenv("KTRAID_SIM", state.c_str(), 1);
    const std::string folder = libraryFolder();
    if (!folder.empty()) {
        const char* path = getenv("LD_LIBRARY_PATH");
        setenv("LD_LIBRARY_PATH", (path && *path ? folder + ":" + path : folder).c_str(), 1);
    }
    std::vector<char*> words;
    words.reserve(command.size() + 1);
    for (const std::string& word : command)
        words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    execvp(words[0], words.data());
    const int reason = errno;
    throw CommandFailure{command[0] + ": " + strerror(reason), reason == ENOENT ? NOT_FOUND : NOT_EXECUTABLE};
}

void addRun(const Command& app, Options& options) {
    const Command command = app.addCommand("run", "Run a command in the environment of this state: run -- COMMAND ...");
    const auto words = std::make_shared<std::vector<std::string>>();
    command.addOption("COMMAND", *words, "The command and its words, after --");
    command.onGiven([&options, words] {
        if (words->empty()) failMissing("COMMAND");
        run(options, *words);
    });
}
