// A past: what a program does on simulated adapters to which things happen meanwhile, all of it by the dice of a seed,
// and digests of it. They are others as soon as the program does anything else than before. Where that is meant, the
// lines that the test prints take the place of those in its table. Where it is not, compare what it keeps in the folder
// that PASTS names with what a build from before keeps there.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>

#include "Public/output.h"
#include "tests/fuzz/wrongAnswers.h"
#include "tests/sim/chaos.h"
#include "tests/support/rows.h"

struct Past : testing::TestWithParam<unsigned> {
    StateFolder folder;
    std::string trace = folder.path + "/trace", digests, text, lab;
    Chaos run = {std::minstd_rand(GetParam() + 1), nullptr, 1800000000000};
    int notes = 0;

    Past();
    ~Past() override;
    // A state of one of the labs. In every other past the library answers wrongly now and then.
    void begin(size_t at);
    // What no client of the library does, and what others do.
    void happen(size_t times);
    // Adds to the text what the code prints on both streams, and its calls: what was handed over, and the status. Its
    // questions are answered.
    void runHere(const std::function<void()>& code);
    // A digest of the text, and nothing is left of it.
    void note();
};
