// The event logs of a machine as lines, oldest first, and what of them was told before.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "Report/json.h"

// The last event that was told of each adapter, by its serial number (by "#" and its id where that tells nothing).
using Told = std::map<std::string, KT_U64>;

struct EventWords {
    bool json = false;          // an object a line instead of text
    bool quietProgress = false; // without the lines that only say how far an activity is
    bool journal = false;       // before each line its severity, as the system's journal takes it: "<4>"
};

// A line ready to be written, control bytes of the adapter's texts as '?', and what is told with it.
struct EventLine {
    std::string text;
    std::string adapter; // as in Told
    KT_U64 sequence;
};

// What was not told yet, and where that leads.
struct NewEvents {
    std::vector<EventLine> lines;
    Told told;
};

// The events of a document that follow `told`. An adapter that is not in `told` is told from its event `since` on. Says
// in a line of its own how many events went before they could be told, and when a log has begun anew.
NewEvents eventsAfter(const Json& document, const Told& told, KT_U64 since, const EventWords& words);
