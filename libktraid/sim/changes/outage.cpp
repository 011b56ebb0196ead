#include "changes/outage.h"

#include "activities/activities.h"
#include "activities/activityProgress.h"
#include "activities/rebuilding.h"
#include "changes/foreign.h"
#include "media/blocks.h"
#include "raid/roles.h"
#include "raid/spares.h"
#include "state/due.h"

#include <algorithm>
#include <cstring>

namespace sim {

std::vector<Owner> groupsOn(const Context& context, const std::vector<KT_U16>& pds) {
    std::vector<Owner> owners;
    for (const Owner owner : allGroups(context)) {
        const Group group = groupOf(context, owner);
        const bool has = std::any_of(pds.begin(), pds.end(), [&](KT_U16 pd) {
            const bool member = std::find(group.members.begin(), group.members.end(), pd) != group.members.end();
            return member || !blocksFor(context, group, pd).empty();
        });
        if (has) owners.push_back(owner);
    }
    return owners;
}

// Blocks that are still being filled hold nothing worth keeping: they are removed when their rebuild fails.
static void setBlocksOffline(const Context& context, KT_U16 pd) {
    const _HD_Block_Info list = blocksOf(context, pd);
    for (int i = 0; i < list.BlkCount; ++i) {
        auto block = find<_Block_Info>(context, list.BlkIDs[i]);
        if (!block || block->Status != BLOCK_GOOD) continue;
        block->Status = BLOCK_OFFLINE;
        updateBlock(context, *block);
    }
}

static bool isRebuildLike(const Activity& activity) {
    return activity.kind == KT_BGA_REBUILD || activity.kind == KT_BGA_COPY_BACK;
}

// Whether the copy back reads from the disk: the disk is in the slot that is copied, or was and has left it.
static bool isCopiedFrom(const Group& group, const Activity& activity, KT_U16 pd) {
    for (size_t i = 0; activity.kind == KT_BGA_COPY_BACK && i < group.members.size(); ++i)
        if (group.homes[i] == activity.disk) return group.members[i] == pd || group.members[i] == KT_NO_ID;
    return false;
}

void failOwnActivity(const Context& context, KT_U16 vd) {
    const Owner owner{OwnerKind::Vd, vd};
    const Activity activity = activityOf(context, owner);
    if (activity.kind == 0 || isRebuildLike(activity) || activity.kind == KT_BGA_MIGRATION) return;
    dropActivity(context, owner);
    if (isAlive(activity)) logActivity(context, owner, activity, STEP_FAILED);
}

// Initialisations and checks of the group fail without the disk, unless the adapter is down: the disk may be back
// before it notices. A rebuild or copy back fails when it needs the disk.
static void failActivities(const Context& context, const Group& group, KT_U16 pd) {
    for (const KT_U16 vd : group.vds)
        if (!isDown(context)) failOwnActivity(context, vd);
    const Activity activity = activityOf(context, group.owner);
    if (isRebuildLike(activity)) loseTarget(context, group.owner, pd);
    if (isCopiedFrom(group, activity, pd)) failRebuild(context, group.owner);
}

// A migration writes to new disks too: its virtual disks may be offline for want of those while the array still works.
static bool canGoOn(const Context& context, Owner owner, const Activity& activity) {
    const Group group = groupOf(context, owner);
    const auto isOffline = [&](KT_U16 id) {
        const auto vd = find<_LD_Info>(context, id);
        return vd && vd->Status == KT_VD_OFFLINE;
    };
    return group.usable &&
           (activity.kind != KT_BGA_MIGRATION || std::none_of(group.vds.begin(), group.vds.end(), isOffline));
}

// Rebuilds and copies fail when their group goes offline; what runs is interrupted until it works again.
static void interruptActivities(const Context& context, const Group& group) {
    Activity activity = activityOf(context, group.owner);
    if (!isAlive(activity) || canGoOn(context, group.owner, activity)) return;
    if (isRebuildLike(activity)) return failRebuild(context, group.owner);
    // An activity that somebody paused or stopped keeps that state.
    if (activity.state != KT_STATE_RUNNING && activity.state != KT_STATE_AUTO_PAUSED) return;
    if (activity.state == KT_STATE_RUNNING) logActivity(context, group.owner, activity, STEP_AUTO_PAUSED);
    activity.done = activityDone(activity, context.now);
    activity.since = context.now;
    activity.state = KT_STATE_INTERRUPTED;
    saveActivity(context, group.owner, activity);
}

void failPatrol(const Context& context, KT_U16 pd) {
    const Owner owner{OwnerKind::Disk, pd};
    const Activity activity = activityOf(context, owner);
    if (activity.kind == 0) return;
    dropActivity(context, owner);
    if (isAlive(activity)) logActivity(context, owner, activity, STEP_FAILED);
}

void followUp(const Context& context, const std::vector<Owner>& owners, const std::vector<KT_U16>& pds) {
    for (const Owner owner : owners) {
        for (const KT_U16 pd : pds)
            failActivities(context, groupOf(context, owner), pd);
        const Group group = groupOf(context, owner);
        refreshGroup(context, group);
        interruptActivities(context, group);
    }
    if (!owners.empty()) forgetTold(context);
    reviewForeign(context);
    engageSpares(context);
    arbitrate(context);
}

// A spare that its port's lock takes away stands by again when that is opened, as it has to be after each boot.
static bool keepsStandingBy(const Context& context, KT_U16 pd) {
    const auto disk = find<PdState>(context, pd);
    const bool locked = find<DiskCipher>(context, pd).value_or(DiskCipher{}).offline != 0;
    return locked && disk && !(disk->raid & KT_PD_SPARE_IN_USE);
}

void loseDisks(const Context& context, const std::vector<KT_U16>& pds) {
    const std::vector<Owner> owners = groupsOn(context, pds);
    const KT_U64 loss = beginLoss(context);
    for (const KT_U16 pd : pds) {
        Disk disk = {};
        if (findDisk(context, pd, disk) != KT_OK) continue;
        failPatrol(context, pd);
        if (!keepsStandingBy(context, pd)) dropSpareRole(context, pd);
        findDisk(context, pd, disk);
        disk.state.raid |= KT_PD_OFFLINE;
        disk.state.left = loss;
        disk.state.config.Online = 0;
        saveDisk(context, disk);
        setBlocksOffline(context, pd);
    }
    followUp(context, owners, pds);
}

static KT_U16 slotOf(const _LD_Info& vd, KT_U16 block) {
    const KT_U16* slot = std::find(std::begin(vd.BlockIDs), std::end(vd.BlockIDs), block);
    return slot == std::end(vd.BlockIDs) ? KT_U16{KT_NO_ID} : static_cast<KT_U16>(slot - vd.BlockIDs);
}

PulledBlocks rememberBlocks(const Context& context, KT_U16 pd) {
    if (const auto before = find<PulledBlocks>(context, pd)) return *before;
    PulledBlocks pulled = {};
    const PdState state = find<PdState>(context, pd).value_or(PdState{});
    const DgState array = find<DgState>(context, state.dgid).value_or(DgState{});
    pulled.raid = state.raid;
    pulled.left = state.raid & KT_PD_OFFLINE ? state.left : lastLoss(context) + 1;
    pulled.dgid = state.dgid;
    const KT_U16* members = array.members;
    pulled.slot = static_cast<KT_U16>(std::find(members, members + array.memberCount, pd) - members);
    const _HD_Block_Info list = blocksOf(context, pd);
    for (int i = 0; i < list.BlkCount; ++i) {
        const auto block = find<_Block_Info>(context, list.BlkIDs[i]);
        const auto vd = block ? find<_LD_Info>(context, block->LDID) : std::nullopt;
        if (!vd) continue;
        const auto target = find<VdTarget>(context, vd->ID);
        const KT_U16 slot = slotOf(*vd, block->ID);
        const KT_U16 targetSlot = target ? slotOf(target->info, block->ID) : KT_U16{KT_NO_ID};
        if (slot == KT_NO_ID && targetSlot == KT_NO_ID) continue;
        PulledBlock& entry = pulled.entries[pulled.count++];
        entry.block = *block;
        entry.slot = slot;
        entry.target = targetSlot == KT_NO_ID ? KT_U16{0} : static_cast<KT_U16>(targetSlot + 1);
        memcpy(entry.guid, vd->LD_GUID, sizeof entry.guid);
    }
    return pulled;
}

std::vector<Owner> detach(const Context& context, KT_U16 pd) {
    std::vector<Owner> owners = groupsOn(context, {pd});
    for (const Owner owner : owners)
        removeMember(context, groupOf(context, owner), pd);
    return owners;
}

static bool isEmptySlot(const _LD_Info& vd, KT_U16 slot) {
    return slot < geometryOf(vd).disks && vd.BlockIDs[slot] == KT_NO_ID;
}

// Whether the virtual disk has waited for this block: it is foreign, or was not written to since the disk left, being
// offline or on an adapter that is down; and nothing else is in the place.
static bool isAwaited(const Context& context, KT_U16 pd, const PulledBlock& entry, KT_U64 left) {
    const auto vd = vdWithGuid(context, entry.guid);
    if (!vd || entry.block.Status == BLOCK_REBUILDING) return false;
    if (vd->Status != KT_VD_OFFLINE && !isForeign(*vd) && !wasLostDown(context, left)) return false;
    const KT_U64 offline = find<VdState>(context, vd->ID).value_or(VdState{}).offline;
    if (vd->Status == KT_VD_OFFLINE && left < offline) return false;
    const auto target = entry.target ? find<VdTarget>(context, vd->ID) : std::nullopt;
    if (entry.slot != KT_NO_ID && !isEmptySlot(*vd, entry.slot)) return false;
    if (entry.target && !(target && isEmptySlot(target->info, static_cast<KT_U16>(entry.target - 1)))) return false;
    return isFreeSpace(context, pd, entry.block.StartLBA, entry.block.Size);
}

static bool rejoinVd(const Context& context, KT_U16 pd, const PulledBlock& entry, KT_U64 left) {
    auto vd = vdWithGuid(context, entry.guid);
    if (!vd || !isAwaited(context, pd, entry, left)) return false;
    _Block_Info block = entry.block;
    block.HDID = pd;
    block.LDID = vd->ID;
    block.Status = BLOCK_GOOD;
    const KT_U16 id = addBlock(context, block);
    if (id == KT_NO_ID) return false;
    if (entry.slot != KT_NO_ID) vd->BlockIDs[entry.slot] = id;
    save(context, vd->ID, *vd);
    auto target = entry.target ? find<VdTarget>(context, vd->ID) : std::nullopt;
    if (!target) return true;
    target->info.BlockIDs[entry.target - 1] = id;
    save(context, vd->ID, *target);
    return true;
}

// A member comes back as a whole, with the blocks of every virtual disk of the array, or not at all. Whether something
// was written without it is its virtual disks' to say: in a migration they may be offline while the array still works.
static bool rejoinArray(const Context& context, KT_U16 pd, const PulledBlocks& blocks) {
    Array array = {};
    if (!(blocks.raid & KT_PD_MEMBER) || findArray(context, blocks.dgid, array) != KT_OK) return false;
    // A disk that the array migrates to has no slot in it yet.
    const bool arriving = blocks.slot >= array.state.memberCount;
    if (!arriving && array.state.members[blocks.slot] != KT_NO_ID) return false;
    const size_t vds = groupOf(context, Owner{OwnerKind::Array, blocks.dgid}).vds.size();
    const bool waits = array.info.Status == ARRAY_OFFLINE || wasLostDown(context, blocks.left);
    if (!arriving && vds == 0 && !waits) return false;
    const auto awaits = [&](const PulledBlock& entry) { return isAwaited(context, pd, entry, blocks.left); };
    if (blocks.count != vds || !std::all_of(blocks.entries, blocks.entries + blocks.count, awaits)) return false;
    if (arriving) return blocks.count != 0;
    array.state.members[blocks.slot] = pd;
    listMembers(array);
    saveArray(context, array);
    return true;
}

static void putBlocksBack(const Context& context, KT_U16 pd, const PulledBlocks& blocks) {
    erase<PulledBlocks>(context, pd);
    if (find<PdState>(context, pd).value_or(PdState{}).raid & KT_PD_SPARE) return;
    const bool asMember = rejoinArray(context, pd, blocks);
    const bool inArray = blocks.dgid != KT_NO_ID && (blocks.raid & KT_PD_MEMBER);
    KT_U8 role = asMember ? KT_PD_MEMBER : 0;
    for (int i = 0; i < blocks.count; ++i) {
        const auto vd = vdWithGuid(context, blocks.entries[i].guid);
        const bool foreign = !vd || isForeign(*vd);
        if ((foreign || asMember || !inArray) && rejoinVd(context, pd, blocks.entries[i], blocks.left))
            role |= foreign ? KT_PD_FOREIGN : KT_PD_MEMBER;
    }
    if (role == 0 && isStale(context, blocks)) {
        role = KT_PD_FOREIGN;
        save(context, pd, blocks);
    }
    Disk disk = {};
    if (findDisk(context, pd, disk) != KT_OK) return;
    disk.state.raid = static_cast<KT_U8>((disk.state.raid & KT_PD_OFFLINE) | role);
    disk.state.dgid = asMember ? blocks.dgid : KT_U16{KT_NO_ID};
    saveDisk(context, disk);
    if ((disk.state.raid & KT_PD_NOT_FREE) == 0 && blocks.count) becomeFree(context, pd);
}

void resumeInterrupted(const Context& context, const std::vector<Owner>& owners) {
    for (const Owner owner : owners) {
        Activity activity = activityOf(context, owner);
        if (activity.state != KT_STATE_INTERRUPTED || !canGoOn(context, owner, activity)) continue;
        activity.state = KT_STATE_AUTO_PAUSED;
        saveActivity(context, owner, activity);
    }
}

void rejoin(const Context& context, const std::vector<Returning>& disks) {
    std::vector<KT_U16> pds;
    for (const Returning& disk : disks) {
        putBlocksBack(context, disk.pd, disk.blocks);
        pds.push_back(disk.pd);
    }
    const std::vector<Owner> owners = groupsOn(context, pds);
    for (const Owner owner : owners)
        refreshGroup(context, groupOf(context, owner));
    resumeInterrupted(context, owners);
    reviewForeign(context);
}

static KT_U8 checkDown(const Context& context, KT_U16 pd) {
    Disk disk = {};
    const KT_U8 status = findDisk(context, pd, disk);
    if (status != KT_OK) return status;
    if (!(disk.state.raid & KT_PD_OFFLINE)) return KT_ERR_PD_NOT_OFFLINE;
    return disk.state.health == PD_FAILED ? KT_U8{KT_ERR_LINK_TIMEOUT} : KT_U8{KT_OK};
}

static void comeUp(const Context& context, std::vector<Returning>& disks) {
    std::vector<KT_U16> pds;
    for (const Returning& disk : disks)
        pds.push_back(disk.pd);
    const std::vector<Owner> owners = groupsOn(context, pds);
    for (const KT_U16 pd : pds) {
        detach(context, pd);
        Disk disk = {};
        findDisk(context, pd, disk);
        disk.state.raid &= static_cast<KT_U8>(~KT_PD_OFFLINE);
        disk.state.config.Online = 1;
        saveDisk(context, disk);
    }
    rejoin(context, disks);
    for (const Returning& each : disks) {
        Disk disk = {};
        findDisk(context, each.pd, disk);
        // rejoin() has logged it of disks that held blocks.
        if (each.blocks.count == 0 && (disk.state.raid & KT_PD_NOT_FREE) == 0) becomeFree(context, each.pd);
        if (disk.state.raid & KT_PD_SPARE) logEvent(context, EVT_PD_SPARE_ASSIGNED, each.pd);
    }
    followUp(context, owners, {});
}

void bringDisksUp(const Context& context, const std::vector<KT_U16>& pds) {
    std::vector<Returning> disks;
    for (const KT_U16 pd : pds)
        if (checkDown(context, pd) == KT_OK) disks.push_back(Returning{pd, rememberBlocks(context, pd)});
    comeUp(context, disks);
}

KT_U8 bringDiskUp(const Context& context, KT_U16 pd, bool emptied) {
    const KT_U8 status = checkDown(context, pd);
    if (status != KT_OK) return status;
    std::vector<Returning> disk = {Returning{pd, rememberBlocks(context, pd)}};
    if (emptied) {
        disk[0].blocks.raid = disk[0].blocks.count = 0;
        disk[0].blocks.dgid = KT_NO_ID;
    }
    comeUp(context, disk);
    return KT_OK;
}

} // namespace sim
