// What is wrong, by one table of rules: a name that stays, a severity, and over which part of the document it is looked
// for. The sentences name the object, its place and its serial number, and say what to do.
#pragma once

#include <vector>

#include "Report/json.h"

enum class Severity { Warning, Critical };
const char* wordOf(Severity severity); // "warning", "critical"

// A row of the table; the names are the ones that --only, --ignore and whoever reads reports go by.
struct ProblemRule {
    const char* name;
    Severity severity;
    const char* meaning; // a short line for manuals
    const char* advice;  // what to do, for any object: "{adapter}" and "{id}" stand for its numbers
};
std::vector<ProblemRule> problemRules();
bool isProblemName(const std::string& name);

// Numbers that decide, by name; each with its meaning in docs/ktreport.8.scd.
Json defaultThresholds();
// Takes over the numbers that `overrides` has; answers what is wrong with it, "" when nothing is.
std::string mergeThresholds(Json& thresholds, const Json& overrides);

// The problems of a document: a list of {"name", "severity", "adapter", "object", "id", "text", "action"}, critical
// ones first. "object" is the kind of what it is about ("disk", "virtual disk", "array", "enclosure", "battery",
// "port", "adapter", "library"), "id" its id where it has one.
Json problemsOf(const Json& document, const Json& thresholds);

// What a problem is about, in its adapter; null where it has no entry of its own there.
const Json* objectOfProblem(const Json& adapter, const Json& problem);
// Its name, which stays the same as long as the problem lasts: "disk 3 (slot 3 of enclosure 1, FX2000, serial S12) on
// adapter 0", "battery on adapter 0".
std::string titleOfProblem(const Json& document, const Json& problem);
