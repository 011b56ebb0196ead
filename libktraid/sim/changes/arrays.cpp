#include "changes/arrays.h"

#include "changes/vdPlan.h"
#include "media/blocks.h"
#include "raid/activityRecords.h"
#include "raid/candidates.h"
#include "raid/roles.h"
#include "raid/slots.h"
#include "state/events.h"

#include <algorithm>

namespace sim {

static KT_U8 checkArrayParam(const _Adapter_Info& adapter, const _CreateOrModify_DG_Param& param) {
    if (!isArrayBased(adapter)) return KT_ERR_NOT_ON_THIS_ADAPTER;
    if (param.PDCount == 0 || param.PDCount > MAX_MEMBERS) return KT_ERR_PD_COUNT;
    if (adapter.MaxPDPerDG && param.PDCount > adapter.MaxPDPerDG) return KT_ERR_PD_COUNT;
    const bool counts = param.RaidMode == KT_RAID6 || param.RaidMode == KT_RAID60;
    KT_U8 status =
        checkGeometry(adapter, Geometry{param.RaidMode, param.PDCount, counts ? param.NumParityDisk : KT_U8{0}}, true);
    if (status == KT_OK) status = checkStripe(adapter, param.StripeBlockSize);
    if (status == KT_OK) status = checkName(param.Name);
    if (status == KT_OK) status = checkOptions(adapter, {param.RaidMode, 0, param.InitializationOption});
    return status;
}

static KT_U8 renameArray(const Context& context, const _CreateOrModify_DG_Param& param) {
    Array array = {};
    KT_U8 status = findArray(context, param.DGID, array);
    if (status == KT_OK) status = checkName(param.Name);
    if (status != KT_OK) return status;
    std::copy(std::begin(param.Name), std::end(param.Name), array.info.Name);
    saveArray(context, array);
    return KT_OK;
}

static Array describeArray(const Context& context, const _CreateOrModify_DG_Param& param, KT_U16 id, KT_U64 share) {
    Array array = {};
    array.info.DGID = id;
    std::copy(std::begin(param.Name), std::end(param.Name), array.info.Name);
    array.info.RaidMode = param.RaidMode;
    array.info.NumParityDisk =
        param.RaidMode == KT_RAID6 || param.RaidMode == KT_RAID60 ? param.NumParityDisk : KT_U8{0};
    array.state.memberCount = param.PDCount;
    const KT_U8 subs = subCount(geometryOf(array));
    array.info.SubVDCount = subs > 1 ? subs : KT_U8{0};
    array.info.AdapterID = context.adapter;
    array.info.StripeBlockSize = param.StripeBlockSize;
    array.info.BlockSize = param.BlockSize;
    array.info.SmallestAvailablePDSize = share;
    array.info.TotalManagedSpace = capacityOf(geometryOf(array), share);
    std::fill(std::begin(array.info.VDIDs), std::end(array.info.VDIDs), KT_U16{KT_NO_ID});
    std::fill(std::begin(array.info.SparePDIDs), std::end(array.info.SparePDIDs), KT_U16{KT_NO_ID});
    array.info.VDSlotCount = 1;
    array.info.VDSlotSize[0] = array.info.TotalManagedSpace;
    countFreeSlots(array);
    array.state.writeCacheOn = 1;
    array.state.activity.disk = KT_NO_ID;
    std::fill(std::begin(array.state.members), std::end(array.state.members), KT_U16{KT_NO_ID});
    std::copy(param.PDIDs, param.PDIDs + param.PDCount, array.state.members);
    std::copy(std::begin(array.state.members), std::end(array.state.members), array.state.homes);
    listMembers(array);
    return array;
}

static void addArray(const Context& context, const Array& array, const std::vector<Disk>& disks) {
    saveArray(context, array);
    for (Disk disk : disks) {
        disk.state.raid |= KT_PD_MEMBER;
        disk.state.dgid = array.info.DGID;
        saveDisk(context, disk);
    }
    logEvent(context, EVT_ARRAY_CREATED, array.info.DGID);
}

// KiB that each of the disks has room for, in whole stripes.
static KT_U64 roomOnEach(const Context& context, const std::vector<Disk>& disks, KT_U16 stripe) {
    KT_U64 room = NEVER;
    for (const Disk& disk : disks)
        room = std::min(room, largestGapKib(context, disk));
    return room - room % stripe;
}

KT_U8 createArray(const Context& context, _CreateOrModify_DG_Param& param, bool sizeOnly) {
    const _Adapter_Info adapter = adapterInfo(context);
    if (param.DGID != KT_NO_ID && isArrayBased(adapter) && !sizeOnly) return renameArray(context, param);
    KT_U8 status = checkArrayParam(adapter, param);
    std::vector<Disk> disks;
    if (status == KT_OK)
        status = collectMembers(context, param.RaidMode, {param.PDIDs, param.PDCount}, Sharing::Whole, disks);
    if (status != KT_OK) return status;
    if (param.BlockSize != disks.front().info.BlockSize) return KT_ERR_BLOCK_SIZE;
    const KT_U16 id = freeId(context, KIND_DG, adapter.MaxDiskGroup);
    if (id == KT_NO_ID) return KT_ERR_NO_RESOURCE;
    const KT_U8 parity = param.RaidMode == KT_RAID6 || param.RaidMode == KT_RAID60 ? param.NumParityDisk : KT_U8{0};
    const Geometry geometry{param.RaidMode, param.PDCount, parity};
    const KT_U64 room = roomOnEach(context, disks, param.StripeBlockSize);
    const KT_U64 most = capacityOf(geometry, room);
    const KT_U64 wanted = mbToKib(param.Size); // 0 = everything
    param.Size = most;
    if (wanted > most || room == 0) return KT_ERR_NO_RESOURCE;
    const KT_U64 share = wanted == 0 ? room : shareFor(geometry, wanted, param.StripeBlockSize);
    if (share == 0) return KT_ERR_NO_RESOURCE;
    param.Size = capacityOf(geometry, share);
    if (sizeOnly) return KT_OK;
    param.DGID = id;
    addArray(context, describeArray(context, param, id, share), disks);
    return KT_OK;
}

static KT_U8 renameVd(const Context& context, const _CreateOrModify_VD_Param& param) {
    Vd vd = {};
    KT_U8 status = findVd(context, param.VDID, vd);
    if (status == KT_OK) status = checkName(param.Name);
    if (status != KT_OK) return status;
    std::copy(std::begin(param.Name), std::end(param.Name), vd.info.Name);
    saveVd(context, vd);
    return KT_OK;
}

// The slot to use for `wanted` KiB (0 = as much as one slot gives), or -1.
static int chooseSlot(const Array& array, KT_U8 asked, KT_U64 wanted) {
    int best = -1;
    for (int i = 0; i < array.info.VDSlotCount; ++i) {
        const bool fits = array.info.VDIDs[i] == KT_NO_ID && array.info.VDSlotSize[i] >= std::max<KT_U64>(wanted, 1);
        if (!fits || (asked != KT_BLOCK_FREE && asked != i)) continue;
        if (wanted != 0) return i;
        if (best < 0 || array.info.VDSlotSize[i] > array.info.VDSlotSize[best]) best = i;
    }
    return best;
}

// Cuts what the virtual disk does not need off its slot, when the array may have another slot.
static void splitSlot(Array& array, int slot, KT_U64 share, int mostSlots) {
    const KT_U64 keep = capacityOf(geometryOf(array), share);
    const KT_U64 rest = array.info.VDSlotSize[slot] - keep;
    if (rest == 0 || array.info.VDSlotCount >= mostSlots) return;
    for (int i = array.info.VDSlotCount; i > slot + 1; --i) {
        array.info.VDSlotSize[i] = array.info.VDSlotSize[i - 1];
        array.info.VDIDs[i] = array.info.VDIDs[i - 1];
    }
    array.info.VDSlotSize[slot] = keep;
    array.info.VDSlotSize[slot + 1] = rest;
    array.info.VDIDs[slot + 1] = KT_NO_ID;
    ++array.info.VDSlotCount;
}

static VdPlan planInSlot(Array& array, int slot, const _CreateOrModify_VD_Param& param, KT_U64 size, int mostSlots) {
    VdPlan plan = {};
    plan.geometry = geometryOf(array);
    plan.stripe = array.info.StripeBlockSize;
    plan.sectorCoefficient = param.SectorCoefficient;
    plan.cachePolicy = param.CachePolicy;
    plan.initialization = param.InitializationOption;
    std::copy(std::begin(param.Name), std::end(param.Name), plan.name);
    plan.dgid = array.info.DGID;
    plan.size = size;
    plan.startKib = 0;
    for (int i = 0; i < slot; ++i)
        plan.startKib += slotShare(array, i);
    splitSlot(array, slot, shareFor(plan.geometry, size, plan.stripe), mostSlots);
    plan.disks.assign(array.state.members, array.state.members + plan.geometry.disks);
    plan.kib.assign(plan.geometry.disks, slotShare(array, slot));
    return plan;
}

static KT_U8 checkVdParam(const Context& context, const Array& array, const _CreateOrModify_VD_Param& param) {
    const _Adapter_Info adapter = adapterInfo(context);
    if (array.info.Status != ARRAY_FUNCTIONAL) return KT_ERR_ARRAY_DISK_MISSING;
    const KT_U8 activity = array.state.activity.kind;
    if (activity == KT_BGA_MIGRATION || activity == KT_BGA_COPY_BACK) return KT_ERR_ARRAY_BUSY;
    if (param.RaidMode != array.info.RaidMode) return KT_ERR_INVALID_RAID_MODE;
    if (param.StripeBlockSize != array.info.StripeBlockSize) return KT_ERR_STRIPE_MISMATCH;
    if (param.BlockSize != array.info.BlockSize) return KT_ERR_BLOCK_SIZE;
    const bool counts = param.RaidMode == KT_RAID6 || param.RaidMode == KT_RAID60;
    if (counts && param.NumParityDisk != array.info.NumParityDisk) return KT_ERR_PARITY_COUNT;
    if (param.DGSlotNum != KT_BLOCK_FREE) {
        if (param.DGSlotNum >= array.info.VDSlotCount) return KT_ERR_OUT_OF_RANGE;
        if (array.info.VDIDs[param.DGSlotNum] != KT_NO_ID) return KT_ERR_NO_RESOURCE;
    }
    const KT_U8 status = checkOptions(adapter, {param.RaidMode, param.CachePolicy, param.InitializationOption,
                                                param.RoundingScheme, param.SectorCoefficient});
    return status == KT_OK ? checkName(param.Name) : status;
}

static KT_U8 createInSlot(const Context& context, Array& array, _CreateOrModify_VD_Param& param, KT_U64 wanted) {
    KT_U8 status = checkVdParam(context, array, param);
    if (status != KT_OK) return status;
    const int slot = chooseSlot(array, param.DGSlotNum, roundSize(wanted, param.RoundingScheme));
    if (slot < 0) return KT_ERR_NO_RESOURCE;
    const KT_U64 size = roundSize(wanted ? wanted : array.info.VDSlotSize[slot], param.RoundingScheme);
    if (size < KIB_PER_MB) return KT_ERR_NO_RESOURCE;
    const int mostSlots = std::clamp<int>(adapterInfo(context).MaxVDPerDG, 1, MAX_SLOTS);
    const bool whole = isWhole(wanted, size, array.info.VDSlotSize[slot]);
    VdPlan plan = planInSlot(array, slot, param, size, mostSlots);
    plan.whole = whole;
    status = buildVd(context, plan, param.VDID);
    if (status != KT_OK) return status;
    array.info.VDIDs[slot] = param.VDID;
    countFreeSlots(array);
    save(context, array.info.DGID, array.info);
    showActivity(context, param.VDID);
    return KT_OK;
}

KT_U8 createVdInArray(const Context& context, _CreateOrModify_VD_Param& param) {
    if (!isArrayBased(adapterInfo(context))) return KT_ERR_NOT_ON_THIS_ADAPTER;
    if (param.VDID != KT_NO_ID) return renameVd(context, param);
    Array array = {};
    const KT_U8 status = findArray(context, param.DGID, array);
    if (status != KT_OK) return status;
    const KT_U8 created = createInSlot(context, array, param, mbToKib(param.Size));
    if (created != KT_OK) param.VDID = KT_NO_ID;
    return created;
}

static std::optional<KT_U16> arrayOfDisks(const Context& context, const _Create_LD_Param& param) {
    std::vector<KT_U16> asked(param.HDIDs, param.HDIDs + std::min<int>(param.HDCount, MAX_MEMBERS));
    std::sort(asked.begin(), asked.end());
    std::optional<KT_U16> found;
    forEach<_DG_Info>(context, 0, [&](KT_U64 id, const _DG_Info& array) {
        std::vector<KT_U16> members(array.PDIDs, array.PDIDs + array.PDCount);
        std::sort(members.begin(), members.end());
        if (array.RaidMode == param.RaidMode && members == asked) found = static_cast<KT_U16>(id);
        return !found;
    });
    return found;
}

static _CreateOrModify_VD_Param vdParamFor(const _Create_LD_Param& param, const Array& array) {
    _CreateOrModify_VD_Param vd = {};
    vd.VDID = KT_NO_ID;
    vd.DGID = array.info.DGID;
    std::copy(std::begin(param.Name), std::end(param.Name), vd.Name);
    vd.RaidMode = param.RaidMode;
    vd.NumParityDisk = param.NumParityDisk;
    vd.DGSlotNum = KT_BLOCK_FREE;
    vd.StripeBlockSize = param.StripeBlockSize;
    vd.RoundingScheme = param.RoundingScheme;
    vd.CachePolicy = param.CachePolicy;
    vd.InitializationOption = param.InitializationOption;
    vd.SectorCoefficient = param.SectorCoefficient;
    vd.BlockSize = array.info.BlockSize;
    return vd;
}

static KT_U8 newArrayFor(const Context& context, const _Create_LD_Param& param, KT_U16& id) {
    _CreateOrModify_DG_Param dg = {};
    dg.DGID = KT_NO_ID;
    std::copy(std::begin(param.Name), std::end(param.Name), dg.Name);
    dg.RaidMode = param.RaidMode;
    dg.NumParityDisk = param.NumParityDisk;
    dg.StripeBlockSize = param.StripeBlockSize;
    dg.PDCount = param.HDCount;
    std::copy(std::begin(param.HDIDs), std::end(param.HDIDs), dg.PDIDs);
    const auto first = find<_HD_Info>(context, param.HDIDs[0]);
    dg.BlockSize = first ? first->BlockSize : 0;
    const KT_U8 status = createArray(context, dg, false);
    id = dg.DGID;
    return status;
}

KT_U8 createLdInArray(const Context& context, const _Create_LD_Param& param, KT_U64 wantedKib) {
    if (param.HDCount > MAX_MEMBERS) return KT_ERR_PD_COUNT;
    KT_U16 id = arrayOfDisks(context, param).value_or(KT_U16{KT_NO_ID});
    const KT_U8 status = id == KT_NO_ID ? newArrayFor(context, param, id) : KT_U8{KT_OK};
    Array array = {};
    if (status != KT_OK || findArray(context, id, array) != KT_OK) return status;
    _CreateOrModify_VD_Param vd = vdParamFor(param, array);
    return createInSlot(context, array, vd, wantedKib);
}

// The free disks that go best together: the most alike ones, in order of their ids.
static std::vector<KT_U16> quickCreateDisks(const Context& context) {
    std::vector<Disk> candidates;
    forEach<_HD_Info>(context, 0, [&](KT_U64 id, const _HD_Info&) {
        Disk disk = {};
        const bool usable = checkNewMember(context, static_cast<KT_U16>(id), Sharing::Whole, disk) == KT_OK;
        if (usable && !disk.state.hasMbr) candidates.push_back(disk);
        return true;
    });
    std::vector<KT_U16> best;
    for (const Disk& model : candidates) {
        std::vector<KT_U16> alike;
        for (const Disk& disk : candidates) {
            if (disk.info.HDType == model.info.HDType && disk.info.BlockSize == model.info.BlockSize)
                alike.push_back(disk.state.config.HDID);
        }
        if (alike.size() > best.size()) best = alike;
    }
    return best;
}

KT_U8 quickCreate(const Context& context, KT_U8 type) {
    const _Adapter_Info adapter = adapterInfo(context);
    if (!isArrayBased(adapter)) return KT_ERR_NOT_ON_THIS_ADAPTER;
    if (type > 1) return KT_ERR_INVALID_PARAMETER;
    const std::vector<KT_U16> disks = quickCreateDisks(context);
    const size_t most = adapter.MaxPDPerDG ? adapter.MaxPDPerDG : MAX_MEMBERS;
    _Create_LD_Param param = {};
    param.HDCount = static_cast<KT_U8>(std::min({disks.size(), most, size_t{MAX_MEMBERS}}));
    if (param.HDCount < 2) return KT_ERR_NO_RESOURCE;
    std::copy(disks.begin(), disks.begin() + param.HDCount, param.HDIDs);
    param.RaidMode = param.HDCount == 2 ? KT_RAID1 : KT_RAID5;
    if (!isLevelEnabled(adapter, param.RaidMode)) param.RaidMode = KT_RAID0;
    param.StripeBlockSize = defaultStripe();
    param.SectorCoefficient = 1;
    param.CachePolicy = type == 1 ? 0 : KT_CACHE_OFF;
    static const char name[] = "Auto";
    std::copy(std::begin(name), std::end(name), param.Name);
    return createLdInArray(context, param, 0);
}

KT_U8 deleteArray(const Context& context, KT_U16 id) {
    if (!isArrayBased(adapterInfo(context))) return KT_ERR_NOT_ON_THIS_ADAPTER;
    Array array = {};
    const KT_U8 status = findArray(context, id, array);
    if (status != KT_OK) return status;
    for (int i = 0; i < array.info.VDSlotCount; ++i)
        if (array.info.VDIDs[i] != KT_NO_ID) return KT_ERR_ARRAY_HAS_VD;
    if (isAlive(array.state.activity)) return KT_ERR_ARRAY_BUSY;
    erase<_DG_Info>(context, id);
    erase<DgState>(context, id);
    logEvent(context, EVT_ARRAY_DELETED, id);
    for (int i = 0; i < array.info.SparePDCount; ++i)
        releaseDisk(context, array.info.SparePDIDs[i]);
    for (int i = 0; i < array.state.memberCount; ++i)
        releaseDisk(context, array.state.members[i]);
    return KT_OK;
}

} // namespace sim
