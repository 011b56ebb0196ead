// From what is there to what is wanted: the commands that lead there, or why none do. Pure functions of a report and a
// wanted file.
#pragma once

#include "Plan/present.h"
#include "Plan/wanted.h"

struct PlanOptions {
    bool mayDelete = false; // what stands in the way may go, with what is on it
    int adapter = -1;       // the adapter that a file with one adapter is for; -1: as the file says
};

// What starts with a step and takes its time.
enum class Lasting { Nothing, Initialization, Rebuild, Migration };

// One command of ktsetup.
struct PlannedStep {
    KT_U64 adapter = 0;
    std::vector<std::string> words; // behind the adapter's index, without quotes
    std::string key;                // the same for the same step whatever ids adapters give to what is new
    std::string reason;             // sentences without their full stop, safe to print
    std::string cost;
    Lasting takes = Lasting::Nothing;
    std::optional<KT_U64> rate; // percent that the adapter gives to that
    bool waits = false;         // something that goes on must have ended
    bool deletes = false;       // data or redundancy go with it
};

// What no command leads to.
struct Unreachable {
    std::string place, text;
    std::string nearest; // what can be had instead
};

struct Plan {
    std::vector<Reason> reasons; // the file is wrong by itself or for these adapters; nothing else is told then
    std::vector<Unreachable> unreachable;
    std::vector<PlannedStep> steps; // when anything is unreachable, they lead only to the rest
    std::vector<std::string> notes;
    std::vector<std::string> leftAlone; // what is there and not mentioned
};

inline bool canBeReached(const Plan& plan) {
    return plan.reasons.empty() && plan.unreachable.empty();
}

// Throws IncompleteReport.
Plan makePlan(const Json& report, const Wanted& wanted, const PlanOptions& options);

// The command as it is typed: "ktsetup 0 create -o array -r 5 -d 0,1,2 -n \"My Array\"".
std::string commandText(const PlannedStep& step);
