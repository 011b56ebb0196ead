// Where everything is: a table a line for whoever stands in front of the shelves.
#pragma once

#include <iosfwd>
#include <vector>

#include "Report/load.h"
#include "Report/terminal.h"

// The disks in the order of their places: shelf and bay or port, then the table's other columns. Behind it, how to make
// a disk's light blink. Several machines are told apart by their host's name.
void writeMap(std::ostream& to, const Look& look, const std::vector<Report>& reports);

// The same as comma-separated values with a headline; quoted as RFC 4180 has it, sizes in bytes.
void writeMapAsCsv(std::ostream& to, const std::vector<Report>& reports);
