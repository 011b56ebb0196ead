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
    // Mostly one that there is (a disk that is free, where the call is for such ones), otherwise any id.
    KT_U16 disk() { return among(all<_HD_Info>(context()), 20); }
    KT_U16 freeDisk() { return among(freeDisks(context()), 20); }
    KT_U16 vd() {
        const auto works = [](const _LD_Info& vd) { return vd.Status < KT_VD_OFFLINE; };
        return among(rarely(4) ? all<_LD_Info>(context()) : idsWhere<_LD_Info>(context(), works), 5);
    }
    KT_U16 array() { return among(all<_DG_Info>(context()), 3); }
    KT_U16 among(const Ids& ids, unsigned below) {
        return ids.empty() || rarely(10) ? pick(below) : ids[pick(static_cast<unsigned>(ids.size()))];
    }
    Context context() const { return {*store, adapter, now}; }
};

// A call to what is no disk and no volume, or something that befalls it.
void useDevices(Chaos& run);
// Asks for all that an adapter tells of one thing at a time: only the trace of the calls looks at it.
void lookAtDevices(KT_U8 adapter);
