// ktreport, ktreport show: what is wrong, what goes on, what there is.
#include <iostream>

#include "Report/show.h"
#include "ktreport/commands.h"

static void addWords(CLI::App& command, Invocation& invocation, const std::shared_ptr<bool>& all) {
    addAdapter(command, invocation);
    addFrom(command, invocation);
    addThresholds(command, invocation);
    command.add_flag("--all", *all, "Every problem and every disk by itself");
}

// The same words go with the program's name alone.
void addShow(CLI::App& app, Invocation& invocation) {
    auto all = std::make_shared<bool>(false);
    const auto show = [&invocation, all] {
        writeShow(std::cout, lookOfOutput(), readableReportsFor(invocation), *all);
    };
    CLI::App* command = app.add_subcommand("show", "Show what is wrong, what goes on and what there is (the default)");
    addWords(*command, invocation, all);
    command->callback(show);
    addWords(app, invocation, all);
    app.callback([&app, show] {
        if (app.get_subcommands().empty()) show();
    });
}
