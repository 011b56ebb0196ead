#include "Public/nearWords.h"

#include <algorithm>
#include <cstring>
#include <unistd.h>
#include <vector>

#include "Public/commandSet.h"
#include "Public/output.h"

static constexpr size_t LONGEST = 24;

// How many single steps make one word of the other: a letter changed, added, left out, or swapped with the next one.
static size_t distance(const char* from, const char* to) {
    const size_t rows = strlen(from);
    const size_t columns = strlen(to);
    if (rows > LONGEST || columns > LONGEST) return LONGEST;
    size_t steps[LONGEST + 1][LONGEST + 1];
    for (size_t i = 0; i <= rows; ++i) {
        for (size_t j = 0; j <= columns; ++j) {
            steps[i][j] = std::max(i, j);
            if (i == 0 || j == 0) continue;
            const size_t changed = from[i - 1] == to[j - 1] ? 0 : 1;
            steps[i][j] = std::min({steps[i - 1][j] + 1, steps[i][j - 1] + 1, steps[i - 1][j - 1] + changed});
            const bool swapped = i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1];
            if (swapped) steps[i][j] = std::min(steps[i][j], steps[i - 2][j - 2] + 1);
        }
    }
    return steps[rows][columns];
}

namespace {
struct Nearest {
    std::vector<const char*> words;
    size_t steps = 2; // at most
    void consider(const char* typed, const char* word) {
        const size_t away = distance(typed, word);
        if (away > steps || 2 * away >= strlen(word)) return;
        if (away < steps) words.clear();
        steps = away;
        const bool known =
            std::any_of(words.begin(), words.end(), [&](const char* other) { return strcmp(other, word) == 0; });
        if (!known) words.push_back(word);
    }
};
} // namespace

void suggestCommands(const char* word) {
    if (isatty(STDERR_FILENO) == 0) return;
    Nearest nearest;
    for (KT_U16 i = 0; i < cmdTableSize; ++i) {
        nearest.consider(word, pCmdTable[i].cmd);
    }
    for (KT_U16 i = 0; i < inCmdTableSize; ++i) {
        nearest.consider(word, pInCmdTable[i].cmd);
    }
    for (const char* own : {"ver", "exit", "quit"}) {
        nearest.consider(word, own);
    }
    if (nearest.words.empty()) return;
    flushOutput();
    fprintf(stderr, "did you mean ");
    for (size_t i = 0; i < nearest.words.size(); ++i) {
        const char* before = i == 0 ? "" : i + 1 == nearest.words.size() ? " or " : ", ";
        fprintf(stderr, "%s%s", before, nearest.words[i]);
    }
    fprintf(stderr, "?\n");
}
