// The rehearsal of a plan: its commands are carried out on a simulated copy of the adapters before anybody sees them.
#pragma once

#include "Plan/plan.h"

// No rehearsal could be held; the message says why, in one line.
struct TwinFailure {
    std::string message;
};

struct Rehearsal {
    std::vector<KT_U64> seconds; // that each step took, until nothing went on; as many as went well
    std::string said;            // by the step that failed; steps.size() > seconds.size() then
    Json after;                  // the report of the copy at the end
};

// Makes the copy from the report and carries the steps out one by one, each until the copy is idle. Throws TwinFailure.
Rehearsal rehearse(const Json& report, const std::vector<PlannedStep>& steps);
