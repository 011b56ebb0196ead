// What plan and apply share: reading what is wanted and what is there, and the plan from the one to the other.
#pragma once

#include <optional>

#include "Plan/tell.h"
#include "Plan/twin.h"
#include "Public/options.h"
#include "Report/reading.h"

// Exit statuses.
enum { RESULT_AS_WANTED = 0, RESULT_NOT_WANTED = 1, RESULT_USAGE = 2, RESULT_NOT_IDLE = 3 };

struct PlanRequest {
    std::string file;
    std::string from; // a report; "": the adapters of this machine
    PlanOptions options;
    bool check = false;
    bool yes = false;
    bool wait = false;
};

// Reads the options. False when the command is over; result is then what its handler returns.
bool readRequest(const CommandCall& call, const OptionSet& set, PlanRequest& request, int& result);

// Everything that a plan is made from, and the plan.
// Moving JSON throws nothing, whatever its library declares. NOLINTNEXTLINE(bugprone-exception-escape)
struct Planning {
    Wanted wanted;
    Json report;
    Plan plan;
};

// Reads and plans; none, after one line on standard error, when something cannot be read, or after the reasons when the
// plan is none.
std::optional<Planning> planFor(const PlanRequest& request);

// The plan's rehearsal; none, after the differences, when it does not lead to what is wanted.
std::optional<Rehearsal> rehearsed(const PlanRequest& request, const Planning& planning);

// Reads the adapters of this machine; adapter: only that one, -1: all. What only a twin needs is left out when none is
// to be made. Throws ReadFailure.
Json readNow(int adapter, bool forTwin);

// Runs `work`, which answers an exit status; what reading and planning throw becomes one line on standard error.
int guarded(int (*work)(const PlanRequest& request), const PlanRequest& request);
