#include "Plan/place.h"

#include <algorithm>

KT_U64 slotsOf(const PresentAdapter& adapter) {
    const auto at = adapter.limits.find("virtualDisksPerArray");
    return at == adapter.limits.end() || at->second == 0 ? 1 : at->second;
}

KT_U64 largestSlot(const PresentArray& array) {
    KT_U64 largest = 0;
    for (const PresentSlot& slot : array.slots) {
        if (!slot.vd) largest = std::max(largest, slot.size);
    }
    return largest;
}

std::optional<KT_U64> placeVd(PresentArray& array, std::optional<KT_U64> size, KT_U64 vd, KT_U64 mostSlots) {
    static constexpr KT_U64 MEBIBYTE = KT_U64{1} << 20;
    const KT_U64 wanted = size ? *size / MEBIBYTE * MEBIBYTE : std::max<KT_U64>(largestSlot(array), 1);
    // The adapter takes no size for the last slot that it may have.
    if (size && array.slots.size() >= mostSlots) return std::nullopt;
    const auto isFit = [&](const PresentSlot& slot) { return !slot.vd && slot.size >= wanted; };
    const auto at = std::find_if(array.slots.begin(), array.slots.end(), isFit);
    if (at == array.slots.end()) return std::nullopt;
    const KT_U64 row = rowOf(array.layout) - MEBIBYTE;
    const KT_U64 kept = row == 0 ? wanted : (wanted + row - 1) / row * row;
    at->vd = vd;
    if (kept >= at->size || array.slots.size() >= mostSlots) return wanted;
    const KT_U64 rest = at->size - kept;
    at->size = kept;
    array.slots.insert(at + 1, {rest, std::nullopt});
    return wanted;
}

void freeSlot(PresentArray& array, KT_U64 vd) {
    std::vector<PresentSlot> kept;
    for (PresentSlot slot : array.slots) {
        if (slot.vd == vd) slot.vd.reset();
        if (!slot.vd && !kept.empty() && !kept.back().vd) {
            kept.back().size += slot.size;
        } else {
            kept.push_back(slot);
        }
    }
    array.slots = kept;
}

const WantedVd* firstThatDoesNotFit(const Planner& planner, const WantedArray& wanted, PresentArray array) {
    for (const WantedVd& vd : wanted.vds) {
        if (planner.matching.vds.contains(&vd)) continue;
        if (!placeVd(array, vd.size, ~KT_U64{0}, slotsOf(planner.now))) return &vd;
    }
    return nullptr;
}
