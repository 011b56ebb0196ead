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

bool placeVd(PresentArray& array, std::optional<KT_U64> size, KT_U64 vd, KT_U64 mostSlots) {
    static constexpr KT_U64 MEBIBYTE = KT_U64{1} << 20;
    const KT_U64 wanted = size ? *size / MEBIBYTE * MEBIBYTE : std::max<KT_U64>(largestSlot(array), 1);
    // The adapter takes no size for the last slot that it may have.
    if (size && array.slots.size() >= mostSlots) return false;
    const auto isFit = [&](const PresentSlot& slot) { return !slot.vd && slot.size >= wanted; };
    const auto at = std::find_if(array.slots.begin(), array.slots.end(), isFit);
    if (at == array.slots.end()) return false;
    const KT_U64 row = rowOf(array.layout) - MEBIBYTE;
    const KT_U64 kept = row == 0 ? wanted : (wanted + row - 1) / row * row;
    at->vd = vd;
    if (kept >= at->size || array.slots.size() >= mostSlots) return true;
    const KT_U64 rest = at->size - kept;
    at->size = kept;
    array.slots.insert(at + 1, {rest, std::nullopt});
    return true;
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

// Bytes on each disk that hold `size` bytes, in whole stripes.
static KT_U64 wholeShare(const PresentLayout& layout, KT_U64 size) {
    const KT_U64 stripe = (layout.stripe ? layout.stripe : 64) * 1024;
    KT_U64 share = shareOf(layout, size) / stripe * stripe;
    while (capacityWith(layout, share) < size)
        share += stripe;
    return share;
}

void layOutAnew(PresentArray& array, const PresentLayout& target, KT_U64 mostSlots) {
    const std::vector<PresentSlot> old = std::move(array.slots);
    array.slots.clear();
    size_t slots = old.size();
    KT_U64 carried = 0; // to the free slot that comes next
    for (size_t i = 0; i < old.size(); ++i) {
        const auto isHeld = [&](const PresentVd& vd) { return old[i].vd == vd.id; };
        const auto vd = std::find_if(array.vds.begin(), array.vds.end(), isHeld);
        const bool last = i + 1 == old.size();
        const bool joins = !last && !old[i + 1].vd;
        const KT_U64 share = shareOf(array.layout, old[i].size);
        KT_U64 spare = 0;
        if (vd != array.vds.end() && !last && (joins || slots < mostSlots)) {
            spare = share - std::min(share, wholeShare(target, vd->size));
        }
        array.slots.push_back({capacityWith(target, share + carried - spare), old[i].vd});
        carried = joins ? spare : 0;
        if (spare == 0 || joins) continue;
        array.slots.push_back({capacityWith(target, spare), std::nullopt});
        ++slots;
    }
    array.layout = target;
}

KT_U64 sizeBehind(const PresentArray& array, const PresentVd& vd, const PresentLayout& target) {
    const bool last = !array.slots.empty() && array.slots.back().vd == vd.id;
    return last ? grown(vd.size, array.layout, target) : vd.size;
}

const WantedVd* firstThatDoesNotFit(const Planner& planner, const WantedArray& wanted, PresentArray array) {
    for (const WantedVd& vd : wanted.vds) {
        if (planner.matching.vds.contains(&vd)) continue;
        if (!placeVd(array, vd.size, ~KT_U64{0}, slotsOf(planner.now))) return &vd;
    }
    return nullptr;
}
