#include "activities/rebuilding.h"

#include "activities/activities.h"
#include "media/blocks.h"
#include "raid/roles.h"
#include "raid/spares.h"
#include "state/due.h"
#include "state/events.h"

#include <algorithm>

namespace sim {

static int slotInNeed(const Group& group) {
    for (int i = 0; i < group.geometry.disks; ++i)
        if (group.needsDisk[static_cast<size_t>(i)]) return i;
    return -1;
}

// Whether the disk is in a slot of the group and holds anything that is not filled yet.
static bool isHalfFilled(const Context& context, const Group& group, KT_U16 pd) {
    for (const KT_U16 id : blocksFor(context, group, pd)) {
        const auto block = find<_Block_Info>(context, id);
        if (block && block->Status == BLOCK_REBUILDING) return true;
    }
    return false;
}

// Slots that an aborted rebuild left half filled count as needing a disk again.
static void reopenAborted(const Context& context, Group& group) {
    const Activity activity = activityOf(context, group.owner);
    if (activity.kind != KT_BGA_REBUILD || activity.state != KT_STATE_ABORTED) return;
    for (size_t i = 0; i < group.members.size(); ++i)
        if (isHalfFilled(context, group, group.members[i])) group.needsDisk[i] = true;
}

static KT_U8 checkRebuildTarget(const Context& context, const Group& group, KT_U16 pd, Disk& disk) {
    if (findDisk(context, pd, disk) != KT_OK) return KT_ERR_PD_MISSING;
    const KT_U8 raid = disk.state.raid;
    if (raid & KT_PD_OFFLINE) return KT_ERR_PD_MISSING;
    if (isMember(group, pd)) return KT_ERR_TARGET_IS_MEMBER;
    if (disk.info.HDType & KT_HD_ATAPI) return KT_ERR_ATAPI;
    const bool otherArrays = (raid & KT_PD_DEDICATED_SPARE) && disk.state.dgid != group.dgid;
    const bool taken =
        (raid & (KT_PD_FOREIGN | KT_PD_SPARE_IN_USE)) || ((raid & KT_PD_MEMBER) && !(raid & KT_PD_SPARE));
    if (otherArrays) return KT_ERR_ALREADY_ARRAY_SPARE;
    if (taken) return KT_ERR_PD_ASSIGNED;
    if (disk.state.hasOs) return KT_ERR_PD_HAS_OS;
    return checkFits(context, group, disk);
}

static void logSpareUsed(const Context& context, const Group& group, KT_U16 pd) {
    const auto disk = find<PdState>(context, pd);
    if (disk && (disk->raid & KT_PD_SPARE)) {
        logEvent(context, EVT_PD_SPARE_USED, pd, group.dgid == KT_NO_ID ? EventParams{} : EventParams{pd, group.dgid});
    }
}

void giveUpCopyBack(const Context& context, Owner owner) {
    if (activityOf(context, owner).kind == KT_BGA_COPY_BACK) failRebuild(context, owner);
}

static KT_U8 startOn(const Context& context, Group& group, const KT_U16* pds, int count) {
    KT_U64 work = 0;
    giveUpCopyBack(context, group.owner);
    for (int i = 0; i < count; ++i) {
        const int slot = slotInNeed(group);
        if (slot < 0) return KT_ERR_PD_COUNT;
        const Placed placed = placeMember(context, group, slot, pds[i], BLOCK_REBUILDING);
        if (placed.status != KT_OK) return placed.status;
        work = std::max(work, placed.work);
        group.members[static_cast<size_t>(slot)] = pds[i];
        group.needsDisk[static_cast<size_t>(slot)] = false;
        logSpareUsed(context, group, pds[i]);
    }
    startActivity(context, group.owner, KT_BGA_REBUILD, work, pds[0]);
    refreshGroup(context, group);
    if (work == 0) finishRebuild(context, group.owner);
    arbitrate(context);
    return KT_OK;
}

KT_U8 startVdRebuild(const Context& context, KT_U16 id, KT_U16 pd) {
    if (!(adapterInfo(context).Features & KT_FEATURE_REBUILD)) return KT_ERR_NOT_SUPPORTED;
    Vd vd = {};
    const KT_U8 status = findVd(context, id, vd);
    if (status != KT_OK) return status;
    if (vd.info.DGID != KT_NO_ID) return KT_ERR_NOT_ON_THIS_ADAPTER;
    if (!isRedundant(vd.info.RaidMode)) return KT_ERR_NOT_REDUNDANT;
    if (!isUsable(vd.info)) return KT_ERR_VD_NOT_READY;
    if (vd.info.Status == KT_VD_ONLINE) return KT_ERR_VD_FUNCTIONAL;
    if (isAlive(vd.state.activity)) return KT_ERR_VD_BUSY;
    Group group = groupOf(context, Owner{OwnerKind::Vd, id});
    reopenAborted(context, group);
    Disk disk = {};
    const KT_U8 target = checkRebuildTarget(context, group, pd, disk);
    if (target != KT_OK) return target;
    return slotInNeed(group) < 0 ? KT_U8{KT_ERR_VD_FUNCTIONAL} : startOn(context, group, &pd, 1);
}

KT_U8 startArrayRebuild(const Context& context, KT_U16 id, const KT_U16* pds, int count) {
    const _Adapter_Info adapter = adapterInfo(context);
    if (!isArrayBased(adapter)) return KT_ERR_NOT_ON_THIS_ADAPTER;
    if (!(adapter.Features & KT_FEATURE_REBUILD)) return KT_ERR_NOT_SUPPORTED;
    Array array = {};
    const KT_U8 status = findArray(context, id, array);
    if (status != KT_OK) return status;
    if (!isRedundant(array.info.RaidMode)) return KT_ERR_NOT_REDUNDANT;
    if (array.info.Status == ARRAY_OFFLINE) return KT_ERR_VD_NOT_READY;
    if (isAlive(array.state.activity)) return KT_ERR_ARRAY_BUSY;
    Group group = groupOf(context, Owner{OwnerKind::Array, id});
    reopenAborted(context, group);
    if (slotInNeed(group) < 0) return KT_ERR_VD_FUNCTIONAL;
    if (count < 1 || count > group.geometry.disks) return KT_ERR_PD_COUNT;
    for (int i = 0; i < count; ++i) {
        Disk disk = {};
        const KT_U8 target = checkRebuildTarget(context, group, pds[i], disk);
        if (target != KT_OK) return target;
        if (std::find(pds, pds + i, pds[i]) != pds + i) return KT_ERR_PD_COUNT;
    }
    return startOn(context, group, pds, count);
}

static bool autoRebuildOn(const Context& context) {
    return adapterConfig(context).AutoRebuildOn == 1 && (adapterInfo(context).Features & KT_FEATURE_REBUILD) != 0;
}

static bool copyBackOn(const Context& context) {
    return adapterConfig(context).CopyBackOn == 1 && (adapterInfo(context).Features & KT_FEATURE_COPY_BACK) != 0;
}

static void rebuildByItself(const Context& context, Owner owner) {
    Group group = groupOf(context, owner);
    if (!group.usable || !isRedundant(group.geometry.level) || activityOf(context, owner).kind != 0) return;
    for (int slot = slotInNeed(group); slot >= 0; slot = slotInNeed(group)) {
        const KT_U16 pd = chooseSpare(context, group, slot);
        if (pd != KT_NO_ID) {
            startOn(context, group, &pd, 1);
            return;
        }
        group.needsDisk[static_cast<size_t>(slot)] = false; // another slot may have its own disk back
    }
}

static void copyBackByItself(const Context& context, Owner owner) {
    const Group group = groupOf(context, owner);
    if (!group.usable || slotInNeed(group) >= 0 || activityOf(context, owner).kind != 0) return;
    const int slot = slotToCopyBack(context, group);
    if (slot < 0) return;
    const KT_U16 home = group.homes[static_cast<size_t>(slot)];
    const Placed placed = placeMember(context, group, slot, home, BLOCK_COPYING);
    if (placed.status != KT_OK) return;
    startActivity(context, owner, KT_BGA_COPY_BACK, placed.work, home);
    if (placed.work == 0) finishCopyBack(context, owner);
    arbitrate(context);
}

void engageSpares(const Context& context) {
    if (isDown(context)) return;
    const bool rebuilds = autoRebuildOn(context);
    const bool copies = copyBackOn(context);
    for (const Owner owner : allGroups(context)) {
        if (rebuilds) rebuildByItself(context, owner);
        if (copies) copyBackByItself(context, owner);
    }
}

// A spare is not relieved without copy back: it becomes a member like any other.
static void keepSpareAsMember(const Context& context, KT_U16 pd) {
    const auto disk = find<PdState>(context, pd);
    if (disk && (disk->raid & KT_PD_SPARE_IN_USE) && !copyBackOn(context)) dropSpareRole(context, pd);
}

void finishRebuild(const Context& context, Owner owner) {
    const Activity activity = activityOf(context, owner);
    const Group group = groupOf(context, owner);
    for (size_t slot = 0; slot < group.members.size(); ++slot) {
        bool rebuilt = false;
        for (const KT_U16 id : blocksFor(context, group, group.members[slot])) {
            auto block = find<_Block_Info>(context, id);
            if (!block || block->Status != BLOCK_REBUILDING) continue;
            block->Status = BLOCK_GOOD;
            updateBlock(context, *block);
            rebuilt = true;
        }
        const auto disk = find<PdState>(context, group.members[slot]);
        if (!rebuilt && group.members[slot] != activity.disk) continue;
        keepSpareAsMember(context, group.members[slot]);
        if (disk && (!(disk->raid & KT_PD_SPARE) || !copyBackOn(context)))
            setHome(context, group, static_cast<int>(slot), group.members[slot]);
    }
    dropActivity(context, owner);
    logActivity(context, owner, activity, STEP_COMPLETED);
    refreshGroup(context, group);
    engageSpares(context);
}

void finishCopyBack(const Context& context, Owner owner) {
    const Activity activity = activityOf(context, owner);
    const Group group = groupOf(context, owner);
    dropActivity(context, owner);
    logActivity(context, owner, activity, STEP_COMPLETED);
    for (size_t slot = 0; slot < group.members.size(); ++slot) {
        if (group.homes[slot] == activity.disk) adoptCopies(context, group, static_cast<int>(slot), activity.disk);
    }
    refreshGroup(context, group);
    engageSpares(context);
}

void loseTarget(const Context& context, Owner owner, KT_U16 pd) {
    Activity activity = activityOf(context, owner);
    Group group = groupOf(context, owner);
    if (activity.disk != pd && !isHalfFilled(context, group, pd)) return;
    removeMember(context, group, pd);
    if (activity.disk != pd) return;
    group = groupOf(context, owner);
    const auto other = std::find_if(group.members.begin(), group.members.end(),
                                    [&](KT_U16 member) { return isHalfFilled(context, group, member); });
    if (other == group.members.end()) return failRebuild(context, owner);
    activity.disk = *other;
    saveActivity(context, owner, activity);
}

void failRebuild(const Context& context, Owner owner) {
    const Activity activity = activityOf(context, owner);
    dropActivity(context, owner);
    if (isAlive(activity)) logActivity(context, owner, activity, STEP_FAILED);
    std::vector<KT_U16> targets = groupOf(context, owner).members;
    targets.push_back(activity.disk);
    for (const KT_U16 pd : targets) {
        const Group group = groupOf(context, owner);
        if (pd == activity.disk || isHalfFilled(context, group, pd)) removeMember(context, group, pd);
    }
}

} // namespace sim
