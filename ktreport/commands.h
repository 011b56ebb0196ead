// The words of ktreport: each command adds its own to the program's, and what it is to do when they were given.
#pragma once

#include "commandLine/commandLine.h"

#include "Report/load.h"

// Exit statuses that every command has; further ones are its own.
enum { RESULT_OK = 0, RESULT_LEFT_OUT = 1, RESULT_USAGE = 2, RESULT_UNREADABLE = 3 };

// What commands share, and the exit status that the one that ran leaves.
struct Invocation {
    std::vector<std::string> from;
    std::string thresholds; // a file; "" for the usual one
    int adapter = -1;
    int result = RESULT_OK;
};

// Words that were taken one by one, but do not go together.
struct UsageFailure {
    std::string message;
};

// One line on standard error, whatever was typed or stands in a file; answers the result.
int say(std::string what, int result);

// Adds "-a N" and, for views of a state, "--from FILE...".
void addAdapter(const Command& command, Invocation& invocation);
void addFrom(const Command& command, Invocation& invocation);
void addThresholds(const Command& command, Invocation& invocation); // --thresholds FILE
// The reports that a view is of: the files, else the adapters now.
std::vector<Report> reportsFor(const Invocation& invocation, ReadOptions options = {});

// The same of many machines: a file that is no report is named on standard error and left out (RESULT_LEFT_OUT).
std::vector<Report> readableReportsFor(Invocation& invocation);
void sayLeftOut(Invocation& invocation, const std::vector<LeftOut>& leftOut);

// A file of ktreport/ each.
void addShow(const Command& app, Invocation& invocation); // also without any command
void addJson(const Command& app, Invocation& invocation); // json, schema
void addCheck(const Command& app, Invocation& invocation);
void addDiff(const Command& app, Invocation& invocation);
void addEvents(const Command& app, Invocation& invocation);
void addMap(const Command& app, Invocation& invocation);
void addMetrics(const Command& app, Invocation& invocation);
void addPage(const Command& app, Invocation& invocation);
void addWait(const Command& app, Invocation& invocation);
