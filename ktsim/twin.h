// Twins: simulated adapters that are like those of a report.
#pragma once

#include "Report/json.h"
#include "state/store.h"

#include <string>
#include <vector>

// No twin could be made; for the command's end with that status.
enum { RESULT_NO_TWIN = 125 };

// The report of the adapters that the loader gives to programs now, or of files; reports of several adapters of a
// machine make one. Throws CommandFailure.
Json reportFrom(const std::vector<std::string>& files);
// The report of the adapters of a state.
Json reportOf(const std::string& state, bool records);

// Makes the state at `path` from the report, its clock stopped at `at` (milliseconds; 0: when the report was made), and
// looks whether the adapters of the state tell all that the report tells. Throws CommandFailure with the place.
Json makeTwin(const std::string& path, const Json& report, const std::string& name, KT_U64 at);

// Where `made` tells something else than `told`, with both values; empty when it tells all of it. What neither can be
// held to is left out: when and where a report was made, by which library, what was refused, problems, hybrid magics.
std::string firstDifference(const Json& told, const Json& made, const std::string& path = "");
