#include "commands.h"
#include "frame/invariants.h"

#include <cstdio>

using namespace sim;

void addCheck(const Command& app, Options& options) {
    const Command command = app.addCommand("check", "Say what in the state contradicts itself");
    command.onGiven([&options] {
        Store* store = openState(options);
        std::vector<std::string> wrong;
        try {
            wrong = findViolations(*store);
        } catch (...) {
            closeStore(store);
            throw;
        }
        closeStore(store);
        for (const std::string& line : wrong)
            printf("%s\n", line.c_str());
        fflush(stdout); // before what stderr says of it
        if (!wrong.empty()) throw CommandFailure{"the state contradicts itself"};
        printf("The state is sound.\n");
    });
}
