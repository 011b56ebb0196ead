// ktreport events: the logs of the adapters, a line an event, oldest first.
#include <iostream>
#include <unistd.h>

#include "Report/eventCursor.h"
#include "ktreport/commands.h"

namespace {
struct LogWords {
    KT_U64 since = 0;
    std::string cursor;
    bool follow = false;
    unsigned every = 10; // seconds
    EventWords words;
};
} // namespace

// What could not be read, a line each; the same as at the last look is not said again.
static void complain(const std::vector<Report>& reports, const LogWords& log, std::string& complaints) {
    std::string now;
    for (const Report& report : reports) {
        for (const Json& refusal : report.document["unread"]) {
            const std::string call = refusal.value("call", "");
            if (call.find("EVT") == std::string::npos && call.find("Adapter") == std::string::npos) continue;
            now += (log.words.journal ? "<4>ktreport: " : "ktreport: ") +
                   shown(call + ": " + refusal.value("text", "")) + "\n";
        }
    }
    if (now != complaints) std::cerr << now;
    complaints = now;
}

// A library that does not answer for a while is no reason to stop following. complaints: of the last look.
static void tellNow(const Invocation& invocation, const LogWords& log, EventCursor& cursor, std::string& complaints) {
    ReadOptions options;
    options.onlyEvents = true;
    const std::vector<Report> reports = reportsFor(invocation, options);
    for (const Report& report : reports) {
        // Files of several machines are told one behind the other.
        NewEvents events =
            eventsAfter(report.document, reports.size() > 1 ? Told() : cursor.told, log.since, log.words);
        if (!tellEvents(cursor, events)) throw ReadFailure{"the output could not be written"};
    }
    complain(reports, log, complaints);
}

static void checkWords(const Invocation& invocation, const LogWords& log) {
    const size_t files = invocation.from.size();
    if (files > 0 && log.follow) throw UsageFailure{"--follow reads the adapters, not files"};
    if (files > 1 && !log.cursor.empty()) throw UsageFailure{"--cursor goes with the events of one machine"};
}

static void writeEvents(Invocation& invocation, const LogWords& log) {
    checkWords(invocation, log);
    EventCursor cursor = openCursor(log.cursor);
    std::string complaints;
    tellNow(invocation, log, cursor, complaints);
    while (log.follow) {
        sleep(log.every);
        tellNow(invocation, log, cursor, complaints);
    }
    if (!complaints.empty()) invocation.result = RESULT_UNREADABLE;
}

void addEvents(const Command& app, Invocation& invocation) {
    const Command events = app.addCommand("events", "Print the event logs, oldest first");
    auto log = std::make_shared<LogWords>();
    addAdapter(events, invocation);
    addFrom(events, invocation);
    events.addOption("--since", log->since, "Only from this sequence number on").check(inRange(0, 0x7FFFFFFF));
    events.addOption("--cursor", log->cursor, "A file that remembers what was printed; nothing is printed twice");
    const Option follow = events.addFlag("--follow,-f", log->follow, "Go on with what happens next");
    events.addOption("--every", log->every, "Seconds between two looks (default: 10)")
        .check(inRange(1, 86400))
        .needs(follow);
    events.addFlag("--json", log->words.json, "An object a line for programs");
    events.addFlag("--journal", log->words.journal, "Before each line its severity, as the journal takes it");
    events.addFlag("--quiet-progress", log->words.quietProgress, "Without how far activities are");
    events.onGiven([&invocation, log] { writeEvents(invocation, *log); });
}
