#include "changes/health.h"

#include "activities/activityProgress.h"
#include "activities/rebuilding.h"
#include "changes/deletion.h"
#include "changes/diskIds.h"
#include "changes/foreign.h"
#include "changes/spares.h"
#include "devices/encryption.h"
#include "devices/peripherals.h"
#include "media/blocks.h"
#include "media/life.h"
#include "media/surface.h"
#include "raid/members.h"
#include "state/events.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace sim {

// The groups that have something on the disk, or count it among their members.
static std::vector<Owner> groupsOn(const Context& context, KT_U16 pd) {
    std::vector<Owner> owners;
    for (const Owner owner : allGroups(context)) {
        const Group group = groupOf(context, owner);
        const bool member = std::find(group.members.begin(), group.members.end(), pd) != group.members.end();
        if (member || !blocksFor(context, group, pd).empty()) owners.push_back(owner);
    }
    return owners;
}

// What was still being filled has nothing to come back with: it goes with the rebuild.
static void setBlocksOffline(const Context& context, KT_U16 pd) {
    const _HD_Block_Info list = blocksOf(context, pd);
    for (int i = 0; i < std::min<int>(list.BlkCount, MAX_MEMBERS); ++i) {
        auto block = find<_Block_Info>(context, list.BlkIDs[i]);
        if (!block || block->Status != BLOCK_GOOD) continue;
        block->Status = BLOCK_OFFLINE;
        updateBlock(context, *block);
    }
}

static bool isRebuildLike(const Activity& job) {
    return job.kind == KT_BGA_REBUILD || job.kind == KT_BGA_COPY_BACK;
}

// Whether a copy back reads from the disk: it is, or was, in the place that it fills.
static bool isCopiedFrom(const Group& group, const Activity& job, KT_U16 pd) {
    for (size_t i = 0; job.kind == KT_BGA_COPY_BACK && i < group.members.size(); ++i)
        if (group.homes[i] == job.disk) return group.members[i] == pd || group.members[i] == KT_NO_ID;
    return false;
}

// Initialisations and checks cannot go on without the disk; nor can what is being written to it.
static void failJobs(const Context& context, const Group& group, KT_U16 pd) {
    for (const KT_U16 vd : group.vds) {
        const Owner owner{OwnerKind::Vd, vd};
        const Activity job = jobOf(context, owner);
        if (job.kind == 0 || isRebuildLike(job) || job.kind == KT_BGA_MIGRATION) continue;
        dropJob(context, owner);
        if (isAlive(job)) logJob(context, owner, job, STEP_FAILED);
    }
    const Activity job = jobOf(context, group.owner);
    if (isRebuildLike(job)) loseTarget(context, group.owner, pd);
    if (isCopiedFrom(group, job, pd)) failRebuild(context, group.owner);
}

// A migration also needs the disks it moves to, without which an array's own members may do.
static bool canGoOn(const Context& context, Owner owner, const Activity& job) {
    const Group group = groupOf(context, owner);
    const auto isOffline = [&](KT_U16 id) {
        const auto vd = find<_LD_Info>(context, id);
        return vd && vd->Status == KT_VD_OFFLINE;
    };
    return group.usable &&
           (job.kind != KT_BGA_MIGRATION || std::none_of(group.vds.begin(), group.vds.end(), isOffline));
}

// What cannot run on an offline virtual disk.
static void interruptJobs(const Context& context, const Group& group) {
    Activity job = jobOf(context, group.owner);
    if (!isAlive(job) || canGoOn(context, group.owner, job)) return;
    if (isRebuildLike(job)) return failRebuild(context, group.owner);
    // What somebody paused or stopped stays so.
    if (job.state != KT_STATE_RUNNING && job.state != KT_STATE_AUTO_PAUSED) return;
    job.done = activityDone(job, context.now);
    job.since = context.now;
    job.state = KT_STATE_INTERRUPTED;
    saveJob(context, group.owner, job);
}

static void failPatrol(const Context& context, KT_U16 pd) {
    const Owner owner{OwnerKind::Disk, pd};
    const Activity job = jobOf(context, owner);
    if (job.kind == 0) return;
    dropJob(context, owner);
    if (isAlive(job)) logJob(context, owner, job, STEP_FAILED);
}

