// A rehearsal: commands on a twin, and what they would do.
#pragma once

#include "Report/diff.h"
#include "outlook.h"

#include <iosfwd>

// Moving JSON throws nothing, whatever its library declares. NOLINTNEXTLINE(bugprone-exception-escape)
struct Rehearsed {
    struct Command {
        std::vector<std::string> words;
        int status = 0;
        std::string output; // when it was caught
    };
    std::vector<Command> commands; // those that ran; the last one may have failed
    Json before;
    Json after;
    std::vector<Risk> risksBefore;
    Outlook outlook; // from the moment after the commands
};

// foretell.cpp: what would be lost first, then what changes and appears, how long it takes and what a loss meanwhile
// costs.
void writeForetold(std::ostream& to, const Rehearsed& rehearsed);
// The same for programs.
Json foretoldAsJson(const Rehearsed& rehearsed);
