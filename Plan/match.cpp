#include "Plan/match.h"

#include <algorithm>

#include "Plan/chooseDisks.h"
#include "Report/look.h"

// The one of `items` with the name; null for none. More than one is a reason.
template <class Item, class Asked>
static const Item* oneNamed(const std::vector<Item>& items, const Asked& asked, Matching& matching) {
    const Item* found = nullptr;
    for (const Item& item : items) {
        if (item.name != asked.name) continue;
        if (found != nullptr) {
            matching.reasons.push_back({asked.place + ".name", "\"" + shown(asked.name) + "\" is the name of " +
                                                                   nameOf(*found) + " and of " + nameOf(item) +
                                                                   " there; give one of them another name first"});
            return nullptr;
        }
        found = &item;
    }
    return found;
}

// A virtual disk that kept its identity when its name was changed.
static const PresentVd* oneWithGuid(const std::vector<PresentVd>& there, const std::vector<WantedVd>& all,
                                    const WantedVd& asked) {
    const auto mentioned = [&](const PresentVd& vd) {
        return std::any_of(all.begin(), all.end(), [&](const WantedVd& one) { return one.name == vd.name; });
    };
    for (const PresentVd& vd : there) {
        if (!asked.guid.empty() && vd.guid == asked.guid && !mentioned(vd)) return &vd;
    }
    return nullptr;
}

static void matchVds(const std::vector<PresentVd>& there, const std::vector<WantedVd>& wanted, Matching& matching) {
    for (const WantedVd& one : wanted) {
        const PresentVd* vd = oneNamed(there, one, matching);
        if (vd == nullptr) vd = oneWithGuid(there, wanted, one);
        if (vd != nullptr) matching.vds[&one] = vd->id;
    }
}

// An array on exactly the disks that are asked for one by one, whose name nobody asks for.
static const PresentArray* oneOnDisks(const PresentAdapter& there, const WantedAdapter& wanted,
                                      const WantedArray& asked, const Matching& matching) {
    const std::vector<KT_U64> disks = disksFor(matching, asked.layout.disks);
    const std::set<KT_U64> asSet(disks.begin(), disks.end());
    if (disks.empty() || asSet.size() != asked.layout.disks.size()) return nullptr;
    for (const PresentArray& array : there.arrays) {
        std::set<KT_U64> members;
        for (const auto& disk : array.layout.disks)
            members.insert(disk.value_or(~KT_U64{0}));
        const auto isNamed = [&](const WantedArray& one) { return one.name == array.name; };
        const bool mentioned = std::any_of(wanted.arrays.begin(), wanted.arrays.end(), isNamed);
        if (members == asSet && !mentioned && array.layout.level == asked.layout.level) return &array;
    }
    return nullptr;
}

Matching matchAdapter(const PresentAdapter& there, const WantedAdapter& wanted, bool takeFileSystems) {
    Matching matching;
    findNamedDisks(there, wanted, matching);
    for (const WantedArray& one : wanted.arrays) {
        const PresentArray* array = oneNamed(there.arrays, one, matching);
        if (array == nullptr) array = oneOnDisks(there, wanted, one, matching);
        if (array == nullptr) continue;
        matching.arrays[&one] = array->id;
        matchVds(array->vds, one.vds, matching);
    }
    matchVds(there.vds, wanted.vds, matching);
    chooseOtherDisks(there, wanted, takeFileSystems, matching);
    return matching;
}

static const PresentAdapter* adapterFor(const std::vector<PresentAdapter>& there, const WantedAdapter& wanted,
                                        KT_U64 position) {
    for (const PresentAdapter& adapter : there) {
        if (!wanted.serial.empty() && adapter.serial == wanted.serial) return &adapter;
    }
    const KT_U64 id = wanted.id.value_or(position);
    for (const PresentAdapter& adapter : there) {
        if (adapter.id == id) return &adapter;
    }
    return nullptr;
}

std::vector<AdapterPair> pairAdapters(const std::vector<PresentAdapter>& there, const Wanted& wanted, int only,
                                      std::vector<Reason>& reasons) {
    std::vector<AdapterPair> pairs;
    std::set<const PresentAdapter*> taken;
    for (size_t i = 0; i < wanted.adapters.size(); ++i) {
        const WantedAdapter& one = wanted.adapters[i];
        WantedAdapter asked = one;
        if (only >= 0) {
            asked.serial.clear();
            asked.id = static_cast<KT_U64>(only);
        }
        const PresentAdapter* adapter = adapterFor(there, asked, i);
        pairs.push_back({&one, adapter});
        if (adapter == nullptr) {
            reasons.push_back({one.place, "there is no adapter " + std::to_string(asked.id.value_or(i))});
        } else if (!taken.insert(adapter).second) {
            reasons.push_back({one.place, "is " + adapter->name + " like another one of the file"});
        } else if (!one.type.empty() && (one.type == "array-based") != adapter->arrayBased) {
            reasons.push_back(
                {one.place + ".type", adapter->name + " is " + (adapter->arrayBased ? "array-based" : "LD-based")});
        }
    }
    return pairs;
}
