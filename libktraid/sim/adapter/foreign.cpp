#include "adapter/foreign.h"

#include "adapter/arrays.h"
#include "adapter/blocks.h"
#include "adapter/diskIds.h"
#include "adapter/encryption.h"
#include "adapter/jobs.h"
#include "adapter/life.h"
#include "adapter/members.h"
#include "adapter/peripherals.h"
#include "adapter/rebuild.h"
#include "adapter/surface.h"
#include "events.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <set>

namespace sim {

static const KT_U16 EVT_IMPORTED = 9;

/* Whether enough members are there, none of them in use here. */
static bool isComplete(const Context& context, const _LD_Info& vd) {
    const Group group = groupOf(context, Owner{OwnerKind::Vd, vd.ID});
    bool lost[MAX_MEMBERS] = {};
    bool hdd[MAX_MEMBERS] = {};
    for (size_t i = 0; i < group.members.size(); i++) {
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
    mine.state.reported = 1;
    saveVd(context, mine);
    if (dgid == KT_NO_ID || isConflicted(vd)) {
        logEvent(context, EVT_VD, 1, vd.ID, SEV_INFO, 0, 0, 0, isHybridLevel(vd.RaidMode) ? 1 : 0);
    } else {
        logEvent(context, EVT_VD, EVT_IMPORTED, vd.ID, SEV_INFO, dgid);
    }
    refreshVdStatus(context, vd.ID);
}

/* KiB from the start of the disks to the virtual disk. */
static KT_U64 startKib(const Context& context, const _LD_Info& vd) {
    for (int i = 0; i < geometryOf(vd).disks; i++) {
        const auto block = find<_Block_Info>(context, vd.BlockIDs[i]);
        if (block) return sectorsToKib(block->StartLBA, block->BlockSize);
    }
    return 0;
}

/* The foreign virtual disks that lie on the same disks as this one, in order of their place. */
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

/* An array around the virtual disks, its slots where they lie. */
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

/* An array has its disks to itself: what else lies on them must be deleted first. */
static bool shareDisks(const Context& context, const std::vector<_LD_Info>& vds, const Group& group) {
    for (const KT_U16 pd : group.members) {
        const _HD_Block_Info list = blocksOf(context, pd);
        for (int i = 0; i < std::min<int>(list.BlkCount, MAX_MEMBERS); i++) {
            const auto block = find<_Block_Info>(context, list.BlkIDs[i]);
            if (block && std::none_of(vds.begin(), vds.end(), [&](const _LD_Info& vd) { return vd.ID == block->LDID; }))
                return true;
        }
    }
    return false;
}

/* The virtual disk and those that come along. */
static std::vector<_LD_Info> comingAlong(const Context& context, const _LD_Info& vd) {
    return isArrayBased(adapterInfo(context)) ? companions(context, vd) : std::vector<_LD_Info>{vd};
}

/* Whether the adapter could take the virtual disk over, with those that would come along. */
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

static KT_U8 importArray(const Context& context, const _LD_Info& vd) {
    const std::vector<_LD_Info> vds = companions(context, vd);
    const KT_U16 id = freeId(context, KIND_DG, adapterInfo(context).MaxDiskGroup);
    if (id == KT_NO_ID) return KT_ERR_NO_RESOURCE;
    const Group group = groupOf(context, Owner{OwnerKind::Vd, vd.ID});
    saveArray(context, arrayAround(context, vds, group, id));
    logEvent(context, EVT_ARRAY, 0, id, SEV_INFO);
    for (const _LD_Info& each : vds)
        comeHome(context, each, id);
    refreshArrayStatus(context, id);
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

void reviewForeign(const Context& context) {
    std::vector<Vd> foreign;
    forEachVd(context, [&](const Vd& vd) {
        if (isForeign(vd.info)) foreign.push_back(vd);
    });
    for (Vd& vd : foreign) {
        if (!hasBlocks(context, vd.info)) {
            rememberAway(context, vd);
            erase<_LD_Info>(context, vd.info.ID);
            erase<VdState>(context, vd.info.ID);
            continue;
        }
        if (isConflicted(vd.info)) continue;
        const KT_U8 status = canImport(context, vd.info) ? KT_VD_IMPORTABLE : KT_VD_NOT_IMPORTABLE;
        if (vd.info.Status == status || (vd.info.Status == KT_VD_FOREIGN && status == KT_VD_IMPORTABLE)) continue;
        vd.info.Status = status;
        save(context, vd.info.ID, vd.info);
    }
}

static bool isPulled(const Context& context, const KT_U8* guid) {
    bool pulled = false;
    forEach<PulledBlocks>(context, 0, [&](KT_U64, const PulledBlocks& disk) {
        pulled = std::any_of(disk.entries, disk.entries + std::min<int>(disk.count, MAX_MEMBERS),
                             [&](const PulledBlock& entry) { return memcmp(entry.guid, guid, 8) == 0; });
        return !pulled;
    });
    return pulled;
}

void rememberAway(const Context& context, const Vd& vd) {
    if (!isPulled(context, vd.info.LD_GUID)) return;
    AwayVd away{vd.info, vd.state};
    away.state.unfinished = away.state.unfinished || find<VdTarget>(context, vd.info.ID) ? 1 : 0;
    away.info.DGID = KT_NO_ID;
    away.info.BGAStatus = KT_STATE_NONE;
    if (!isConflicted(vd.info)) away.info.Status = KT_VD_NOT_IMPORTABLE;
    away.state.activity = Activity{};
    away.state.activity.disk = away.state.linkedDisk = KT_NO_ID;
    away.state.reported = 0;
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

/* Disks arriving from elsewhere. */

struct Arrival {
    Store& store;
    KT_U8 adapter;
    std::map<KT_U16, KT_U16> disks; /* id there -> id here */
    std::set<KT_U16> strangers;     /* those of them, by their ids here, that had to be told apart from disks here */
};

static bool isDiskHere(const Context& context, const _HD_Info& disk) {
    bool here = false;
    forEach<_HD_Info>(context, 0, [&](KT_U64, const _HD_Info& mine) {
        here = memcmp(mine.WWN, disk.WWN, sizeof disk.WWN) == 0;
        return !here;
    });
    return here;
}

/* Labs number their disks alike; two adapters' disks are never the same one. Answers whether they had to be told apart.
 */
static bool tellApart(const Context& context, _HD_Info& disk) {
    static const char MARKS[] = "123456789ABCDEFGHJKLMNPQRSTUVWXYZ";
    const bool stranger = isDiskHere(context, disk);
    for (size_t i = 0; i + 1 < sizeof MARKS && isDiskHere(context, disk); i++) {
        disk.WWN[4]++;
        disk.Link.Self.SAS_Address[4] = disk.WWN[4];
        disk.SerialNo[strnlen(reinterpret_cast<const char*>(disk.SerialNo), sizeof disk.SerialNo) / 2] =
            static_cast<KT_U8>(MARKS[i]);
    }
    return stranger;
}

static KT_U8 bringDisk(const Context& context, Arrival& arrival, KT_U16 pd) {
    auto info = find<_HD_Info>(arrival.store, arrival.adapter, pd);
    auto state = find<PdState>(arrival.store, arrival.adapter, pd);
    if (!info || !state) return KT_ERR_PD_MISSING;
    if (arrival.disks.count(pd)) return KT_ERR_INVALID_PARAMETER;
    const _Adapter_Info adapter = adapterInfo(context);
    /* SATA disks do on SAS ports, the reverse does not. */
    if ((info->HDType & KT_HD_SAS) && !(adapter.PortSupportType & KT_HD_SAS)) return KT_ERR_NOT_SUPPORTED;
    const KT_U16 id = freeDiskId(context);
    if (id == KT_NO_ID) return KT_ERR_NO_RESOURCE;
    if (tellApart(context, *info)) arrival.strangers.insert(id);
    info->AdapterID = context.adapter;
    info->Link.Self.DevID = id;
    info->Link.Self.EnclosureID = KT_NO_ID;
    info->Link.Parent = _Link_Endpoint{};
    info->Link.Parent.PhyCnt = 1;
    info->Link.Parent.PhyID[0] = static_cast<KT_U8>(adapter.PortCount ? id % adapter.PortCount : 0);
    info->Link.Parent.EnclosureID = KT_NO_ID;
    const bool failed = state->health == PD_FAILED;
    state->raid = failed ? KT_PD_OFFLINE : 0;
    state->config.Online = failed ? 0 : 1;
    state->config.HDID = id;
    state->dgid = KT_NO_ID;
    state->hasOs = 0; /* what runs, runs elsewhere */
    state->patrol = Activity{};
    state->patrol.disk = KT_NO_ID;
    save(context, id, *info);
    save(context, id, *state);
    forgetDisk(context, id);
    const Context there{arrival.store, arrival.adapter, context.now};
    copySurface(there, pd, context, id);
    moveLife(there, pd, context, id);
    if (const auto cipher = find<DiskCipher>(arrival.store, arrival.adapter, pd)) save(context, id, *cipher);
    logEvent(context, EVT_PD, 1, id, SEV_INFO);
    arrival.disks[pd] = id;
    return KT_OK;
}

/* What arrives of the virtual disk: whole blocks only, by slot; an unfinished rebuild leaves nothing to rely on. */
static std::map<int, _Block_Info> arrivingBlocks(const Arrival& arrival, const _LD_Info& vd) {
    std::map<int, _Block_Info> blocks;
    for (int i = 0; i < geometryOf(vd).disks; i++) {
        auto block = find<_Block_Info>(arrival.store, arrival.adapter, vd.BlockIDs[i]);
        const auto here = block ? arrival.disks.find(block->HDID) : arrival.disks.end();
        if (here == arrival.disks.end() || block->Status != BLOCK_GOOD) continue;
        block->HDID = here->second;
        blocks[i] = *block;
    }
    return blocks;
}

static bool isSameMake(const _LD_Info& mine, const _LD_Info& vd) {
    return mine.RaidMode == vd.RaidMode && mine.HDCount == vd.HDCount && mine.Size == vd.Size;
}

/* Whether `mine` has none of what arrives. */
static bool lacks(const _LD_Info& mine, const std::map<int, _Block_Info>& blocks) {
    return std::all_of(blocks.begin(), blocks.end(),
                       [&](const auto& entry) { return mine.BlockIDs[entry.first] == KT_NO_ID; });
}

/* Whether `mine`, in use here with the same GUID, is the arriving virtual disk, a part of which was imported before.
   Its missing member may have been made up for since. */
static bool isImportedPart(const Arrival& arrival, const _LD_Info& mine, const _LD_Info& vd,
                           const std::map<int, _Block_Info>& blocks) {
    if (isForeign(mine) || !isSameMake(mine, vd)) return false;
    return lacks(mine, blocks) || std::none_of(blocks.begin(), blocks.end(), [&](const auto& entry) {
               return arrival.strangers.count(entry.second.HDID) != 0;
           });
}

static Vd newArrival(const Context& context, const Arrival& arrival, const _LD_Info& vd) {
    Vd mine = {vd, find<VdState>(arrival.store, arrival.adapter, vd.ID).value_or(VdState{})};
    const KT_U64 limit = std::min<KT_U64>(adapterInfo(context).MaxLogicalDrive, KT_BLOCK_FREE);
    mine.info.ID = freeId(context, KIND_VD, limit);
    mine.info.DGID = KT_NO_ID;
    mine.info.AdapterID = context.adapter;
    mine.info.BGAStatus = KT_STATE_NONE;
    mine.info.Status = KT_VD_NOT_IMPORTABLE;
    mine.state.activity = Activity{};
    mine.state.activity.disk = mine.state.linkedDisk = KT_NO_ID;
    mine.state.reported = mine.state.hasOs = 0;
    mine.state.unfinished = find<VdTarget>(arrival.store, arrival.adapter, vd.ID) ? 1 : 0;
    std::fill(std::begin(mine.info.BlockIDs), std::end(mine.info.BlockIDs), KT_U16{KT_NO_ID});
    std::fill(std::begin(mine.state.homes), std::end(mine.state.homes), KT_U16{KT_NO_ID});
    return mine;
}

/* The part that came before, or a new virtual disk, in conflict when the other part is in use already. Labs number
   these alike, too: a GUID that another one has here is counted up, always the same way, so that the parts of one find
   each other. */
static Vd placeOf(const Context& context, const Arrival& arrival, const _LD_Info& vd,
                  const std::map<int, _Block_Info>& blocks) {
    Vd place = newArrival(context, arrival, vd);
    for (int attempt = 0; attempt < 256; attempt++) {
        bool known = false;
        bool found = false;
        forEachVd(context, [&](const Vd& mine) {
            if (memcmp(mine.info.LD_GUID, place.info.LD_GUID, sizeof place.info.LD_GUID) != 0) return;
            known = true;
            found = isForeign(mine.info) && isSameMake(mine.info, vd) && lacks(mine.info, blocks);
            if (found) place = mine;
            if (isImportedPart(arrival, mine.info, vd, blocks)) place.info.Status = KT_VD_PLUGIN_CONFLICTED;
        });
        if (!known || found) break;
        place.info.LD_GUID[2]++;
    }
    return place;
}

static KT_U8 bringVd(const Context& context, const Arrival& arrival, const _LD_Info& vd) {
    const std::map<int, _Block_Info> blocks = arrivingBlocks(arrival, vd);
    if (blocks.empty()) return KT_OK;
    Vd mine = placeOf(context, arrival, vd, blocks);
    if (mine.info.ID == KT_NO_ID) return KT_ERR_NO_VD_ID;
    for (const auto& [slot, arriving] : blocks) {
        _Block_Info block = arriving;
        block.LDID = mine.info.ID;
        mine.info.BlockIDs[slot] = addBlock(context, block);
        if (mine.info.BlockIDs[slot] == KT_NO_ID) return KT_ERR_NO_RESOURCE;
        mine.state.homes[slot] = block.HDID;
        Disk disk = {};
        if (findDisk(context, block.HDID, disk) != KT_OK) continue;
        disk.state.raid |= KT_PD_FOREIGN;
        saveDisk(context, disk);
    }
    saveVd(context, mine);
    return KT_OK;
}

KT_U8 insertForeignDisks(const Context& context, Store& other, KT_U8 otherAdapter, const std::vector<KT_U16>& disks,
                         std::vector<KT_U16>& ids) {
    Arrival arrival{other, otherAdapter, {}, {}};
    for (const KT_U16 pd : disks) {
        const KT_U8 status = bringDisk(context, arrival, pd);
        if (status != KT_OK) return status;
        ids.push_back(arrival.disks[pd]);
    }
    std::vector<_LD_Info> vds;
    forEach<_LD_Info>(other, otherAdapter, 0, [&](KT_U64, const _LD_Info& vd) {
        vds.push_back(vd);
        return true;
    });
    for (const _LD_Info& vd : vds) {
        const KT_U8 status = bringVd(context, arrival, vd);
        if (status != KT_OK) return status;
    }
    reviewForeign(context);
    for (const KT_U16 id : ids)
        reviewDiskCipher(context, id);
    return KT_OK;
}

} // namespace sim
