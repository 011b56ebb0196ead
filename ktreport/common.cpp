// What the commands share: their options, the reports that they are of, and what is said on standard error.
#include <cstdio>

#include "ktreport/commands.h"

int say(std::string what, int result) {
    for (char& byte : what) {
        if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F) byte = '?';
    }
    fprintf(stderr, "ktreport: %s\n", what.c_str());
    return result;
}

void addAdapter(const Command& command, Invocation& invocation) {
    command.addOption("-a,--adapter", invocation.adapter, "Only this adapter").check(inRange(0, 254));
}

void addFrom(const Command& command, Invocation& invocation) {
    command.addOption("--from", invocation.from, "Reports in files instead of the adapters; - is standard input");
}

void addThresholds(const Command& command, Invocation& invocation) {
    command.addOption("--thresholds", invocation.thresholds, "Numbers that decide, instead of /etc/ktreport.json");
}

std::vector<Report> reportsFor(const Invocation& invocation, ReadOptions options) {
    options.adapter = invocation.adapter;
    return gatherReports(invocation.from, options, loadThresholds(invocation.thresholds));
}

void sayLeftOut(Invocation& invocation, const std::vector<LeftOut>& leftOut) {
    for (const LeftOut& file : leftOut) {
        invocation.result = say(file.message + " (left out)", RESULT_LEFT_OUT);
    }
}

std::vector<Report> readableReportsFor(Invocation& invocation) {
    ReadOptions options;
    options.adapter = invocation.adapter;
    ReadableReports gathered = gatherReadable(invocation.from, options, loadThresholds(invocation.thresholds));
    sayLeftOut(invocation, gathered.leftOut);
    return std::move(gathered.reports);
}
