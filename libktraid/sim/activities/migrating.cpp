#include "activities/migrating.h"

#include "activities/activities.h"
#include "activities/rebuilding.h"
#include "media/blocks.h"
#include "raid/candidates.h"
#include "raid/members.h"
#include "raid/slots.h"

#include <algorithm>
#include <span>

namespace sim {

// Where a group is to go.
struct Journey {
    Group from;
    Geometry to;
    std::vector<KT_U16> disks;   // by slot of the target
    std::vector<KT_U16> arrived; // those of them that are new
};

static bool anotherMigrates(const Context& context, Owner owner) {
    bool another = false;
    forEachActivity(context, [&](Owner other, const Activity& activity) {
        const bool same = other.kind == owner.kind && other.id == owner.id;
        another = another || (!same && other.kind != OwnerKind::Disk && activity.kind == KT_BGA_MIGRATION);
    });
    return another;
}

static bool isMigratable(KT_U8 level) {
    return isKnownLevel(level) && !isHybridLevel(level) && level != KT_JBOD;
}

static KT_U8 checkArrivals(const Context& context, Journey& journey) {
    const Sharing sharing = sharesDisks(adapterInfo(context), journey.to.level) ? Sharing::Part : Sharing::Whole;
    for (size_t i = 0; i < journey.disks.size(); ++i) {
        const KT_U16 pd = journey.disks[i];
        const auto here = journey.disks.begin() + static_cast<std::ptrdiff_t>(i);
        if (std::find(journey.disks.begin(), here, pd) != here) return KT_ERR_PD_COUNT;
        const auto& members = journey.from.members;
        if (std::find(members.begin(), members.end(), pd) != members.end()) continue;
        Disk disk = {};
        KT_U8 status = checkNewMember(context, pd, sharing, disk);
        if (status == KT_OK) status = checkFits(context, journey.from, disk);
        if (status != KT_OK) return status;
        journey.arrived.push_back(pd);
    }
    for (const KT_U16 member : journey.from.members) {
        if (std::find(journey.disks.begin(), journey.disks.end(), member) == journey.disks.end())
            return KT_ERR_ARRAY_DISK_MISSING;
    }
    return KT_OK;
}

// What a migration is asked to lead to.
struct Destination {
    KT_U8 level;
    KT_U8 parity;
    std::span<const KT_U16> disks; // none: those that there are
    bool isArray;
};

// Fills in the journey and checks what its size depends on: that the level takes that many disks.
static KT_U8 planJourney(const Context& context, const Destination& wanted, Journey& journey) {
    const _Adapter_Info adapter = adapterInfo(context);
    if (!(adapter.Features & KT_FEATURE_MIGRATION)) return KT_ERR_MIGRATION_UNSUPPORTED;
    if (wanted.disks.size() > MAX_MEMBERS) return KT_ERR_PD_COUNT;
    journey.disks.assign(wanted.disks.begin(), wanted.disks.end());
    if (wanted.disks.empty()) journey.disks = journey.from.members;
    const KT_U8 most = wanted.isArray ? adapter.MaxPDPerDG : adapter.MaxPDPerVD;
    if (most && journey.disks.size() > most) return KT_ERR_PD_COUNT;
    const bool counts = wanted.level == KT_RAID6 || wanted.level == KT_RAID60;
    const auto members = static_cast<KT_U8>(journey.disks.size());
    journey.to = Geometry{wanted.level, members, counts ? wanted.parity : KT_U8{0}};
    const KT_U8 status = checkGeometry(adapter, journey.to, wanted.isArray);
    if (status != KT_OK) return status;
    const bool migratable = isMigratable(wanted.level) && isMigratable(journey.from.geometry.level);
    return migratable ? KT_U8{KT_OK} : KT_U8{KT_ERR_MIGRATION_UNSUPPORTED};
}

// All else that does not depend on what is going on now.
static KT_U8 checkJourney(const Context& context, Journey& journey) {
    const Geometry& from = journey.from.geometry;
    if (redundancyRank(journey.to.level) < redundancyRank(from.level)) return KT_ERR_MIGRATION_UNSUPPORTED;
    const KT_U8 status = checkArrivals(context, journey);
    if (status != KT_OK) return status;
    const bool same = journey.to.level == from.level && journey.to.parity == from.parity && journey.arrived.empty();
    return same ? KT_U8{KT_ERR_MIGRATION_UNNECESSARY} : KT_U8{KT_OK};
}

// The block that the virtual disk gets on a disk new to it: as large as the others, at the same place if it can be.
static KT_U8 addArrival(const Context& context, const _LD_Info& vd, KT_U16 pd, KT_U16& id) {
    std::optional<_Block_Info> block;
    for (int i = 0; !block && i < geometryOf(vd).disks; ++i)
        block = find<_Block_Info>(context, vd.BlockIDs[i]);
    Disk disk = {};
    if (!block || findDisk(context, pd, disk) != KT_OK) return KT_ERR_VD_NOT_READY;
    block->HDID = pd;
    block->Status = BLOCK_GOOD;
    if (vd.DGID == KT_NO_ID || !isFreeSpace(context, pd, block->StartLBA, block->Size)) {
        const auto start = findSpace(context, pd, disk.info, disk.state, block->Size);
        if (!start) return KT_ERR_TARGET_TOO_SMALL;
        block->StartLBA = *start;
    }
    id = addBlock(context, *block);
    if (id == KT_NO_ID) return KT_ERR_NO_RESOURCE;
    disk.state.raid |= KT_PD_MEMBER;
    disk.state.hasMbr = 0;
    if (vd.DGID != KT_NO_ID) disk.state.dgid = vd.DGID;
    saveDisk(context, disk);
    return KT_OK;
}

// A size that somebody stated stays; what was made of all that there was grows with it.
static KT_U64 sizeAfter(const Context& context, const _LD_Info& vd, const Geometry& to) {
    const KT_U64 most = capacityOf(to, shareOf(context, vd));
    const bool whole = find<VdState>(context, vd.ID).value_or(VdState{}).whole != 0;
    return whole ? most : std::min(most, vd.Size);
}

static KT_U8 layOutTarget(const Context& context, const Journey& journey, const _LD_Info& vd) {
    VdTarget target{vd, {}};
    target.info.RaidMode = journey.to.level;
    target.info.NumParityDisk = journey.to.parity;
    target.info.HDCount = target.info.BlkCount = journey.to.disks;
    const KT_U8 subs = subCount(journey.to);
    target.info.SubLDCount = subs > 1 ? subs : KT_U8{0};
    target.info.Size = sizeAfter(context, vd, journey.to);
    target.info.BGAStatus = KT_STATE_NONE;
    std::fill(std::begin(target.info.BlockIDs), std::end(target.info.BlockIDs), KT_U16{KT_NO_ID});
    std::fill(std::begin(target.homes), std::end(target.homes), KT_U16{KT_NO_ID});
    for (size_t slot = 0; slot < journey.disks.size(); ++slot) {
        const auto& members = journey.from.members;
        const auto member = std::find(members.begin(), members.end(), journey.disks[slot]);
        KT_U8 status = KT_OK;
        target.homes[slot] = journey.disks[slot];
        if (member != members.end()) {
            target.info.BlockIDs[slot] = vd.BlockIDs[member - members.begin()];
            target.homes[slot] = journey.from.homes[static_cast<size_t>(member - members.begin())];
        } else {
            status = addArrival(context, vd, journey.disks[slot], target.info.BlockIDs[slot]);
        }
        if (status != KT_OK) return status;
    }
    save(context, vd.ID, target);
    return KT_OK;
}

static KT_U8 startJourney(const Context& context, const Journey& journey) {
    KT_U64 work = 0;
    giveUpCopyBack(context, journey.from.owner);
    for (const KT_U16 id : journey.from.vds) {
        const auto vd = find<_LD_Info>(context, id);
        if (!vd) continue;
        const KT_U8 status = layOutTarget(context, journey, *vd);
        if (status != KT_OK) return status;
        work += 2 * shareOf(context, *vd); // all is read and written again
    }
    startActivity(context, journey.from.owner, KT_BGA_MIGRATION, work, KT_NO_ID);
    arbitrate(context);
    return KT_OK;
}

static KT_U8 planVd(const Context& context, const _Create_LD_Param& param, Vd& vd, Journey& journey) {
    const KT_U8 status = findVd(context, param.LDID, vd);
    if (status != KT_OK) return status;
    if (vd.info.DGID != KT_NO_ID) return KT_ERR_NOT_ON_THIS_ADAPTER;
    if (vd.info.Status != KT_VD_ONLINE) return KT_ERR_VD_NOT_READY;
    journey.from = groupOf(context, Owner{OwnerKind::Vd, param.LDID});
    return planJourney(context, {param.RaidMode, param.NumParityDisk, {param.HDIDs, param.HDCount}, false}, journey);
}

KT_U8 migratedVdSize(const Context& context, _Create_LD_Param& param) {
    Vd vd = {};
    Journey journey = {};
    const KT_U8 status = planVd(context, param, vd, journey);
    if (status == KT_OK) param.Size = sizeAfter(context, vd.info, journey.to);
    return status;
}

KT_U8 startVdMigration(const Context& context, _Create_LD_Param& param) {
    Vd vd = {};
    Journey journey = {};
    KT_U8 status = planVd(context, param, vd, journey);
    if (status == KT_OK) status = checkJourney(context, journey);
    if (status != KT_OK) return status;
    if (isAlive(vd.state.activity)) return KT_ERR_VD_BUSY;
    if (anotherMigrates(context, journey.from.owner)) return KT_ERR_ONE_VD_MIGRATION;
    if (!vd.state.initialized && isRedundant(vd.info.RaidMode)) return KT_ERR_VD_NOT_INITIALIZED;
    if (capacityOf(journey.to, shareOf(context, vd.info)) < vd.info.Size) return KT_ERR_TARGET_TOO_SMALL;
    return startJourney(context, journey);
}

static KT_U8 checkArrayIdle(const Context& context, const Journey& journey, const Array& array) {
    if (isAlive(array.state.activity)) return KT_ERR_ARRAY_BUSY;
    for (const KT_U16 id : journey.from.vds) {
        const VdState vd = find<VdState>(context, id).value_or(VdState{});
        if (isAlive(vd.activity)) return KT_ERR_ARRAY_BUSY;
        // An aborted rebuild leaves a member that is there, but is no source for what moves.
        const auto info = find<_LD_Info>(context, id);
        if (info && info->Status != KT_VD_ONLINE) return KT_ERR_VD_NOT_READY;
        if (!vd.initialized && isRedundant(array.info.RaidMode)) return KT_ERR_VD_NOT_INITIALIZED;
    }
    if (anotherMigrates(context, journey.from.owner)) return KT_ERR_ONE_ARRAY_MIGRATION;
    return journey.from.vds.empty() ? KT_U8{KT_ERR_ARRAY_EMPTY} : KT_U8{KT_OK};
}

KT_U8 startArrayMigration(const Context& context, _CreateOrModify_DG_Param& param, bool sizeOnly) {
    if (!isArrayBased(adapterInfo(context))) return KT_ERR_NOT_ON_THIS_ADAPTER;
    Array array = {};
    KT_U8 status = findArray(context, param.DGID, array);
    if (status != KT_OK) return status;
    if (array.info.Status != ARRAY_FUNCTIONAL) return KT_ERR_ARRAY_DISK_MISSING;
    Journey journey = {};
    journey.from = groupOf(context, Owner{OwnerKind::Array, param.DGID});
    status = planJourney(context, {param.RaidMode, param.NumParityDisk, {param.PDIDs, param.PDCount}, true}, journey);
    if (status != KT_OK) return status;
    const KT_U64 size = capacityOf(journey.to, array.info.SmallestAvailablePDSize);
    param.Size = size;
    if (sizeOnly) return KT_OK;
    status = checkJourney(context, journey);
    if (status != KT_OK) return status;
    status = checkArrayIdle(context, journey, array);
    if (status != KT_OK) return status;
    return size < array.info.TotalManagedSpace ? KT_U8{KT_ERR_TARGET_TOO_SMALL} : startJourney(context, journey);
}

// The disks of the target by slot.
static std::vector<KT_U16> targetDisks(const Context& context, const _LD_Info& target) {
    std::vector<KT_U16> disks;
    for (int i = 0; i < geometryOf(target).disks; ++i) {
        const auto block = find<_Block_Info>(context, target.BlockIDs[i]);
        disks.push_back(block ? block->HDID : KT_U16{KT_NO_ID});
    }
    return disks;
}

// Its disks are free beyond what its size takes now.
static void shrinkBlocks(const Context& context, const _LD_Info& vd) {
    const KT_U64 share = shareFor(geometryOf(vd), vd.Size, vd.StripeBlockSize);
    for (int i = 0; i < geometryOf(vd).disks; ++i) {
        auto block = find<_Block_Info>(context, vd.BlockIDs[i]);
        if (!block) continue;
        block->Size = std::min(block->Size, kibToSectors(share, block->BlockSize));
        updateBlock(context, *block);
    }
}

// The virtual disk becomes what it was turning into; what is not about its make-up stays as it is now.
static void arriveVd(const Context& context, KT_U16 id, const VdTarget& target) {
    Vd vd = {};
    if (findVd(context, id, vd) != KT_OK) return;
    vd.info.RaidMode = target.info.RaidMode;
    vd.info.NumParityDisk = target.info.NumParityDisk;
    vd.info.SubLDCount = target.info.SubLDCount;
    vd.info.HDCount = vd.info.BlkCount = target.info.HDCount;
    vd.info.Size = target.info.Size;
    std::copy(std::begin(target.info.BlockIDs), std::end(target.info.BlockIDs), vd.info.BlockIDs);
    std::copy(std::begin(target.homes), std::end(target.homes), vd.state.homes);
    vd.state.initialized = 1; // all of it was written anew
    saveVd(context, vd);
    erase<VdTarget>(context, id);
    if (!vd.state.whole) shrinkBlocks(context, vd.info);
}

static void arriveArray(const Context& context, KT_U16 id, const VdTarget& target) {
    Array array = {};
    if (findArray(context, id, array) != KT_OK) return;
    const _LD_Info& model = target.info;
    const std::vector<KT_U16> disks = targetDisks(context, model);
    const std::vector<KT_U64> shares = slotShares(array);
    array.info.RaidMode = model.RaidMode;
    array.info.NumParityDisk = model.NumParityDisk;
    array.info.SubVDCount = model.SubLDCount;
    array.state.memberCount = static_cast<KT_U8>(disks.size());
    std::fill(std::begin(array.state.members), std::end(array.state.members), KT_U16{KT_NO_ID});
    std::copy(disks.begin(), disks.end(), array.state.members);
    std::copy(std::begin(target.homes), std::end(target.homes), array.state.homes);
    listMembers(array);
    divideAnew(context, array, shares);
    array.info.TotalManagedSpace = capacityOf(geometryOf(array), array.info.SmallestAvailablePDSize);
    countFreeSlots(array);
    saveArray(context, array);
    for (const KT_U16 pd : disks) {
        Disk disk = {};
        if (findDisk(context, pd, disk) != KT_OK) continue;
        disk.state.raid |= KT_PD_MEMBER;
        disk.state.dgid = id;
        saveDisk(context, disk);
    }
}

void finishMigration(const Context& context, Owner owner) {
    const Activity activity = activityOf(context, owner);
    const Group group = groupOf(context, owner);
    std::optional<VdTarget> arrived;
    for (const KT_U16 vd : group.vds) {
        const auto target = find<VdTarget>(context, vd);
        if (!target) continue;
        arriveVd(context, vd, *target);
        arrived = target;
    }
    if (owner.kind == OwnerKind::Array && arrived) arriveArray(context, owner.id, *arrived);
    dropActivity(context, owner);
    logActivity(context, owner, activity, STEP_COMPLETED);
    refreshGroup(context, groupOf(context, owner));
    engageSpares(context);
}

} // namespace sim
