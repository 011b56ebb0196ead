#include "changes/foreign.h"

#include "activities/activities.h"
#include "activities/rebuilding.h"
#include "changes/spareRoles.h"
#include "media/blocks.h"
#include "raid/members.h"
#include "raid/roles.h"
#include "raid/slots.h"
#include "state/events.h"

#include <algorithm>
#include <cstring>

namespace sim {

// Whether enough members are there, none of them in use here.
static bool isComplete(const Context& context, const _LD_Info& vd) {
    const Group group = groupOf(context, Owner{OwnerKind::Vd, vd.ID});
    bool lost[MAX_MEMBERS] = {};
    bool hdd[MAX_MEMBERS] = {};
    for (size_t i = 0; i < group.members.size(); ++i) {
        Disk disk = {};
        lost[i] = group.needsDisk[i] || findDisk(context, group.members[i], disk) != KT_OK;
        if (!lost[i] && disk.state.dgid != KT_NO_ID) return false;
        hdd[i] = !isSolidState(disk.info);
    }
    return statusWithLost(group.geometry, lost, hdd) != KT_VD_OFFLINE;
}

static void comeHome(const Context& context, const _LD_Info& vd, KT_U16 dgid) {
    Vd mine = {};
    if (findVd(context, vd.ID, mine) != KT_OK) return;
    const Group group = groupOf(context, Owner{OwnerKind::Vd, vd.ID});
    for (const KT_U16 pd : group.members) {
        Disk disk = {};
        if (findDisk(context, pd, disk) != KT_OK) continue;
        disk.state.raid = static_cast<KT_U8>((disk.state.raid & ~KT_PD_FOREIGN) | KT_PD_MEMBER);
        disk.state.dgid = dgid;
        saveDisk(context, disk);
    }
    std::fill(std::begin(mine.state.homes), std::end(mine.state.homes), KT_U16{KT_NO_ID});
    std::copy(group.members.begin(), group.members.end(), mine.state.homes);
    mine.info.Status = KT_VD_ONLINE;
    mine.info.DGID = dgid;
    saveVd(context, mine);
    if (dgid == KT_NO_ID || isConflicted(vd)) {
        logEvent(context, EVT_VD_ONLINE, vd.ID, vdParams(vd.RaidMode));
    } else {
        logEvent(context, EVT_VD_IMPORTED, vd.ID, {dgid});
    }
    refreshVdStatus(context, vd.ID);
}

// KiB from the start of the disks to the virtual disk.
static KT_U64 startKib(const Context& context, const _LD_Info& vd) {
    for (int i = 0; i < geometryOf(vd).disks; ++i) {
        const auto block = find<_Block_Info>(context, vd.BlockIDs[i]);
        if (block) return sectorsToKib(block->StartLBA, block->BlockSize);
    }
    return 0;
}

// The foreign virtual disks that lie on the same disks as this one, in order of their place.
static std::vector<_LD_Info> companions(const Context& context, const _LD_Info& vd) {
    std::vector<_LD_Info> found;
    const std::vector<KT_U16> members = groupOf(context, Owner{OwnerKind::Vd, vd.ID}).members;
    forEachVd(context, [&](const Vd& other) {
        if (!isForeign(other.info) || other.info.RaidMode != vd.RaidMode) return;
        if (groupOf(context, Owner{OwnerKind::Vd, other.info.ID}).members == members) found.push_back(other.info);
    });
    std::sort(found.begin(), found.end(), [&](const _LD_Info& one, const _LD_Info& other) {
        return startKib(context, one) < startKib(context, other);
    });
    return found;
}

static KT_U64 commonRoom(const Context& context, const Group& group) {
    KT_U64 room = NEVER;
    for (const KT_U16 pd : group.members) {
        Disk disk = {};
        if (findDisk(context, pd, disk) == KT_OK) room = std::min(room, validKib(disk.info, disk.state));
    }
    return room;
}

static void addSlot(Array& array, KT_U64 share, KT_U16 vd) {
    if (share == 0 || array.info.VDSlotCount >= MAX_SLOTS) return;
    array.info.VDIDs[array.info.VDSlotCount] = vd;
    array.info.VDSlotSize[array.info.VDSlotCount++] = capacityOf(geometryOf(array), share);
}

// An array around the virtual disks, its slots where they lie.
static Array arrayAround(const Context& context, const std::vector<_LD_Info>& vds, const Group& group, KT_U16 id) {
    const _LD_Info& model = vds.front();
    Array array = {};
    array.info.DGID = id;
    memcpy(array.info.Name, model.Name, sizeof array.info.Name);
    array.info.RaidMode = model.RaidMode;
    array.info.NumParityDisk = model.NumParityDisk;
    array.info.SubVDCount = model.SubLDCount;
    array.info.AdapterID = context.adapter;
    array.info.StripeBlockSize = model.StripeBlockSize;
    array.info.BlockSize = model.BlockSize;
    array.state.memberCount = group.geometry.disks;
    array.state.writeCacheOn = 1;
    array.state.activity.disk = KT_NO_ID;
    std::fill(std::begin(array.state.members), std::end(array.state.members), KT_U16{KT_NO_ID});
    std::copy(group.members.begin(), group.members.end(), array.state.members);
    std::copy(std::begin(array.state.members), std::end(array.state.members), array.state.homes);
    std::fill(std::begin(array.info.VDIDs), std::end(array.info.VDIDs), KT_U16{KT_NO_ID});
    std::fill(std::begin(array.info.SparePDIDs), std::end(array.info.SparePDIDs), KT_U16{KT_NO_ID});
    const KT_U64 stripe = std::max<KT_U64>(model.StripeBlockSize, 1);
    const KT_U64 room = commonRoom(context, group) / stripe * stripe;
    KT_U64 at = 0;
    for (const _LD_Info& vd : vds) {
        const KT_U64 start = startKib(context, vd);
        addSlot(array, start > at ? start - at : 0, KT_NO_ID);
        addSlot(array, shareOf(context, vd), vd.ID);
        at = start + shareOf(context, vd);
    }
    addSlot(array, room > at ? room - at : 0, KT_NO_ID);
    array.info.SmallestAvailablePDSize = std::max(room, at);
    array.info.TotalManagedSpace = capacityOf(geometryOf(array), array.info.SmallestAvailablePDSize);
    countFreeSlots(array);
    listMembers(array);
    return array;
}

// An array has its disks to itself: what else lies on them must be deleted first.
static bool shareDisks(const Context& context, const std::vector<_LD_Info>& vds, const Group& group) {
    for (const KT_U16 pd : group.members) {
        const _HD_Block_Info list = blocksOf(context, pd);
        for (int i = 0; i < list.BlkCount; ++i) {
            const auto block = find<_Block_Info>(context, list.BlkIDs[i]);
            if (block && std::none_of(vds.begin(), vds.end(), [&](const _LD_Info& vd) { return vd.ID == block->LDID; }))
                return true;
        }
    }
    return false;
}

// The virtual disk and those that come along.
static std::vector<_LD_Info> comingAlong(const Context& context, const _LD_Info& vd) {
    return isArrayBased(adapterInfo(context)) ? companions(context, vd) : std::vector<_LD_Info>{vd};
}

// Whether the adapter could take the virtual disk over, with those that would come along.
static bool canTakeOver(const Context& context, const _LD_Info& vd) {
    const _Adapter_Info adapter = adapterInfo(context);
    const std::vector<_LD_Info> vds = comingAlong(context, vd);
    const bool whole = std::all_of(vds.begin(), vds.end(), [&](const _LD_Info& each) {
        return find<VdState>(context, each.ID).value_or(VdState{}).unfinished == 0 && isComplete(context, each);
    });
    if (!whole || !isLevelEnabled(adapter, vd.RaidMode)) return false;
    if (!isArrayBased(adapter)) return true;
    if (vds.size() > std::max<size_t>(adapter.MaxVDPerDG, 1)) return false;
    return !shareDisks(context, vds, groupOf(context, Owner{OwnerKind::Vd, vd.ID}));
}

static bool canImport(const Context& context, const _LD_Info& vd) {
    const std::vector<_LD_Info> vds = comingAlong(context, vd);
    return std::none_of(vds.begin(), vds.end(), isConflicted) && canTakeOver(context, vd);
}

// What the array was elsewhere, as it wrote on its members.
static std::optional<ArrayLabel> labelOf(const Context& context, const Group& group) {
    std::optional<ArrayLabel> label;
    for (size_t i = 0; i < group.members.size() && !label; ++i)
        label = find<ArrayLabel>(context, group.members[i]);
    return label;
}

// The array's spares stand by again, unless they were put to other use.
static void callSpares(const Context& context, const ArrayLabel& label, KT_U16 dgid) {
    std::vector<KT_U16> spares;
    std::vector<KT_U16> disks;
    forEach<ArrayLabel>(context, 0, [&](KT_U64 pd, const ArrayLabel& each) {
        if (memcmp(each.guid, label.guid, sizeof label.guid) != 0) return true;
        disks.push_back(static_cast<KT_U16>(pd));
        if (each.spare) spares.push_back(static_cast<KT_U16>(pd));
        return true;
    });
    for (const KT_U16 pd : disks)
        erase<ArrayLabel>(context, pd);
    for (const KT_U16 pd : spares)
        makeDedicatedSpare(context, pd, dgid);
}

static KT_U8 importArray(const Context& context, const _LD_Info& vd) {
    const std::vector<_LD_Info> vds = companions(context, vd);
    const KT_U16 id = freeId(context, KIND_DG, adapterInfo(context).MaxDiskGroup);
    if (id == KT_NO_ID) return KT_ERR_NO_RESOURCE;
    const Group group = groupOf(context, Owner{OwnerKind::Vd, vd.ID});
    const auto label = labelOf(context, group);
    Array array = arrayAround(context, vds, group, id);
    if (label) memcpy(array.info.Name, label->name, sizeof array.info.Name);
    saveArray(context, array);
    logEvent(context, EVT_ARRAY_CREATED, id);
    for (const _LD_Info& each : vds)
        comeHome(context, each, id);
    refreshArrayStatus(context, id);
    if (label) callSpares(context, *label, id);
    return KT_OK;
}

static KT_U8 takeOver(const Context& context, const _LD_Info& vd) {
    if (isArrayBased(adapterInfo(context))) {
        const KT_U8 imported = importArray(context, vd);
        if (imported != KT_OK) return imported;
    } else {
        comeHome(context, vd, KT_NO_ID);
    }
    reviewForeign(context);
    engageSpares(context);
    arbitrate(context);
    return KT_OK;
}

KT_U8 importVd(const Context& context, KT_U16 id) {
    Vd vd = {};
    const KT_U8 status = findVd(context, id, vd);
    if (status != KT_OK) return status;
    if (!isForeign(vd.info)) return KT_ERR_VD_STATUS;
    return canImport(context, vd.info) ? takeOver(context, vd.info) : KT_U8{KT_ERR_VD_NOT_IMPORTABLE};
}

KT_U8 reportVd(const Context& context, KT_U16 id) {
    Vd vd = {};
    const KT_U8 status = findVd(context, id, vd);
    if (status != KT_OK) return status;
    const bool reportable = isConflicted(vd.info) && canTakeOver(context, vd.info);
    return reportable ? takeOver(context, vd.info) : KT_U8{KT_ERR_VD_NOT_REPORTABLE};
}

static bool hasBlocks(const Context& context, const _LD_Info& vd) {
    return std::any_of(std::begin(vd.BlockIDs), std::end(vd.BlockIDs),
                       [&](KT_U16 id) { return id != KT_NO_ID && find<_Block_Info>(context, id); });
}

static std::optional<_LD_Info> knownVd(const Context& context, const KT_U8* guid) {
    std::optional<_LD_Info> found;
    forEach<_LD_Info>(context, 0, [&](KT_U64, const _LD_Info& vd) {
        if (memcmp(vd.LD_GUID, guid, sizeof vd.LD_GUID) == 0) found = vd;
        return !found;
    });
    return found;
}

bool isStale(const Context& context, const PulledBlocks& blocks) {
    return std::any_of(blocks.entries, blocks.entries + std::min<int>(blocks.count, MAX_MEMBERS),
                       [&](const PulledBlock& entry) {
                           const auto vd = knownVd(context, entry.guid);
                           return vd && vd->Status == KT_VD_OFFLINE && entry.block.Status != BLOCK_REBUILDING;
                       });
}

static void reviewStale(const Context& context) {
    std::vector<KT_U16> freed;
    forEach<PulledBlocks>(context, 0, [&](KT_U64 id, const PulledBlocks& blocks) {
        if (find<_HD_Info>(context, id) && !isStale(context, blocks)) freed.push_back(static_cast<KT_U16>(id));
        return true;
    });
    for (const KT_U16 pd : freed) {
        erase<PulledBlocks>(context, pd);
        releaseDisk(context, pd);
    }
}

void reviewForeign(const Context& context) {
    reviewStale(context);
    std::vector<Vd> foreign;
    forEachVd(context, [&](const Vd& vd) {
        if (isForeign(vd.info)) foreign.push_back(vd);
    });
    for (Vd& vd : foreign) {
        if (!hasBlocks(context, vd.info)) {
            rememberAway(context, vd);
            erase<_LD_Info>(context, vd.info.ID);
            erase<VdState>(context, vd.info.ID);
            // A lab can have put it into an array.
            if (vd.info.DGID != KT_NO_ID) freeSlot(context, vd.info.DGID, vd.info.ID);
            continue;
        }
        if (isConflicted(vd.info)) continue;
        const KT_U8 status = canImport(context, vd.info) ? KT_VD_IMPORTABLE : KT_VD_NOT_IMPORTABLE;
        if (vd.info.Status == status || (vd.info.Status == KT_VD_FOREIGN && status == KT_VD_IMPORTABLE)) continue;
        vd.info.Status = status;
        save(context, vd.info.ID, vd.info);
    }
}

// Parts of one virtual disk have GUIDs that differ in the byte that is counted up where one is known already.
static bool isPartOfSame(const _LD_Info& one, const _LD_Info& other) {
    KT_U8 guid[sizeof one.LD_GUID];
    memcpy(guid, one.LD_GUID, sizeof guid);
    guid[COUNTED_GUID_BYTE] = other.LD_GUID[COUNTED_GUID_BYTE];
    return memcmp(guid, other.LD_GUID, sizeof guid) == 0 && one.RaidMode == other.RaidMode &&
           one.HDCount == other.HDCount && one.Size == other.Size;
}

void endConflicts(const Context& context, const _LD_Info& deleted) {
    std::vector<_LD_Info> parts;
    forEachVd(context, [&](const Vd& vd) {
        if (isConflicted(vd.info) && isPartOfSame(vd.info, deleted)) parts.push_back(vd.info);
    });
    for (_LD_Info& part : parts) {
        part.Status = KT_VD_NOT_IMPORTABLE;
        save(context, part.ID, part);
    }
}

static bool isPulled(const Context& context, const KT_U8* guid) {
    bool pulled = false;
    forEach<PulledBlocks>(context, 0, [&](KT_U64 id, const PulledBlocks& disk) {
        pulled = find<PulledDisk>(context, id) &&
                 std::any_of(disk.entries, disk.entries + disk.count,
                             [&](const PulledBlock& entry) { return memcmp(entry.guid, guid, 8) == 0; });
        return !pulled;
    });
    return pulled;
}

void rememberAway(const Context& context, const Vd& vd) {
    if (!isPulled(context, vd.info.LD_GUID)) return;
    AwayVd away{vd.info, vd.state};
    away.info.DGID = KT_NO_ID;
    away.info.BGAStatus = KT_STATE_NONE;
    if (!isConflicted(vd.info)) away.info.Status = KT_VD_NOT_IMPORTABLE;
    away.state.activity = Activity{};
    away.state.activity.disk = away.state.linkedDisk = KT_NO_ID;
    std::fill(std::begin(away.info.BlockIDs), std::end(away.info.BlockIDs), KT_U16{KT_NO_ID});
    save(context, lastRow(context.store, context.adapter, KIND_VD_AWAY).value_or(0) + 1, away);
}

std::optional<_LD_Info> vdWithGuid(const Context& context, const KT_U8* guid) {
    std::optional<_LD_Info> found;
    forEach<_LD_Info>(context, 0, [&](KT_U64, const _LD_Info& vd) {
        if (memcmp(vd.LD_GUID, guid, sizeof vd.LD_GUID) == 0) found = vd;
        return !found;
    });
    if (found) return found;
    std::optional<AwayVd> back;
    KT_U64 row = 0;
    forEach<AwayVd>(context, 0, [&](KT_U64 id, const AwayVd& vd) {
        if (memcmp(vd.info.LD_GUID, guid, sizeof vd.info.LD_GUID) == 0) back = vd;
        row = id;
        return !back;
    });
    const KT_U64 limit = std::min<KT_U64>(adapterInfo(context).MaxLogicalDrive, KT_BLOCK_FREE);
    const KT_U16 id = back ? freeId(context, KIND_VD, limit) : KT_U16{KT_NO_ID};
    if (id == KT_NO_ID) return std::nullopt;
    back->info.ID = id;
    erase<AwayVd>(context, row);
    saveVd(context, Vd{back->info, back->state});
    return back->info;
}

} // namespace sim
