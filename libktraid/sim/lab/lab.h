// Labs: descriptions of adapters, as JSON.
//
// A lab written by hand says what is there and leaves the rest to defaults:
//
//     {"adapters": [{"type": "array-based",
//                    "disks": [{"count": 4, "size": "2TB"}, {"size": "2TB", "spare": "global"}],
//                    "arrays": [{"level": "RAID5", "disks": [0, 1, 2], "virtualDisks": [{"name": "data"}]}]}]}
//
// Words in lower case are the lab's (docs/ktraid-sim.7.scd lists them); words that begin with a capital letter are
// fields of the library's record and override what the lab's words made of it. A lab that begins with "complete": true,
// which is what a state is printed as, gives every row as it is, field by field; what it leaves out is zero.
#pragma once

#include "lab/labReader.h"
#include "state/store.h"

#include <string>
#include <vector>

namespace sim {

// The labs that are built in, "default" first; labNamed() answers null for other names.
struct BuiltInLab {
    const char* name;
    const char* text;
    KT_U64 stoppedAt = 0; // the clock stands at this moment (milliseconds since 1970); 0 = as the lab says
};
const BuiltInLab* labNamed(const std::string& name);
std::vector<std::string> labNames();

// Fills an empty state. `argument` is a const BuiltInLab*: a name for messages and the lab's text. Throws LabError.
void fillFromLab(Store& store, const void* argument);
// The disks that all adapters of a lab may have: what makes a state of a few lines larger than anybody can use is a
// mistake in them. Fuzzers, which wait for thousands of labs, allow fewer.
extern KT_U64 mostDisks;
// The whole state as a complete lab.
std::string stateToLab(Store& store);

} // namespace sim
