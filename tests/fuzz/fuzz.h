// What a fuzzer provides, and what it may use.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "Public/output.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

// Lets everything be composed that is printed.
inline void printToNowhere() {
    if (stream == nullptr) stream = fopen("/dev/null", "w");
}

// A property that must hold for every input.
inline void require(bool holds) {
    if (!holds) abort();
}
