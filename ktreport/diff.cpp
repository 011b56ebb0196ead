// ktreport diff: what differs between two reports, or between a report and the adapters now.
#include <iostream>

#include "Report/diff.h"
#include "ktreport/commands.h"

enum { RESULT_DIFFERENT = 1 };

namespace {
struct DiffWords {
    std::vector<std::string> files;
    bool json = false;
    bool all = false;
};
} // namespace

static Json oneReport(Invocation invocation, const std::vector<std::string>& from) {
    invocation.from = from;
    return std::move(reportsFor(invocation).front().document);
}

static void writeDiff(Invocation& invocation, const DiffWords& words) {
    if (words.files.size() == 2 && words.files[0] == "-" && words.files[1] == "-") {
        throw UsageFailure{"only one of the two reports can come from standard input"};
    }
    const Json before = oneReport(invocation, {words.files.front()});
    const Json after = oneReport(invocation, {words.files.begin() + 1, words.files.end()});
    const std::vector<Change> changes = changesBetween(before, after, words.all);
    if (words.json) {
        std::cout << changesAsJson(changes).dump(1) << '\n';
    } else {
        writeChanges(std::cout, changes);
    }
    if (!changes.empty()) invocation.result = RESULT_DIFFERENT;
}

void addDiff(const Command& app, Invocation& invocation) {
    const Command diff = app.addCommand("diff", "Tell what appeared, went and changed between two reports");
    auto words = std::make_shared<DiffWords>();
    diff.addOption("reports", words->files, "The older report and the newer one; without it, the adapters now")
        .required()
        .expects(1, 2);
    addAdapter(diff, invocation);
    diff.addFlag("--json", words->json, "Print a list of changes for programs");
    diff.addFlag("--all", words->all, "Also what changes all the time: temperatures, progress, hours, events");
    diff.onGiven([&invocation, words] { writeDiff(invocation, *words); });
}
