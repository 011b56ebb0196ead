// ktreport, ktreport show: what is wrong, what goes on, what there is.
#include <iostream>

#include "Report/show.h"
#include "ktreport/commands.h"

static void addWords(const Command& command, Invocation& invocation, const std::shared_ptr<bool>& all) {
    addAdapter(command, invocation);
    addFrom(command, invocation);
    addThresholds(command, invocation);
    command.addFlag("--all", *all, "Every problem and every disk by itself");
}

// The same words go with the program's name alone.
void addShow(const Command& app, Invocation& invocation) {
    auto all = std::make_shared<bool>(false);
    const auto show = [&invocation, all] {
        writeShow(std::cout, lookOfOutput(), readableReportsFor(invocation), *all);
    };
    const Command command = app.addCommand("show", "Show what is wrong, what goes on and what there is (the default)");
    addWords(command, invocation, all);
    command.onGiven(show);
    addWords(app, invocation, all);
    app.onGiven([&app, show] {
        if (!app.hasGivenCommand()) show();
    });
}
