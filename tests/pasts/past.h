// A past: what a program does on simulated adapters to which things happen meanwhile, all of it by the dice of a seed,
// and digests of it. They are others as soon as the program does anything else than before. Where that is meant, the
// lines that the test prints take the place of those in its table. Where it is not, compare what it keeps in the folder
// that PASTS names with what a build from before keeps there.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <random>

#include "Public/output.h"
#include "tests/sim/sim.h"
#include "tests/support/rows.h"

inline std::minstd_rand chance;
inline size_t below(size_t limit) {
    return chance() / 7 % limit;
}

// The adapters of a state whose clock stands.
struct Adapters {
    Store* store;
    KT_U64 now;
    KT_U8 adapter; // what commands are for, and what happens is of
    Context context() const { return {*store, adapter, now}; }
    // Mostly one that there is, otherwise any id.
    static KT_U16 among(const Ids& ids, size_t limit) {
        const size_t any = below(limit);
        return static_cast<KT_U16>(ids.empty() || below(10) == 0 ? any : ids[below(ids.size())]);
    }
    KT_U16 disk() const { return among(all<_HD_Info>(context()), 20); }
    KT_U16 vd() const { return among(all<_LD_Info>(context()), 5); }
    KT_U16 array() const { return among(all<_DG_Info>(context()), 3); }
};

struct Past : testing::TestWithParam<unsigned> {
    StateFolder folder;
    std::string trace = folder.path + "/trace", digests, text, lab;
    Adapters run = {nullptr, 1800000000000, 0};
    int notes = 0;

    Past();
    ~Past() override;
    // A state of one of the labs. In every other past either one call of a run fails, or many answer wrongly.
    void begin(size_t at);
    // What no command does: to disks, shelves and the battery, while time passes.
    void happen(size_t times);
    // Adds to the text what the code prints on both streams, and its calls: what was handed over, and the status. Its
    // questions are answered.
    void runHere(const std::function<void()>& code);
    // A digest of the text, and nothing is left of it.
    void note();
    // Whether the digests are those of the table; seeds behind it need only come to an end.
    template <size_t SIZE>
    void compare(const char* const (&table)[SIZE]) const {
        EXPECT_EQ(digests, GetParam() < SIZE ? table[GetParam()] : digests);
    }
};
