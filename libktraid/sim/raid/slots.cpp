#include "raid/slots.h"

#include "raid/activityRecords.h"

#include <algorithm>

namespace sim {

KT_U64 slotShare(const Array& array, int slot) {
    return array.info.VDSlotSize[slot] * 2 / std::max<KT_U64>(dataHalves(geometryOf(array)), 1);
}

std::vector<KT_U64> slotShares(const Array& array) {
    std::vector<KT_U64> shares;
    for (int i = 0; i < array.info.VDSlotCount; ++i)
        shares.push_back(slotShare(array, i));
    return shares;
}

// KiB on each member that the slot can do without.
static KT_U64 spareShare(const Context& context, const Array& array, KT_U16 vd, KT_U64 share) {
    Vd held = {};
    if (vd == KT_NO_ID || findVd(context, vd, held) != KT_OK || held.state.whole) return 0;
    const KT_U64 needed = shareFor(geometryOf(array), held.info.Size, array.info.StripeBlockSize);
    return share > needed ? share - needed : 0;
}

void divideAnew(const Context& context, Array& array, const std::vector<KT_U64>& shares) {
    const int most = std::clamp<int>(adapterInfo(context).MaxVDPerDG, 1, MAX_SLOTS);
    const Geometry geometry = geometryOf(array);
    const std::vector<KT_U16> vds(array.info.VDIDs, array.info.VDIDs + shares.size());
    int more = most - static_cast<int>(shares.size()); // slots that there may be besides
    int slot = 0;
    KT_U64 carried = 0; // to the free slot that comes next
    const auto put = [&](KT_U16 vd, KT_U64 share) {
        array.info.VDIDs[slot] = vd;
        array.info.VDSlotSize[slot++] = capacityOf(geometry, share);
    };
    for (size_t i = 0; i < shares.size(); ++i) {
        const bool joins = i + 1 < shares.size() && vds[i + 1] == KT_NO_ID;
        const KT_U64 spare = joins || more > 0 ? spareShare(context, array, vds[i], shares[i]) : 0;
        put(vds[i], shares[i] + carried - spare);
        carried = joins ? spare : 0;
        if (spare == 0 || joins) continue;
        put(KT_NO_ID, spare);
        --more;
    }
    array.info.VDSlotCount = static_cast<KT_U8>(slot);
}

void countFreeSlots(Array& array) {
    array.info.RemainingManagedSpace = 0;
    for (int i = 0; i < array.info.VDSlotCount; ++i)
        if (array.info.VDIDs[i] == KT_NO_ID) array.info.RemainingManagedSpace += array.info.VDSlotSize[i];
}

void freeSlot(const Context& context, KT_U16 dgid, KT_U16 vd) {
    Array array = {};
    if (findArray(context, dgid, array) != KT_OK) return;
    _DG_Info& info = array.info;
    int kept = 0;
    for (int i = 0; i < info.VDSlotCount; ++i) {
        const KT_U16 id = info.VDIDs[i] == vd ? KT_U16{KT_NO_ID} : info.VDIDs[i];
        const KT_U64 size = info.VDSlotSize[i];
        if (kept > 0 && id == KT_NO_ID && info.VDIDs[kept - 1] == KT_NO_ID) {
            info.VDSlotSize[kept - 1] += size;
            continue;
        }
        info.VDIDs[kept] = id;
        info.VDSlotSize[kept++] = size;
    }
    std::fill(info.VDIDs + kept, std::end(info.VDIDs), KT_U16{KT_NO_ID});
    std::fill(info.VDSlotSize + kept, std::end(info.VDSlotSize), 0);
    info.VDSlotCount = static_cast<KT_U8>(kept);
    countFreeSlots(array);
    save(context, dgid, info);
    showArrayActivity(context, dgid);
}

} // namespace sim
