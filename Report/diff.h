// What differs between two reports: what went, what changed, what appeared.
#pragma once

#include <iosfwd>
#include <vector>

#include "Report/json.h"

enum class ChangeKind { Gone, Changed, Appeared };

struct Change {
    ChangeKind kind = ChangeKind::Changed;
    int adapter = -1;        // its id; -1: none
    std::string object = {}; // "disk", "virtual disk", "array", "enclosure", "adapter" ...
    Json id = {};            // of the object, where it has one; else null
    std::string word = {};   // of the document that has another value; "" when the object itself went or appeared
    Json before = {};        // the values; null where there was none, or none is known
    Json after = {};
    std::string text = {}; // a sentence without its full stop, safe to print
};

// The changes that lead from one document to the other, what went first and what appeared last. Adapters and disks are
// the same by their serial numbers, virtual disks by their GUIDs, names and ids, arrays by their names and ids. What
// one of the two does not know is said, and never taken for gone. all: also what changes by itself all the time
// (temperatures, progress, hours, events) and where data lies.
std::vector<Change> changesBetween(const Json& before, const Json& after, bool all);

// The changes as a list of objects: {"change", "adapter", "object", "id", "word", "before", "after", "text"}.
Json changesAsJson(const std::vector<Change>& changes);
void writeChanges(std::ostream& to, const std::vector<Change>& changes);
