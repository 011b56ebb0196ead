// What lies ahead of simulated adapters: when all that goes on has ended, and what the loss of a disk would cost until
// then.
#pragma once

#include "state/store.h"

#include <optional>
#include <set>
#include <vector>

// A virtual disk that works, and the members any one of whose losses takes it offline.
struct Risk {
    KT_U8 adapter;
    KT_U16 vd;
    std::set<KT_U16> disks;
    std::optional<KT_U64> seconds; // how long that is so; none: nothing that goes on changes it
};

struct Outlook {
    KT_U64 idleAfter = 0; // seconds
    std::vector<Risk> risks;
};

// The risks of redundant virtual disks that are not whole or are being changed. Leaves the state as it is.
std::vector<Risk> risksNow(sim::Store& store);
// Lets time pass in the state until everything has ended.
Outlook lookAhead(sim::Store& store);
