// What of what is there is what of what is wanted: names decide of arrays and virtual disks; disks are found by their
// serial number, by their bay, by their id, or by what they are.
#pragma once

#include "Plan/present.h"
#include "Plan/wanted.h"

struct Matching {
    std::map<KT_U64, KT_U64> disks; // a number of the wanted file -> the id of the disk that it is
    // By the place of the wanted one in the adapter's list: the id of the one that is there.
    std::map<const WantedArray*, KT_U64> arrays;
    std::map<const WantedVd*, KT_U64> vds; // also those in arrays
    std::vector<Reason> reasons;           // what cannot be found, or is not enough
    std::vector<std::string> notes;        // disks that stand in for others
};

// takeFileSystems: disks that are free but for a file system may be chosen as well.
Matching matchAdapter(const PresentAdapter& there, const WantedAdapter& wanted, bool takeFileSystems);

// The wanted adapters with those that they are: by serial number, else by id, else by their order. A wanted one that is
// not there is a reason, and its entry has no adapter.
struct AdapterPair {
    const WantedAdapter* wanted;
    const PresentAdapter* there; // null: not there
};
// only: the index of the adapter that a file with one adapter is for, whatever the file says; -1: as the file says.
std::vector<AdapterPair> pairAdapters(const std::vector<PresentAdapter>& there, const Wanted& wanted, int only,
                                      std::vector<Reason>& reasons);

// The disks that the numbers stand for, those that are not known left out.
inline std::vector<KT_U64> disksFor(const Matching& matching, const std::vector<KT_U64>& numbers) {
    std::vector<KT_U64> disks;
    for (const KT_U64 number : numbers) {
        const auto at = matching.disks.find(number);
        if (at != matching.disks.end()) disks.push_back(at->second);
    }
    return disks;
}
