// ktreport json, ktreport schema: the document and what it is made of.
#include <iostream>

#include "Report/document.h"
#include "Report/schema.h"
#include "ktreport/commands.h"

// A library that does not start makes a document as well: one that says so.
static void writeJson(Invocation& invocation, bool records) {
    ReadOptions options;
    options.adapter = invocation.adapter;
    options.records = records;
    if (invocation.from.empty()) {
        const Json thresholds = loadThresholds(invocation.thresholds);
        const Machine machine = readMachine(options);
        writeDocument(std::cout, machine, thresholds);
        if (!machine.opened) invocation.result = RESULT_UNREADABLE;
        return;
    }
    if (invocation.from.size() > 1) throw UsageFailure{"json takes one file: a report is of one machine"};
    layOut(std::cout, reportsFor(invocation).front().document);
}

void addJson(const Command& app, Invocation& invocation) {
    const Command json = app.addCommand("json", "Print the report as one JSON document");
    addAdapter(json, invocation);
    addFrom(json, invocation);
    addThresholds(json, invocation);
    auto records = std::make_shared<bool>(false);
    json.addFlag("--records", *records, "Also every field of the library's records, for a twin");
    json.onGiven([&invocation, records] { writeJson(invocation, *records); });
    const Command schema = app.addCommand("schema", "Print the JSON Schema of the document");
    schema.onGiven([] { std::cout << REPORT_SCHEMA; });
}
