// ktreport check: a plug-in for monitoring systems.
#include <iostream>

#include "Report/check.h"
#include "Report/problems.h"
#include "ktreport/commands.h"

static std::string problemName(const std::string& name) {
    return isProblemName(name) ? std::string()
                               : "\"" + name + "\" is no problem's name (ktreport check --names lists them)";
}

static void listNames() {
    for (const ProblemRule& rule : problemRules()) {
        std::cout << rule.name << (rule.severity == Severity::Critical ? " (critical): " : " (warning): ")
                  << rule.meaning << '\n';
    }
}

// Whatever keeps it from a verdict is said as monitoring systems expect it.
static void runCheck(Invocation& invocation, const CheckOptions& options) {
    Verdict verdict = {CHECK_UNKNOWN, "", {}};
    try {
        ReadOptions reading;
        reading.attributes = false;
        reading.adapter = invocation.adapter;
        verdict =
            checkReports(gatherReadable(invocation.from, reading, loadThresholds(invocation.thresholds)), options);
    } catch (const LoadFailure& failure) {
        verdict.line = "RAID UNKNOWN - " + shown(failure.message);
    } catch (const ReadFailure& failure) {
        verdict.line = "RAID UNKNOWN - " + shown(failure.message);
    }
    std::cout << verdict.line << '\n';
    for (const std::string& line : verdict.further) {
        std::cout << line << '\n';
    }
    invocation.result = verdict.result;
}

void addCheck(const Command& app, Invocation& invocation) {
    const Command command = app.addCommand("check", "One line and an exit status, for monitoring systems");
    auto options = std::make_shared<CheckOptions>();
    auto names = std::make_shared<bool>(false);
    addAdapter(command, invocation);
    addFrom(command, invocation);
    addThresholds(command, invocation);
    const WordCheck known = checkedBy(problemName, "NAME");
    command.addOption("--only", options->only, "Problems to look for; all others are left out").check(known);
    command.addOption("--ignore", options->ignore, "Problems to leave out").check(known);
    command.addFlag("--long", options->everything, "Also a line for each problem, with what to do");
    command.addFlag("--names", *names, "List the names of problems");
    command.onGiven([&invocation, options, names] {
        if (*names) {
            listNames();
        } else {
            runCheck(invocation, *options);
        }
    });
}
