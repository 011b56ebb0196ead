// The view for monitoring: one line, performance data and an exit status, as plug-ins of monitoring systems give them.
#pragma once

#include <string>
#include <vector>

#include "Report/load.h"

enum CheckResult { CHECK_OK = 0, CHECK_WARNING = 1, CHECK_CRITICAL = 2, CHECK_UNKNOWN = 3 };

struct CheckOptions {
    std::vector<std::string> only;   // names of problems; empty: all
    std::vector<std::string> ignore; // names of problems
    bool everything = false;         // also each problem by itself, with what to do
};

struct Verdict {
    CheckResult result;
    std::string line;                 // without its end
    std::vector<std::string> further; // with options.everything a line for each problem, critical ones first
};

// A critical problem counts most, then what a verdict needs and the library did not tell, files that are no reports
// among it, then a warning. Where no adapter was looked at, nothing is known.
Verdict checkReports(const ReadableReports& gathered, const CheckOptions& options);
