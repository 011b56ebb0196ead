// The report: what was read, as one JSON document in the words of labs.
#pragma once

#include <iosfwd>

#include "Report/json.h"
#include "Report/reading.h"

inline constexpr int REPORT_VERSION = 1;

// The whole document; its problems go by the thresholds (Report/problems.h).
Json documentOf(const Machine& machine, const Json& thresholds);

// Writes the same document, with much less memory where there are many disks: what only `json` shows of a disk (its
// attributes, its records) is made when the disk is written.
void writeDocument(std::ostream& to, const Machine& machine, const Json& thresholds);

// Lays a document out, a word of the top or an item of a list a line: short enough to compare two with diff.
void layOut(std::ostream& to, const Json& document);
