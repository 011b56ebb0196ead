#include "Report/sameThings.h"

#include <map>

#include "Report/look.h"

using Found = std::map<Json, const Json*>;

// A serial number or a name that is empty is nobody's.
static bool tells(const Json& value) {
    return !value.is_null() && !(value.is_string() && value.get_ref<const std::string&>().empty());
}

// The items by their values of the word, without the values that do not tell.
static Found byWord(const std::vector<const Json*>& items, const char* word) {
    Found found;
    for (const Json* item : items) {
        const Json& value = in(*item, word);
        if (!tells(value)) continue;
        const auto [at, isNew] = found.try_emplace(value, item);
        if (!isNew) at->second = nullptr;
    }
    std::erase_if(found, [](const auto& entry) { return entry.second == nullptr; });
    return found;
}

static std::vector<const Json*> without(const std::vector<const Json*>& items,
                                        const std::map<const Json*, const Json*>& paired) {
    std::vector<const Json*> left;
    for (const Json* item : items) {
        if (!paired.contains(item)) left.push_back(item);
    }
    return left;
}

static bool mayBeSame(const Json& one, const Json& other, const char* identity) {
    const Json& a = in(one, identity);
    const Json& b = in(other, identity);
    return !tells(a) || !tells(b) || a == b;
}

std::vector<Same> pairItems(const std::vector<const Json*>& before, const std::vector<const Json*>& after,
                            const char* identity, const std::vector<const char*>& words) {
    std::map<const Json*, const Json*> paired; // both ways
    std::vector<const char*> steps = {identity};
    steps.insert(steps.end(), words.begin(), words.end());
    for (const char* word : steps) {
        const Found old = byWord(without(before, paired), word);
        for (const auto& [value, item] : byWord(without(after, paired), word)) {
            const auto at = old.find(value);
            if (at == old.end() || !mayBeSame(*at->second, *item, identity)) continue;
            paired[item] = at->second;
            paired[at->second] = item;
        }
    }
    std::vector<Same> all;
    for (const Json* item : without(before, paired)) {
        all.push_back({item, nullptr});
    }
    for (const Json* item : after) {
        const auto at = paired.find(item);
        all.push_back({at == paired.end() ? nullptr : at->second, item});
    }
    return all;
}
