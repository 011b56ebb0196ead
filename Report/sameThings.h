// Which items of two lists are the same thing.
#pragma once

#include <vector>

#include "Report/json.h"

// Items of two lists that are the same thing; null on the side that has none.
struct Same {
    const Json* before;
    const Json* after;
};

// Pairs the items by `identity` (a word such as "serial"), then by the first of the further words. A value that two
// items of one list share, an empty text and one that is missing tell nothing; items whose identities are known and
// differ are never the same thing. What no word pairs stands alone. In the order of `after`, what is only in `before`
// in front.
std::vector<Same> pairItems(const std::vector<const Json*>& before, const std::vector<const Json*>& after,
                            const char* identity, const std::vector<const char*>& words);
