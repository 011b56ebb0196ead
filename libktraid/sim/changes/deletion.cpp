#include "changes/deletion.h"

#include "activities/activityProgress.h"
#include "activities/jobs.h"
#include "changes/arrays.h"
#include "changes/foreign.h"
#include "media/blocks.h"
#include "state/events.h"

#include <algorithm>

namespace sim {

static bool isArrayMember(const Context& context, KT_U16 dgid, KT_U16 pd) {
    const auto array = dgid == KT_NO_ID ? std::nullopt : find<DgState>(context, dgid);
    if (!array) return false;
    const KT_U16* end = array->members + std::min<int>(array->memberCount, MAX_MEMBERS);
    return std::find(array->members, end, pd) != end;
}

static bool isArraySpare(const Context& context, KT_U16 dgid, KT_U16 pd) {
    const auto array = dgid == KT_NO_ID ? std::nullopt : find<_DG_Info>(context, dgid);
    if (!array) return false;
    return std::find(std::begin(array->SparePDIDs), std::end(array->SparePDIDs), pd) != std::end(array->SparePDIDs);
}

void becomeFree(const Context& context, KT_U16 pd) {
    erase<ArrayLabel>(context, pd);
    logEvent(context, EVT_PD, 54, pd, SEV_INFO);
}

void releaseDisk(const Context& context, KT_U16 pd) {
    Disk disk = {};
    if (pd == KT_NO_ID || findDisk(context, pd, disk) != KT_OK) return;
    const KT_U8 before = disk.state.raid;
    const bool member = isArrayMember(context, disk.state.dgid, pd);
    if (!member && blocksOf(context, pd).BlkCount == 0)
        disk.state.raid &= static_cast<KT_U8>(~(KT_PD_MEMBER | KT_PD_SPARE_IN_USE | KT_PD_FOREIGN));
    if ((disk.state.raid & KT_PD_DEDICATED_SPARE) && !isArraySpare(context, disk.state.dgid, pd)) {
        disk.state.raid &= static_cast<KT_U8>(~KT_PD_DEDICATED_SPARE);
        logEvent(context, EVT_PD, 10, pd, SEV_INFO);
    }
    if (!member && !(disk.state.raid & KT_PD_DEDICATED_SPARE)) disk.state.dgid = KT_NO_ID;
    saveDisk(context, disk);
    const Owner owner{OwnerKind::Disk, pd};
    if (disk.state.patrol.kind && !(disk.state.raid & (KT_PD_MEMBER | KT_PD_SPARE))) {
        logJob(context, owner, disk.state.patrol, STEP_ABORTED);
        dropJob(context, owner);
    }
    const bool standsBy = (before & KT_PD_SPARE_IN_USE) && !(disk.state.raid & KT_PD_SPARE_IN_USE);
    if (standsBy && (disk.state.raid & KT_PD_SPARE)) logEvent(context, EVT_PD, 59, pd, SEV_INFO);
    const bool isFree = (disk.state.raid & KT_PD_NOT_FREE) == 0;
    if (isFree && (before & KT_PD_NOT_FREE) != 0) becomeFree(context, pd);
}

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
    erase<_LD_Info>(context, vd.info.ID);
    erase<VdState>(context, vd.info.ID);
    erase<VdTarget>(context, vd.info.ID);
    if (vd.info.DGID != KT_NO_ID) freeSlot(context, vd.info.DGID, vd.info.ID);
    logEvent(context, EVT_VD, 3, vd.info.ID, SEV_INFO, 0, 0, 0, isHybridLevel(vd.info.RaidMode) ? 1 : 0);
    for (const KT_U16 disk : disks)
        releaseDisk(context, disk);
}

// Whether the array's activity moves or fills anything of the virtual disk.
static bool isWorkedOn(const Context& context, const _LD_Info& vd, const Activity& job) {
    if (find<VdTarget>(context, vd.ID)) return true;
    const _HD_Block_Info list = blocksOf(context, job.disk);
    return std::any_of(list.BlkIDs, list.BlkIDs + list.BlkCount, [&](KT_U16 id) {
        const auto block = find<_Block_Info>(context, id);
        return block && block->LDID == vd.ID && block->Status != BLOCK_GOOD;
    });
}

// What is done for the array as a whole ends for this virtual disk; the array has that much less to do.
static void spareWork(const Context& context, const _LD_Info& vd) {
    const Owner owner{OwnerKind::Array, vd.DGID};
    Activity job = jobOf(context, owner);
    if (vd.DGID == KT_NO_ID || job.kind == 0 || job.work == 0 || !isWorkedOn(context, vd, job)) return;
    if (job.state != KT_STATE_ABORTED) logJob(context, Owner{OwnerKind::Vd, vd.ID}, job, STEP_ABORTED);
    const KT_U64 share = shareOf(context, vd) * (job.kind == KT_BGA_MIGRATION ? 2 : 1);
    const double part = static_cast<double>(activityDone(job, context.now)) / static_cast<double>(job.work);
    job.work -= std::min(job.work, share);
    job.done = static_cast<KT_U64>(static_cast<double>(job.work) * part);
    job.since = context.now;
    saveJob(context, owner, job);
}

// A rebuild or copy back of an array that has no virtual disk left has nothing more to do.
static void endEmptyJob(const Context& context, KT_U16 dgid) {
    Array array = {};
    if (dgid == KT_NO_ID || findArray(context, dgid, array) != KT_OK) return;
    const bool empty = array.info.RemainingManagedSpace == array.info.TotalManagedSpace;
    if (empty && isAlive(array.state.activity)) completeJob(context, Owner{OwnerKind::Array, dgid});
}

KT_U8 deleteVd(const Context& context, KT_U16 id, bool stopActivity) {
    Vd vd = {};
    const KT_U8 status = findVd(context, id, vd);
    if (status != KT_OK) return status;
    if (runsSystem(vd)) return KT_ERR_VD_HAS_OS;
    const Activity job = shownActivity(context, vd);
    if (isUsable(vd.info) && isAlive(job)) {
        const bool arrays = vd.info.DGID != KT_NO_ID && vd.state.activity.kind != job.kind;
        if (arrays && job.kind == KT_BGA_MIGRATION) return KT_ERR_ARRAY_BUSY;
        if (!stopActivity) return KT_ERR_VD_BUSY;
    }
    const bool ends = isAlive(vd.state.activity) && vd.state.activity.state != KT_STATE_ABORTED;
    if (ends) logJob(context, Owner{OwnerKind::Vd, id}, vd.state.activity, STEP_ABORTED);
    spareWork(context, vd.info);
    removeVd(context, vd);
    endEmptyJob(context, vd.info.DGID);
    reviewForeign(context);
    arbitrate(context);
    return KT_OK;
}

} // namespace sim