// Another loss: what is of no use for it is worth telling.
static void forgetTold(const Context& context) {
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

static void followUp(const Context& context, const std::vector<Owner>& owners, KT_U16 pd) {
    for (const Owner owner : owners) {
        const Group group = groupOf(context, owner);
        failJobs(context, group, pd);
        refreshGroup(context, group);
        interruptJobs(context, group);
    }
    if (!owners.empty()) forgetTold(context);
    reviewForeign(context);
    engageSpares(context);
    arbitrate(context);
}

void loseDisk(const Context& context, KT_U16 pd) {
    Disk disk = {};
    if (findDisk(context, pd, disk) != KT_OK) return;
    const std::vector<Owner> owners = groupsOn(context, pd);
    failPatrol(context, pd);
    dropSpareRole(context, pd);
    findDisk(context, pd, disk);
    disk.state.raid |= KT_PD_OFFLINE;
    disk.state.left = context.now;
    disk.state.config.Online = 0;
    saveDisk(context, disk);
    setBlocksOffline(context, pd);
    followUp(context, owners, pd);
}

KT_U8 failDisk(const Context& context, KT_U16 pd) {
    Disk disk = {};
    if (findDisk(context, pd, disk) != KT_OK || disk.state.health == PD_FAILED) return KT_ERR_PD_MISSING;
    disk.state.health = PD_FAILED;
    saveDisk(context, disk);
    logEvent(context, EVT_PD, 4, pd, SEV_MAJOR);
    if (disk.state.raid & KT_PD_OFFLINE) return KT_OK;
    logEvent(context, EVT_PD, 2, pd, SEV_CRITICAL);
    loseDisk(context, pd);
    return KT_OK;
}

static KT_U16 slotOf(const _LD_Info& vd, KT_U16 block) {
    const KT_U16* slot = std::find(std::begin(vd.BlockIDs), std::end(vd.BlockIDs), block);
    return slot == std::end(vd.BlockIDs) ? KT_U16{KT_NO_ID} : static_cast<KT_U16>(slot - vd.BlockIDs);
}

// What a disk held when it left the virtual disks it belonged to.
static PulledBlocks rememberBlocks(const Context& context, KT_U16 pd) {
    PulledBlocks pulled = {};
    const PdState state = find<PdState>(context, pd).value_or(PdState{});
    const DgState array = find<DgState>(context, state.dgid).value_or(DgState{});
    pulled.raid = state.raid;
    pulled.left = state.raid & KT_PD_OFFLINE ? state.left : context.now;
    pulled.dgid = state.dgid;
    const KT_U16* members = array.members;
    pulled.slot = static_cast<KT_U16>(std::find(members, members + array.memberCount, pd) - members);
    const _HD_Block_Info list = blocksOf(context, pd);
    for (int i = 0; i < std::min<int>(list.BlkCount, MAX_MEMBERS); ++i) {
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

// Takes the disk out of everything, leaving it without blocks.
static std::vector<Owner> detach(const Context& context, KT_U16 pd) {
    std::vector<Owner> owners = groupsOn(context, pd);
    for (const Owner owner : owners)
        removeMember(context, groupOf(context, owner), pd);
    return owners;
}

KT_U8 pullDisk(const Context& context, KT_U16 pd) {
    Disk disk = {};
    if (findDisk(context, pd, disk) != KT_OK) return KT_ERR_PD_MISSING;
    const PulledBlocks blocks = rememberBlocks(context, pd);
    logEvent(context, EVT_PD, 0, pd, SEV_MAJOR);
    failPatrol(context, pd);
    dropSpareRole(context, pd);
    findDisk(context, pd, disk);
    powerOff(context, pd);
    save(context, pd, PulledDisk{disk.info, disk.state});
    save(context, pd, blocks);
    const std::vector<Owner> owners = groupsOn(context, pd);
    erase<_HD_Info>(context, pd);
    erase<PdState>(context, pd);
    for (const Owner owner : owners)
        removeMember(context, groupOf(context, owner), pd);
    followUp(context, owners, pd);
    return KT_OK;
}

static bool isEmptySlot(const _LD_Info& vd, KT_U16 slot) {
    return slot < geometryOf(vd).disks && vd.BlockIDs[slot] == KT_NO_ID;
}

// Whether the virtual disk has waited for this block: it is foreign, or offline and was not written to since the disk
// left; and nothing else is in the place.
static bool isAwaited(const Context& context, KT_U16 pd, const PulledBlock& entry, KT_U64 left) {
    const auto vd = vdWithGuid(context, entry.guid);
    if (!vd || entry.block.Status == BLOCK_REBUILDING) return false;
    if (vd->Status != KT_VD_OFFLINE && !isForeign(*vd)) return false;
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

// A member comes back as a whole, with the blocks of every virtual disk of the array, or not at all.
static bool rejoinArray(const Context& context, KT_U16 pd, const PulledBlocks& blocks) {
    Array array = {};
    if (!(blocks.raid & KT_PD_MEMBER) || findArray(context, blocks.dgid, array) != KT_OK) return false;
    // A disk that the array migrates to has no slot in it yet.
    const bool arriving = blocks.slot >= array.state.memberCount;
    if (!arriving && (array.info.Status != ARRAY_OFFLINE || array.state.members[blocks.slot] != KT_NO_ID ||
                      array.state.homes[blocks.slot] != pd))
        return false;
    const size_t vds = groupOf(context, Owner{OwnerKind::Array, blocks.dgid}).vds.size();
    const auto awaits = [&](const PulledBlock& entry) { return isAwaited(context, pd, entry, blocks.left); };
    if (blocks.count != vds || !std::all_of(blocks.entries, blocks.entries + blocks.count, awaits)) return false;
    if (arriving) return blocks.count != 0;
    array.state.members[blocks.slot] = pd;
    listMembers(array);
    saveArray(context, array);
    return true;
}

// The disk, free of blocks, goes back to what still waits for it; else it is a free disk.
static void rejoin(const Context& context, KT_U16 pd, const PulledBlocks& blocks) {
    const bool asMember = rejoinArray(context, pd, blocks);
    const bool inArray = blocks.dgid != KT_NO_ID && (blocks.raid & KT_PD_MEMBER);
    KT_U8 role = asMember ? KT_PD_MEMBER : 0;
    for (int i = 0; i < blocks.count; ++i) {
        const auto vd = vdWithGuid(context, blocks.entries[i].guid);
        const bool foreign = !vd || isForeign(*vd);
        if ((foreign || asMember || !inArray) && rejoinVd(context, pd, blocks.entries[i], blocks.left))
            role |= foreign ? KT_PD_FOREIGN : KT_PD_MEMBER;
    }
    Disk disk = {};
    if (findDisk(context, pd, disk) != KT_OK) return;
    disk.state.raid = static_cast<KT_U8>((disk.state.raid & KT_PD_OFFLINE) | role);
    disk.state.dgid = asMember ? blocks.dgid : KT_U16{KT_NO_ID};
    saveDisk(context, disk);
    if ((disk.state.raid & KT_PD_NOT_FREE) == 0 && blocks.count) becomeFree(context, pd);
    for (const Owner owner : groupsOn(context, pd)) {
        refreshGroup(context, groupOf(context, owner));
        Activity job = jobOf(context, owner);
        if (job.state != KT_STATE_INTERRUPTED || !canGoOn(context, owner, job)) continue;
        job.state = KT_STATE_AUTO_PAUSED;
        saveJob(context, owner, job);
    }
    reviewForeign(context);
}

KT_U8 insertDisk(const Context& context, KT_U16 known) {
    const KT_U16 pd = idOnReturn(context, known);
    const auto pulled = find<PulledDisk>(context, pd);
    if (!pulled || find<_HD_Info>(context, pd)) return KT_ERR_PD_MISSING;
    const PulledBlocks blocks = find<PulledBlocks>(context, pd).value_or(PulledBlocks{});
    erase<PulledDisk>(context, pd);
    erase<PulledBlocks>(context, pd);
    save(context, pd, pulled->info);
    powerOn(context, pd);
    PdState state = pulled->state;
    state.raid = state.health == PD_FAILED ? KT_PD_OFFLINE : 0;
    state.config.Online = state.health == PD_FAILED ? 0 : 1;
    state.dgid = KT_NO_ID;
    state.toldTooSmall = 0;
    save(context, pd, state);
    logEvent(context, EVT_PD, 1, pd, SEV_INFO);
    if (state.health == PD_FAILED) return KT_OK;
    rejoin(context, pd, blocks);
    reviewDiskCipher(context, pd);
    if (blocks.raid & KT_PD_GLOBAL_SPARE && !(blocks.raid & KT_PD_MEMBER)) makeGlobalSpare(context, pd);
    if (blocks.raid & KT_PD_DEDICATED_SPARE && !(blocks.raid & KT_PD_MEMBER))
        makeDedicatedSpare(context, pd, blocks.dgid);
    engageSpares(context);
    arbitrate(context);
    return KT_OK;
}

// The next serial number of the same make.
static void renumber(const Context& context, _HD_Info& disk) {
    const KT_U64 sequence = lastRow(context.store, context.adapter, KIND_EVENT).value_or(0) + 1;
    size_t length = strnlen(reinterpret_cast<const char*>(disk.SerialNo), sizeof disk.SerialNo);
    char tail[9];
    const int digits = snprintf(tail, sizeof tail, "%06X", static_cast<unsigned>(sequence & 0xFFFFFF));
    if (length < static_cast<size_t>(digits)) length = static_cast<size_t>(digits);
    memcpy(disk.SerialNo + length - digits, tail, static_cast<size_t>(digits));
    disk.WWN[5] = disk.Link.Self.SAS_Address[5] = static_cast<KT_U8>(sequence >> 8 & 0xFF);
}

KT_U8 replaceDisk(const Context& context, KT_U16 known, KT_U64 sectors) {
    const KT_U16 pd = idOnReturn(context, known);
    if (find<_HD_Info>(context, pd)) {
        const KT_U8 status = pullDisk(context, pd);
        if (status != KT_OK) return status;
    }
    const auto pulled = find<PulledDisk>(context, pd);
    if (!pulled) return KT_ERR_PD_MISSING;
    erase<PulledDisk>(context, pd);
    erase<PulledBlocks>(context, pd);
    _HD_Info info = pulled->info;
    renumber(context, info);
    if (sectors) info.Size = sectors;
    PdState state = {};
    state.config = pulled->state.config;
    state.config.Online = 1;
    state.config.WriteCacheOn = info.FeatureSupport & KT_HD_WRITE_CACHE ? 1 : 0;
    state.config.SMARTOn = info.FeatureSupport & KT_HD_SMART ? 1 : 0;
    state.dgid = KT_NO_ID;
    state.reservedKib = pulled->state.reservedKib;
    state.patrol.disk = KT_NO_ID;
    save(context, pd, info);
    save(context, pd, state);
    forgetDisk(context, pd);
    beginLife(context, pd);
    logEvent(context, EVT_PD, 1, pd, SEV_INFO);
    reviewDiskCipher(context, pd);
    engageSpares(context);
    arbitrate(context);
    return KT_OK;
}

KT_U8 tripSmart(const Context& context, KT_U16 pd, bool tripped) {
    Disk disk = {};
    const KT_U8 status = findDisk(context, pd, disk);
    if (status != KT_OK) return status;
    if (!(disk.info.FeatureSupport & KT_HD_SMART)) return KT_ERR_NOT_SUPPORTED;
    const bool news = tripped && !disk.state.smartTripped;
    disk.state.smartTripped = tripped ? 1 : 0;
    saveDisk(context, disk);
    // Its attributes would go on saying that it fails.
    if (!tripped) {
        undoWear(context, pd);
        forgetSurface(context, pd, FLAW_UNREADABLE);
    }
    if (news && disk.state.config.SMARTOn && adapterConfig(context).PollSMARTStatus == 1)
        logEvent(context, EVT_PD, 11, pd, SEV_WARNING);
    return KT_OK;
}

static std::vector<KT_U16> offlineVds(const Context& context) {
    std::vector<KT_U16> offline;
    forEach<_LD_Info>(context, 0, [&](KT_U64 id, const _LD_Info& vd) {
        if (vd.Status == KT_VD_OFFLINE) offline.push_back(static_cast<KT_U16>(id));
        return true;
    });
    return offline;
}

KT_U8 setDiskDown(const Context& context, KT_U16 pd) {
    Disk disk = {};
    const KT_U8 status = findDisk(context, pd, disk);
    if (status != KT_OK) return status;
    const bool working = (disk.state.raid & KT_PD_MEMBER) && !(disk.state.raid & (KT_PD_OFFLINE | KT_PD_FOREIGN));
    if (!working || disk.state.hasOs) return KT_ERR_PD_CANNOT_SET_DOWN;
    Array array = {};
    const bool inArray = findArray(context, disk.state.dgid, array) == KT_OK;
    const KT_U8 before = array.info.Status;
    const std::vector<KT_U16> offline = offlineVds(context);
    logEvent(context, EVT_PD, 2, pd, SEV_MAJOR);
    loseDisk(context, pd);
    // Failing undoes it all.
    if (inArray && findArray(context, array.info.DGID, array) == KT_OK && before != ARRAY_OFFLINE &&
        array.info.Status == ARRAY_OFFLINE)
        return KT_ERR_PD_CANNOT_SET_DOWN;
    return offlineVds(context) == offline ? KT_U8{KT_OK} : KT_U8{KT_ERR_PD_CANNOT_SET_DOWN};
}

KT_U8 bringDiskUp(const Context& context, KT_U16 pd, bool emptied) {
    Disk disk = {};
    const KT_U8 status = findDisk(context, pd, disk);
    if (status != KT_OK) return status;
    if (!(disk.state.raid & KT_PD_OFFLINE)) return KT_ERR_PD_NOT_OFFLINE;
    if (disk.state.health == PD_FAILED) return KT_ERR_LINK_TIMEOUT;
    PulledBlocks blocks = rememberBlocks(context, pd);
    if (emptied) {
        if (blocks.count) becomeFree(context, pd);
        blocks.raid = blocks.count = 0;
        blocks.dgid = KT_NO_ID;
    }
    const std::vector<Owner> owners = detach(context, pd);
    findDisk(context, pd, disk);
    disk.state.raid &= static_cast<KT_U8>(~KT_PD_OFFLINE);
    disk.state.config.Online = 1;
    saveDisk(context, disk);
    rejoin(context, pd, blocks);
    followUp(context, owners, KT_NO_ID);
    return KT_OK;
}

KT_U8 setDiskStatus(const Context& context, KT_U16 pd, KT_U8 status) {
    if (status > 1) return KT_ERR_INVALID_PARAMETER;
    if (status == 0) return setDiskDown(context, pd);
    const KT_U8 result = bringDiskUp(context, pd, false);
    if (result != KT_OK) return result;
    reviewDiskCipher(context, pd);
    Disk disk = {};
    const bool suits = findDisk(context, pd, disk) == KT_OK && !(disk.state.raid & KT_PD_OFFLINE);
    return suits ? KT_U8{KT_OK} : KT_U8{KT_ERR_KEY_MISMATCH};
}

// Takes the parts of foreign virtual disks off the disk; those that it held the last part of are gone.
static void wipeForeign(const Context& context, KT_U16 pd) {
    std::vector<Vd> foreign;
    forEachVd(context, [&](const Vd& vd) {
        const Group group = groupOf(context, Owner{OwnerKind::Vd, vd.info.ID});
        if (isForeign(vd.info) && !blocksFor(context, group, pd).empty()) foreign.push_back(vd);
    });
    for (const Vd& vd : foreign) {
        const Group group = groupOf(context, Owner{OwnerKind::Vd, vd.info.ID});
        const bool last = std::all_of(group.members.begin(), group.members.end(),
                                      [&](KT_U16 member) { return member == pd || member == KT_NO_ID; });
        last ? removeVd(context, vd) : removeMember(context, group, pd);
    }
}

KT_U8 wipeDisk(const Context& context, KT_U16 pd, bool force) {
    Disk disk = {};
    KT_U8 status = findDisk(context, pd, disk);
    if (status != KT_OK) return status;
    if (disk.state.health == PD_FAILED) return KT_ERR_LINK_TIMEOUT;
    if (runsSystem(disk.state)) return KT_ERR_PD_HAS_OS;
    const bool foreign = (disk.state.raid & KT_PD_FOREIGN) != 0;
    if ((disk.state.raid & KT_PD_MEMBER) && !foreign && !force) return KT_ERR_PD_ASSIGNED;
    if ((disk.state.raid & KT_PD_SPARE) && !force) return KT_ERR_IS_SPARE;
    for (const Owner owner : groupsOn(context, pd)) {
        const Group group = groupOf(context, owner);
        // What such a virtual disk keeps is on its hard disk.
        const bool hybrid = isHybridLevel(group.geometry.level) && !isSolidState(disk.info);
        if (hybrid && !foreign) return KT_ERR_TANDEM_HDD_DATA;
        for (const KT_U16 id : group.vds) {
            Vd vd = {};
            if (findVd(context, id, vd) == KT_OK && runsSystem(vd)) return KT_ERR_VD_HAS_OS;
        }
    }
    wipeForeign(context, pd);
    erase<ArrayLabel>(context, pd);
    dropSpareRole(context, pd);
    failPatrol(context, pd);
    const std::vector<Owner> owners = detach(context, pd);
    findDisk(context, pd, disk);
    disk.state.raid &= KT_PD_OFFLINE;
    disk.state.dgid = KT_NO_ID;
    // A partition table would keep the adapter from ever using the disk by itself, and so would its old place.
    disk.state.hasMbr = 0;
    saveDisk(context, disk);
    for (const Owner owner : allGroups(context))
        forgetHome(context, owner, pd);
    followUp(context, owners, pd);
    return KT_OK;
}

} // namespace sim
