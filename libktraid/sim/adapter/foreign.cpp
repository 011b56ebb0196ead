#include "adapter/foreign.h"

#include "adapter/arrays.h"
#include "adapter/blocks.h"
#include "adapter/jobs.h"
#include "adapter/members.h"
#include "adapter/rebuild.h"
#include "events.h"

#include <algorithm>
#include <cstring>
#include <map>

namespace sim {

static const KT_U16 EVT_IMPORTED = 9;

static bool isForeign(const _LD_Info& vd) {
    return vd.Status == KT_VD_FOREIGN || vd.Status == KT_VD_IMPORTABLE;
}

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
    if (dgid == KT_NO_ID) {
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

static KT_U8 importArray(const Context& context, const _LD_Info& vd) {
    const _Adapter_Info adapter = adapterInfo(context);
    const std::vector<_LD_Info> vds = companions(context, vd);
    const KT_U16 id = freeId(context, KIND_DG, adapter.MaxDiskGroup);
    if (id == KT_NO_ID) return KT_ERR_NO_RESOURCE;
    if (vds.empty() || vds.size() > std::max<size_t>(adapter.MaxVDPerDG, 1)) return KT_ERR_VD_NOT_IMPORTABLE;
    saveArray(context, arrayAround(context, vds, groupOf(context, Owner{OwnerKind::Vd, vd.ID}), id));
    logEvent(context, EVT_ARRAY, 0, id, SEV_INFO);
    for (const _LD_Info& each : vds)
        comeHome(context, each, id);
    refreshArrayStatus(context, id);
    return KT_OK;
}

KT_U8 importVd(const Context& context, KT_U16 id) {
    Vd vd = {};
    const KT_U8 status = findVd(context, id, vd);
    if (status != KT_OK) return status;
    if (vd.info.Status == KT_VD_NOT_IMPORTABLE) return KT_ERR_VD_NOT_IMPORTABLE;
    if (!isForeign(vd.info)) return KT_ERR_VD_STATUS;
    if (!isComplete(context, vd.info)) return KT_ERR_VD_NOT_IMPORTABLE;
    if (isArrayBased(adapterInfo(context))) {
        const KT_U8 imported = importArray(context, vd.info);
        if (imported != KT_OK) return imported;
    } else {
        comeHome(context, vd.info, KT_NO_ID);
    }
    engageSpares(context);
    arbitrate(context);
    return KT_OK;
}

KT_U8 reportVd(const Context& context, KT_U16 id) {
    Vd vd = {};
    const KT_U8 status = findVd(context, id, vd);
    if (status != KT_OK) return status;
    if (vd.info.Status == KT_VD_OFFLINE || vd.info.Status == KT_VD_NOT_IMPORTABLE) return KT_ERR_VD_NOT_REPORTABLE;
    if (!isUsable(vd.info) && vd.info.Status != KT_VD_USING_TABLE) return KT_ERR_VD_STATUS;
    vd.state.reported = 1;
    save(context, id, vd.state);
    return KT_OK;
}

/* Disks arriving from elsewhere. */

struct Arrival {
    Store& store;
    KT_U8 adapter;
    std::map<KT_U16, KT_U16> disks; /* id there -> id here */
};

static KT_U8 bringDisk(const Context& context, Arrival& arrival, KT_U16 pd) {
    auto info = find<_HD_Info>(arrival.store, arrival.adapter, pd);
    auto state = find<PdState>(arrival.store, arrival.adapter, pd);
    if (!info || !state) return KT_ERR_PD_MISSING;
    const _Adapter_Info adapter = adapterInfo(context);
    const KT_U16 id = freeId(context, KIND_PD, adapter.MaxHD_Ext ? adapter.MaxHD_Ext : adapter.MaxHD);
    if (id == KT_NO_ID) return KT_ERR_NO_RESOURCE;
    info->AdapterID = context.adapter;
    info->Link.Self.DevID = id;
    info->Link.Parent = _Link_Endpoint{};
    info->Link.Parent.PhyCnt = 1;
    info->Link.Parent.PhyID[0] = static_cast<KT_U8>(adapter.PortCount ? id % adapter.PortCount : 0);
    info->Link.Parent.EnclosureID = KT_NO_ID;
    const bool used = find<_HD_Block_Info>(arrival.store, arrival.adapter, pd).has_value();
    state->raid = static_cast<KT_U8>((used ? KT_PD_FOREIGN : 0) | (state->health == PD_FAILED ? KT_PD_OFFLINE : 0));
    state->dgid = KT_NO_ID;
    state->config.HDID = id;
    state->patrol = Activity{};
    state->patrol.disk = KT_NO_ID;
    save(context, id, *info);
    save(context, id, *state);
    logEvent(context, EVT_PD, 1, id, SEV_INFO);
    arrival.disks[pd] = id;
    return KT_OK;
}

static bool isKnownHere(const Context& context, const _LD_Info& vd) {
    bool known = false;
    forEachVd(context,
              [&](const Vd& mine) { known = known || memcmp(mine.info.LD_GUID, vd.LD_GUID, sizeof vd.LD_GUID) == 0; });
    return known;
}

static KT_U8 bringVd(const Context& context, const Arrival& arrival, _LD_Info vd) {
    const bool migrating = find<VdTarget>(arrival.store, arrival.adapter, vd.ID).has_value();
    const bool known = isKnownHere(context, vd);
    const _Adapter_Info adapter = adapterInfo(context);
    Vd mine = {vd, find<VdState>(arrival.store, arrival.adapter, vd.ID).value_or(VdState{})};
    mine.info.ID = freeId(context, KIND_VD, std::min<KT_U64>(adapter.MaxLogicalDrive, KT_BLOCK_FREE));
    if (mine.info.ID == KT_NO_ID) return KT_ERR_NO_VD_ID;
    mine.info.DGID = KT_NO_ID;
    mine.info.AdapterID = context.adapter;
    mine.info.BGAStatus = KT_STATE_NONE;
    mine.state.activity = Activity{};
    mine.state.activity.disk = mine.state.linkedDisk = KT_NO_ID;
    mine.state.reported = 0;
    for (int i = 0; i < geometryOf(vd).disks; i++) {
        auto block = find<_Block_Info>(arrival.store, arrival.adapter, vd.BlockIDs[i]);
        const auto here = block ? arrival.disks.find(block->HDID) : arrival.disks.end();
        mine.info.BlockIDs[i] = mine.state.homes[i] = KT_NO_ID;
        if (!block || here == arrival.disks.end()) continue;
        block->HDID = mine.state.homes[i] = here->second;
        block->LDID = mine.info.ID;
        mine.info.BlockIDs[i] = addBlock(context, *block);
    }
    saveVd(context, mine);
    mine.info.Status = isComplete(context, mine.info) && !migrating ? KT_VD_IMPORTABLE : KT_VD_NOT_IMPORTABLE;
    if (known) mine.info.Status = KT_VD_PLUGIN_CONFLICTED;
    save(context, mine.info.ID, mine.info);
    return KT_OK;
}

static bool touches(const Arrival& arrival, const _LD_Info& vd) {
    for (int i = 0; i < geometryOf(vd).disks; i++) {
        const auto block = find<_Block_Info>(arrival.store, arrival.adapter, vd.BlockIDs[i]);
        if (block && arrival.disks.count(block->HDID)) return true;
    }
    return false;
}

KT_U8 insertForeignDisks(const Context& context, Store& other, KT_U8 otherAdapter, const std::vector<KT_U16>& disks) {
    Arrival arrival{other, otherAdapter, {}};
    for (const KT_U16 pd : disks) {
        const KT_U8 status = bringDisk(context, arrival, pd);
        if (status != KT_OK) return status;
    }
    std::vector<_LD_Info> vds;
    forEach<_LD_Info>(other, otherAdapter, 0, [&](KT_U64, const _LD_Info& vd) {
        if (touches(arrival, vd)) vds.push_back(vd);
        return true;
    });
    for (const _LD_Info& vd : vds) {
        const KT_U8 status = bringVd(context, arrival, vd);
        if (status != KT_OK) return status;
    }
    return KT_OK;
}

} // namespace sim
