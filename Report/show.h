// The view for people: what is wrong first, then what goes on, then what there is.
#pragma once

#include <iosfwd>
#include <vector>

#include "Report/load.h"
#include "Report/terminal.h"

// all: every problem and every disk by itself, however many there are.
void writeShow(std::ostream& to, const Look& look, const std::vector<Report>& reports, bool all);
