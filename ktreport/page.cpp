// ktreport page: all of it as one HTML file to look at.
#include <cerrno>
#include <cstring>
#include <iostream>

#include "Public/wholeFile.h"
#include "Report/page.h"
#include "ktreport/commands.h"

// What a page is made of.
struct Gathered {
    std::vector<std::string> machines;
    std::vector<std::string> leftOut;
};

// A file that is no report does not keep the others from being shown; it is named here and on the page.
static Gathered gather(Invocation& invocation) {
    Gathered gathered;
    ReadOptions options;
    options.adapter = invocation.adapter;
    options.attributes = false;
    const Json thresholds = loadThresholds(invocation.thresholds);
    if (invocation.from.empty()) gathered.machines.push_back(machineOfPage(reportNow(options, thresholds)));
    for (const std::string& path : invocation.from) {
        try {
            gathered.machines.push_back(machineOfPage(reportOfFile(path, options, thresholds, LARGEST_REPORT_OF_PAGE)));
        } catch (const LoadFailure& failure) {
            if (invocation.from.size() == 1) throw;
            gathered.leftOut.push_back(failure.message);
            invocation.result = say(failure.message + " (left out)", RESULT_LEFT_OUT);
        }
    }
    if (gathered.machines.empty()) throw LoadFailure{"none of the files is a report: there is no page"};
    return gathered;
}

static void writePage(Invocation& invocation, const Option& named, const std::string& file) {
    if (named.isGiven() && file.empty()) throw UsageFailure{"-o: the file's name is empty"};
    const Gathered gathered = gather(invocation);
    const std::string page = pageOf(gathered.machines, gathered.leftOut);
    if (file.empty()) {
        std::cout << page;
    } else if (writeWholeFile(file, page, Existing::Replace) != WroteFile::Yes) {
        throw LoadFailure{file + ": cannot be written: " + strerror(errno)};
    }
}

void addPage(const Command& app, Invocation& invocation) {
    const Command page = app.addCommand("page", "Make one HTML file to look at, of this machine or of many");
    addAdapter(page, invocation);
    addFrom(page, invocation);
    addThresholds(page, invocation);
    auto file = std::make_shared<std::string>();
    const Option named = page.addOption("-o,--output", *file, "Replace this file, as a whole, instead of printing");
    page.onGiven([&invocation, named, file] { writePage(invocation, named, *file); });
}
