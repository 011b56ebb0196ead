#include "raid/spares.h"

#include "state/events.h"

#include <algorithm>

namespace sim {

// Whether the disk may take its own place in the group again: unused, or outside arrays beside what else it holds.
static bool canComeHome(const Group& group, const Disk& disk) {
    const KT_U8 ruledOut = KT_PD_SPARE | KT_PD_OFFLINE | KT_PD_FOREIGN;
    if ((disk.state.raid & ruledOut) || disk.state.hasOs || disk.state.hasMbr) return false;
    if (isMember(group, disk.state.config.HDID)) return false;
    return group.dgid == KT_NO_ID || !(disk.state.raid & KT_PD_MEMBER);
}

// How gladly the disk is used to rebuild the slot: 0 = not at all, then a spare of the adapter, a spare of the array, a
// disk that is back in its old place.
static int willingness(const Group& group, const Disk& disk, KT_U16 home) {
    const KT_U8 raid = disk.state.raid;
    if (disk.state.config.HDID == home && canComeHome(group, disk)) return 3;
    if ((raid & (KT_PD_OFFLINE | KT_PD_FOREIGN)) || isMember(group, disk.state.config.HDID)) return 0;
    // Outside arrays a lost disk may have carried several virtual disks, for all of which one spare stands in.
    if ((raid & KT_PD_SPARE_IN_USE) && group.dgid != KT_NO_ID) return 0;
    if (raid & KT_PD_DEDICATED_SPARE) return disk.state.dgid == group.dgid ? 2 : 0;
    return raid & KT_PD_GLOBAL_SPARE ? 1 : 0;
}

// Logs that the disk is too small, once for each loss of a member (TOLD_*): the adapter looks for spares again and
// again.
static void tellTooSmall(const Context& context, KT_U16 pd, KT_U8 what) {
    auto disk = find<PdState>(context, pd);
    if (!disk || (disk->toldTooSmall & what) != 0) return;
    disk->toldTooSmall |= what;
    save(context, pd, *disk);
    logEvent(context, what == TOLD_REBUILD ? EVT_MISC_TOO_SMALL_TO_REBUILD : EVT_MISC_TOO_SMALL_TO_COPY_BACK, pd);
}

KT_U16 chooseSpare(const Context& context, const Group& group, int slot) {
    KT_U16 best = KT_NO_ID;
    int bestWill = 0;
    KT_U64 bestSize = 0;
    std::vector<KT_U16> tooSmall;
    const KT_U16 home = group.homes[static_cast<size_t>(slot)];
    forEach<PdState>(context, 0, [&](KT_U64 id, const PdState& state) {
        Disk disk = {};
        const auto pd = static_cast<KT_U16>(id);
        if (!(state.raid & KT_PD_SPARE) && pd != home) return true;
        if (findDisk(context, pd, disk) != KT_OK) return true;
        const int will = willingness(group, disk, home);
        const KT_U8 fits = will ? checkFits(context, group, disk) : KT_U8{KT_ERR_FAILED};
        if (fits == KT_ERR_TARGET_TOO_SMALL) tooSmall.push_back(pd);
        if (fits != KT_OK || will < bestWill || (will == bestWill && disk.info.Size >= bestSize)) return true;
        best = pd;
        bestWill = will;
        bestSize = disk.info.Size;
        return true;
    });
    if (best == KT_NO_ID) {
        for (const KT_U16 pd : tooSmall)
            tellTooSmall(context, pd, TOLD_REBUILD);
    }
    return best;
}

int slotToCopyBack(const Context& context, const Group& group) {
    for (size_t i = 0; i < group.members.size(); ++i) {
        const auto spare = find<PdState>(context, group.members[i]);
        Disk home = {};
        if (!spare || !(spare->raid & KT_PD_SPARE_IN_USE) || group.homes[i] == group.members[i]) continue;
        if (findDisk(context, group.homes[i], home) != KT_OK) continue;
        if (!canComeHome(group, home)) continue;
        const KT_U8 fits = checkFits(context, group, home);
        if (fits == KT_OK) return static_cast<int>(i);
        if (fits == KT_ERR_TARGET_TOO_SMALL) tellTooSmall(context, group.homes[i], TOLD_COPY_BACK);
    }
    return -1;
}

void forgetTold(const Context& context) {
    std::vector<KT_U16> told;
    forEach<PdState>(context, 0, [&](KT_U64 id, const PdState& disk) {
        if (disk.toldTooSmall) told.push_back(static_cast<KT_U16>(id));
        return true;
    });
    for (const KT_U16 pd : told) {
        PdState disk = find<PdState>(context, pd).value_or(PdState{});
        disk.toldTooSmall = 0;
        save(context, pd, disk);
    }
}

} // namespace sim
