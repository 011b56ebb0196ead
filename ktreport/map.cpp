// ktreport map: which disk is where, and what it is for.
#include <iostream>

#include "Report/map.h"
#include "ktreport/commands.h"

void addMap(const Command& app, Invocation& invocation) {
    const Command map = app.addCommand("map", "Show where every disk is and what it is for");
    addAdapter(map, invocation);
    addFrom(map, invocation);
    auto csv = std::make_shared<bool>(false);
    map.addFlag("--csv", *csv, "Comma-separated values, sizes in bytes");
    map.onGiven([&invocation, csv] {
        const std::vector<Report> reports = readableReportsFor(invocation);
        *csv ? writeMapAsCsv(std::cout, reports) : writeMap(std::cout, lookOfOutput(), reports);
    });
}
