// Answers of the library that are not what they should be: in each a few bytes, counts or indexes are others.
#pragma once

#include <algorithm>
#include <cstring>

#include "tests/fuzz/fuzz.h"
#include "tests/fuzz/passing/calls.h"

inline unsigned long mutated = 0;
inline unsigned long inThisRun = 0;
inline size_t wrongOneIn = 1;                       // 0: all are as they should be
inline constexpr unsigned long MOST_IN_A_RUN = 100; // behind them, long lists go on as they are

// Something else in the answer: a byte, a number of two bytes at its bounds, or all of it.
inline void mutate(const AnswerBytes& answer) {
    auto* bytes = static_cast<KT_U8*>(answer.at);
    // Lists answer with a count and an index first, and are the longest answers.
    const size_t reach = below(3) == 0 ? std::min<size_t>(answer.size, sizeof(_RequestHeader)) : answer.size;
    static const KT_U16 bounds[] = {0, 1, 0x7F, 0xFF, 0x100, 0x7FFF, 0xFFFE, 0xFFFF};
    const KT_U16 bound = bounds[below(std::size(bounds))];
    const size_t at = below(reach);
    const size_t kind = below(10);
    if (kind == 0) {
        memset(bytes, static_cast<int>(below(256)), answer.size);
    } else if (kind == 1) {
        std::generate_n(bytes, answer.size, [] { return static_cast<KT_U8>(chance()); });
    } else if (kind < 5) {
        if (at + sizeof bound <= answer.size) memcpy(bytes + (at & ~size_t{1}), &bound, sizeof bound);
    } else {
        bytes[at] = static_cast<KT_U8>(chance());
    }
}

inline KT_U8 answerWrongly(const char* name, const std::vector<AnswerBytes>& answers, KT_U8 status) {
    // Without a library or adapters there is nothing to be tried.
    if (strncmp(name, "KT_API_", 7) == 0 || strcmp(name, "KT_Adapter_GetCount") == 0) return status;
    if (wrongOneIn == 0 || below(wrongOneIn) != 0) return status;
    for (const AnswerBytes& answer : answers) {
        if (answer.size == 0 || ++inThisRun > MOST_IN_A_RUN) continue;
        ++mutated;
        for (size_t times = below(4); times > 0; --times)
            mutate(answer);
    }
    return below(20) == 0 ? static_cast<KT_U8>(chance()) : status;
}
