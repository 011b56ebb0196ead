#include "changes/deletion.h"

#include "activities/activities.h"
#include "activities/activityProgress.h"
#include "activities/completion.h"
#include "changes/foreign.h"
#include "media/blocks.h"
#include "raid/keptCaches.h"
#include "raid/roles.h"
#include "raid/slots.h"
#include "state/events.h"

#include <algorithm>

namespace sim {

void removeVd(const Context& context, const Vd& vd) {
    std::vector<KT_U16> blocks;
    std::vector<KT_U16> disks;
    forEach<_Block_Info>(context, 0, [&](KT_U64 id, const _Block_Info& block) {
        if (block.LDID != vd.info.ID) return true;
        blocks.push_back(static_cast<KT_U16>(id));
        disks.push_back(block.HDID);
        return true;
    });
    for (const KT_U16 block : blocks)
        removeBlock(context, block);
    rememberAway(context, vd);
    dropKeptCache(context, vd.info);
    erase<_LD_Info>(context, vd.info.ID);
    erase<VdState>(context, vd.info.ID);
    erase<VdTarget>(context, vd.info.ID);
    if (!isForeign(vd.info)) endConflicts(context, vd.info);
    if (vd.info.DGID != KT_NO_ID) freeSlot(context, vd.info.DGID, vd.info.ID);
    logEvent(context, EVT_VD_DELETED, vd.info.ID, vdParams(vd.info.RaidMode));
    for (const KT_U16 disk : disks)
        releaseDisk(context, disk);
}

// Whether the array's activity moves or fills anything of the virtual disk.
static bool isWorkedOn(const Context& context, const _LD_Info& vd, const Activity& activity) {
    if (find<VdTarget>(context, vd.ID)) return true;
    const _HD_Block_Info list = blocksOf(context, activity.disk);
    return std::any_of(list.BlkIDs, list.BlkIDs + list.BlkCount, [&](KT_U16 id) {
        const auto block = find<_Block_Info>(context, id);
        return block && block->LDID == vd.ID && block->Status != BLOCK_GOOD;
    });
}

// What is done for the array as a whole ends for this virtual disk; the array has that much less to do.
static void leaveArrayActivity(const Context& context, const _LD_Info& vd) {
    const Owner owner{OwnerKind::Array, vd.DGID};
    Activity activity = activityOf(context, owner);
    if (vd.DGID == KT_NO_ID || activity.kind == 0 || activity.work == 0 || !isWorkedOn(context, vd, activity)) return;
    if (activity.state != KT_STATE_ABORTED) logActivity(context, Owner{OwnerKind::Vd, vd.ID}, activity, STEP_ABORTED);
    const KT_U64 share = shareOf(context, vd) * (activity.kind == KT_BGA_MIGRATION ? 2 : 1);
    const double part = static_cast<double>(activityDone(activity, context.now)) / static_cast<double>(activity.work);
    activity.work -= std::min(activity.work, share);
    activity.done = static_cast<KT_U64>(static_cast<double>(activity.work) * part);
    activity.since = context.now;
    saveActivity(context, owner, activity);
}

// A rebuild or copy back of an array that has no virtual disk left has nothing more to do.
static void endEmptyActivity(const Context& context, KT_U16 dgid) {
    Array array = {};
    if (dgid == KT_NO_ID || findArray(context, dgid, array) != KT_OK) return;
    const bool empty = array.info.RemainingManagedSpace == array.info.TotalManagedSpace;
    if (empty && isAlive(array.state.activity)) completeActivity(context, Owner{OwnerKind::Array, dgid});
}

KT_U8 deleteVd(const Context& context, KT_U16 id, bool stopActivity) {
    Vd vd = {};
    const KT_U8 status = findVd(context, id, vd);
    if (status != KT_OK) return status;
    if (runsSystem(vd)) return KT_ERR_VD_HAS_OS;
    const Activity activity = shownActivity(context, vd);
    if (isUsable(vd.info) && isAlive(activity)) {
        const bool arrays = vd.info.DGID != KT_NO_ID && vd.state.activity.kind != activity.kind;
        if (arrays && activity.kind == KT_BGA_MIGRATION) return KT_ERR_ARRAY_BUSY;
        if (!stopActivity) return KT_ERR_VD_BUSY;
    }
    const bool ends = isAlive(vd.state.activity) && vd.state.activity.state != KT_STATE_ABORTED;
    if (ends) logActivity(context, Owner{OwnerKind::Vd, id}, vd.state.activity, STEP_ABORTED);
    leaveArrayActivity(context, vd.info);
    removeVd(context, vd);
    endEmptyActivity(context, vd.info.DGID);
    reviewForeign(context);
    arbitrate(context);
    return KT_OK;
}

} // namespace sim
