#include "raid/slots.h"

#include "raid/activityRecords.h"

#include <algorithm>

namespace sim {

KT_U64 slotShare(const Array& array, int slot) {
    return array.info.VDSlotSize[slot] * 2 / std::max<KT_U64>(dataHalves(geometryOf(array)), 1);
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
