#include "raid/volumes.h"

#include "media/blocks.h"
#include "media/disks.h"
#include "raid/keptCaches.h"
#include "state/due.h"
#include "state/events.h"

#include <algorithm>

namespace sim {

KT_U8 findVd(const Context& context, KT_U16 id, Vd& vd) {
    const auto info = find<_LD_Info>(context, id);
    if (!info) {
        const _Adapter_Info adapter = adapterInfo(context);
        return id < adapter.MaxLogicalDrive ? KT_ERR_VD_MISSING : KT_ERR_INVALID_VD;
    }
    vd = Vd{*info, find<VdState>(context, id).value_or(VdState{})};
    return KT_OK;
}

KT_U8 findArray(const Context& context, KT_U16 id, Array& array) {
    const auto info = find<_DG_Info>(context, id);
    if (!info) return KT_ERR_INVALID_ARRAY;
    array = Array{*info, find<DgState>(context, id).value_or(DgState{})};
    return KT_OK;
}

void saveVd(const Context& context, const Vd& vd) {
    save(context, vd.info.ID, vd.info);
    save(context, vd.info.ID, vd.state);
}

void saveArray(const Context& context, const Array& array) {
    save(context, array.info.DGID, array.info);
    save(context, array.info.DGID, array.state);
}

Geometry geometryOf(const _LD_Info& vd) {
    return Geometry{vd.RaidMode, std::min<KT_U8>(vd.HDCount, MAX_MEMBERS), vd.NumParityDisk};
}

Geometry geometryOf(const Array& array) {
    return Geometry{array.info.RaidMode, array.state.memberCount, array.info.NumParityDisk};
}

bool isUsable(const _LD_Info& vd) {
    return vd.Status == KT_VD_ONLINE || vd.Status == KT_VD_DEGRADED || vd.Status == KT_VD_PARTIALLY_OPTIMAL;
}

bool runsSystem(const Vd& vd) {
    return vd.state.hasOs && (isUsable(vd.info) || vd.info.Status == KT_VD_USING_TABLE);
}

bool runsSystem(const PdState& disk) {
    return disk.hasOs && !(disk.raid & KT_PD_OFFLINE);
}

KT_U64 shareOf(const Context& context, const _LD_Info& vd) {
    KT_U64 share = 0;
    for (int i = 0; i < geometryOf(vd).disks; ++i) {
        const auto block = find<_Block_Info>(context, vd.BlockIDs[i]);
        if (block) share = std::max(share, sectorsToKib(block->Size, block->BlockSize));
    }
    return share;
}

void listMembers(Array& array) {
    std::fill(std::begin(array.info.PDIDs), std::end(array.info.PDIDs), KT_U16{KT_NO_ID});
    array.info.PDCount = 0;
    for (int i = 0; i < array.state.memberCount; ++i)
        if (array.state.members[i] != KT_NO_ID) array.info.PDIDs[array.info.PDCount++] = array.state.members[i];
}

static bool isHardDisk(const Context& context, KT_U16 pd) {
    const auto disk = find<_HD_Info>(context, pd);
    return disk && disk->HD_SSD_Type == 0;
}

// The status that the blocks in the slots give; `statusWithLost` of the level.
static KT_U8 statusOf(const Context& context, const _LD_Info& vd, const KT_U16* homes, const BlockTest& isLost) {
    bool lost[MAX_MEMBERS] = {};
    bool hdd[MAX_MEMBERS] = {};
    const Geometry geometry = geometryOf(vd);
    const bool hybrid = isHybridLevel(geometry.level);
    for (int i = 0; i < geometry.disks; ++i) {
        const auto block = vd.BlockIDs[i] == KT_NO_ID ? std::nullopt : find<_Block_Info>(context, vd.BlockIDs[i]);
        lost[i] = !block || block->Status != BLOCK_GOOD || (isLost && isLost(*block));
        // A pulled disk cannot be asked any more; a hybrid's last slot is its hard disk unless it says otherwise.
        if (hybrid) hdd[i] = block ? isHardDisk(context, block->HDID) : isHardDisk(context, homes[i]) || i > 0;
    }
    return statusWithLost(geometry, lost, hdd);
}

KT_U8 statusWithout(const Context& context, const Vd& vd, const BlockTest& isLost) {
    return statusOf(context, vd.info, vd.state.homes, isLost);
}

static int badness(KT_U8 status) {
    switch (status) {
    case KT_VD_ONLINE:
        return 0;
    case KT_VD_PARTIALLY_OPTIMAL:
        return 1;
    case KT_VD_DEGRADED:
        return 2;
    default:
        return 3;
    }
}

EventParams vdParams(KT_U8 level, KT_U32 value) {
    return {value, 0, 0, isHybridLevel(level) ? 1U : 0U};
}

static void logStatus(const Context& context, const _LD_Info& vd, KT_U8 status) {
    // There is an event for working again as it should, none for a partial improvement: the rebuild that brought it has
    // logged its own end.
    const bool regains = badness(status) < badness(vd.Status) && isUsable(vd);
    if (regains && status != KT_VD_ONLINE) return;
    switch (status) {
    case KT_VD_ONLINE:
        logEvent(context, EVT_VD_ONLINE, vd.ID, vdParams(vd.RaidMode));
        break;
    case KT_VD_PARTIALLY_OPTIMAL:
        // From offline it works again, though without its full redundancy.
        if (!isUsable(vd)) logEvent(context, EVT_VD_ONLINE, vd.ID);
        logEvent(context, EVT_VD_LOST_REDUNDANCY, vd.ID);
        break;
    case KT_VD_DEGRADED:
        logEvent(context, EVT_VD_DEGRADED, vd.ID);
        break;
    default:
        logEvent(context, EVT_VD_OFFLINE, vd.ID, vdParams(vd.RaidMode));
        break;
    }
}

bool waitsForKey(const Context& context, const Vd& vd) {
    if (vd.info.Status != KT_VD_OFFLINE || vd.info.DGID != KT_NO_ID) return false;
    return std::any_of(std::begin(vd.info.BlockIDs), std::end(vd.info.BlockIDs), [&](KT_U16 id) {
        const auto block = id == KT_NO_ID ? std::nullopt : find<_Block_Info>(context, id);
        const auto cipher = block ? find<DiskCipher>(context, block->HDID) : std::nullopt;
        return cipher && cipher->offline && find<PdState>(context, block->HDID)->left >= vd.state.offline;
    });
}

// The number of the loss that is happening. All that leaves while the adapter is down counts as one loss.
static KT_U64 lossOf(const Context& context) {
    const AdapterState adapter = find<AdapterState>(context, 0).value_or(AdapterState{});
    return wasLostDown(context, adapter.losses) ? adapter.lossesAtOff + 1 : adapter.losses;
}

void refreshVdStatus(const Context& context, KT_U16 id) {
    Vd vd = {};
    if (findVd(context, id, vd) != KT_OK) return;
    if (!isUsable(vd.info) && vd.info.Status != KT_VD_OFFLINE) return;
    KT_U8 status = statusOf(context, vd.info, vd.state.homes, nullptr);
    auto target = find<VdTarget>(context, id);
    if (target) {
        target->info.Status = statusOf(context, target->info, target->homes, nullptr);
        if (badness(target->info.Status) > badness(status)) status = target->info.Status;
        save(context, id, *target);
    }
    if (status != vd.info.Status && !waitsForKey(context, vd)) {
        logStatus(context, vd.info, status);
        vd.info.Status = status;
        if (status == KT_VD_OFFLINE) vd.state.offline = lossOf(context);
        saveVd(context, vd);
    }
    if (isUsable(vd.info)) writeKeptCache(context, vd.info);
}

// A member that is being rebuilt is there, but holds no data to rely on.
static bool isHalfFilled(const Context& context, const _DG_Info& array, int slot) {
    for (const KT_U16 id : array.VDIDs) {
        const auto vd = id == KT_NO_ID ? std::nullopt : find<_LD_Info>(context, id);
        const auto block = vd ? find<_Block_Info>(context, vd->BlockIDs[slot]) : std::nullopt;
        if (block && block->Status == BLOCK_REBUILDING) return true;
    }
    return false;
}

void refreshArrayStatus(const Context& context, KT_U16 id) {
    Array array = {};
    if (findArray(context, id, array) != KT_OK) return;
    bool lost[MAX_MEMBERS] = {};
    const bool none[MAX_MEMBERS] = {};
    bool missing = false;
    const Geometry geometry = geometryOf(array);
    for (int i = 0; i < geometry.disks; ++i) {
        const auto disk = find<PdState>(context, array.state.members[i]);
        lost[i] = !disk || (disk->raid & KT_PD_OFFLINE) != 0;
        missing = missing || lost[i];
        lost[i] = lost[i] || isHalfFilled(context, array.info, i);
    }
    const bool offline = statusWithLost(geometry, lost, none) == KT_VD_OFFLINE;
    listMembers(array);
    array.info.Status = offline ? ARRAY_OFFLINE : missing ? ARRAY_PD_MISSING : ARRAY_FUNCTIONAL;
    save(context, id, array.info);
}

KT_U16 freeId(const Context& context, Kind kind, KT_U64 limit) {
    KT_U64 next = 0;
    RowWalk walk = beginWalk(context.store, context.adapter, kind, 0);
    while (nextRow(walk) && walk.id == next)
        ++next;
    endWalk(walk);
    return next < limit ? static_cast<KT_U16>(next) : KT_U16{KT_NO_ID};
}

} // namespace sim
