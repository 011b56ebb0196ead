// Calls with arguments that are right now and then, and disks that come and go meanwhile.
#pragma once

#include "sim.h"

#include <random>

struct Chaos {
    std::minstd_rand random;
    Store* store; // of the state on which the library is open
    KT_U64 now;   // the stopped clock
    KT_U8 adapter = 0;
    int boots = 0, shelvesPulled = 0, cablesPulled = 0;

    // One call, or something that happens to a disk while time goes by.
    void doAnything();

    KT_U16 pick(unsigned below) { return static_cast<KT_U16>(random() / 7 % below); }
    KT_U8 byte(unsigned below) { return static_cast<KT_U8>(pick(below)); }
    bool rarely(unsigned oneIn) { return pick(oneIn) == 0; }
    template <size_t N>
    KT_U8 oneOf(const KT_U8 (&values)[N]) {
        return values[pick(N)];
    }
    KT_U16 disk() { return pick(20); }
    KT_U16 vd() { return pick(5); }
    KT_U16 array() { return pick(3); }
    Context context() const { return {*store, adapter, now}; }
};
