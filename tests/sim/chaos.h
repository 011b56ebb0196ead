// Calls with arguments that are right now and then, and disks that come and go meanwhile.
#pragma once

#include "state/store.h"

#include <random>

struct Chaos {
    std::minstd_rand random;
    sim::Store* store; // of the state on which the library is open
    KT_U64 now;        // the stopped clock
    KT_U8 adapter = 0;
    int boots = 0, shelvesPulled = 0, cablesPulled = 0;
};

// One call, or something that happens to a disk while time goes by.
void doAnything(Chaos& run);
