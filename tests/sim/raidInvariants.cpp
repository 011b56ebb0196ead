#include "invariants.h"

#include "adapter/blocks.h"
#include "adapter/jobs.h"
#include "adapter/members.h"

#include <algorithm>
#include <set>

using namespace sim;

using Wrong = std::vector<std::string>;

static std::string name(const char* kind, KT_U64 id) {
    return std::string(kind) + " " + std::to_string(id) + " ";
}

static bool isForeignVd(const _LD_Info& vd) {
    return !isUsable(vd) && vd.Status != KT_VD_OFFLINE;
}

static void checkVd(const Context& context, const Vd& vd, std::set<KT_U16>& named, Wrong& wrong) {
    const std::string who = name("VD", vd.info.ID);
    const Geometry geometry = geometryOf(vd.info);
    const auto target = find<VdTarget>(context, vd.info.ID);
    KT_U64 least = NEVER;
    bool whole = true;
    for (int i = 0; i < MAX_MEMBERS; i++) {
        const auto block = find<_Block_Info>(context, vd.info.BlockIDs[i]);
        if (block) named.insert(block->ID);
        if (target && target->info.BlockIDs[i] != KT_NO_ID) named.insert(target->info.BlockIDs[i]);
        if (i >= geometry.disks && vd.info.BlockIDs[i] != KT_NO_ID)
            wrong.push_back(who + "has blocks beyond its slots");
        if (i >= geometry.disks) continue;
        whole = whole && block && block->Status == BLOCK_GOOD;
        if (block && block->Size) least = std::min(least, sectorsToKib(block->Size, block->BlockSize));
    }
    const bool even = !isHybridLevel(geometry.level) && geometry.level != KT_JBOD;
    if (least != NEVER && even && capacityOf(geometry, least) < vd.info.Size)
        wrong.push_back(who + "is larger than its blocks");
    if (vd.info.Status == KT_VD_ONLINE && !whole && !target) wrong.push_back(who + "is online without all its disks");
    if (isUsable(vd.info) && vd.info.Status != KT_VD_ONLINE && whole && !target) wrong.push_back(who + "lacks nothing");
    const bool migrates = shownActivity(context, vd).kind == KT_BGA_MIGRATION;
    if (migrates != target.has_value()) wrong.push_back(who + "has a target without a migration, or the reverse");
}

static void checkArray(const Context& context, const Array& array, Wrong& wrong) {
    const std::string who = name("array", array.info.DGID);
    KT_U64 used = 0;
    KT_U64 free = 0;
    for (int i = 0; i < array.info.VDSlotCount; i++) {
        used += array.info.VDSlotSize[i];
        if (array.info.VDIDs[i] == KT_NO_ID) free += array.info.VDSlotSize[i];
        const auto vd = find<_LD_Info>(context, array.info.VDIDs[i]);
        if (vd && vd->Size > array.info.VDSlotSize[i]) wrong.push_back(who + "has a VD larger than its slot");
        for (int slot = 0; vd && slot < array.state.memberCount; slot++) {
            const auto block = find<_Block_Info>(context, vd->BlockIDs[slot]);
            const KT_U16 member = array.state.members[slot];
            if (block ? block->HDID != member : member != KT_NO_ID) {
                wrong.push_back(who + "has disk " + std::to_string(member) + " in slot " + std::to_string(slot) +
                                ", its VD " + std::to_string(vd->ID) +
                                (block ? " disk " + std::to_string(block->HDID) : " none"));
            }
        }
    }
    if (used != array.info.TotalManagedSpace) wrong.push_back(who + "does not manage the sum of its slots");
    if (free != array.info.RemainingManagedSpace) wrong.push_back(who + "has another amount free than its slots");
    int listed = 0;
    for (int i = 0; i < array.state.memberCount; i++) {
        const auto disk = find<PdState>(context, array.state.members[i]);
        listed += array.state.members[i] != KT_NO_ID ? 1 : 0;
        if (array.state.members[i] == KT_NO_ID) continue;
        if (!disk || !(disk->raid & KT_PD_MEMBER) || disk->dgid != array.info.DGID)
            wrong.push_back(who + "has a member that does not know of it: " + std::to_string(array.state.members[i]));
    }
    if (listed != array.info.PDCount) wrong.push_back(who + "lists other disks than its members");
}

static void checkDisk(const Context& context, const Disk& disk, Wrong& wrong) {
    const KT_U16 id = disk.state.config.HDID;
    const std::string who = name("disk", id);
    const auto array = find<DgState>(context, disk.state.dgid);
    const bool inArray = array && std::count(array->members, array->members + array->memberCount, id) != 0;
    const bool member = (disk.state.raid & KT_PD_MEMBER) != 0;
    const bool used = inArray || blocksOf(context, id).BlkCount != 0;
    if (member != used && !(disk.state.raid & KT_PD_FOREIGN))
        wrong.push_back(who + (used ? "is used as no member" : "is a member of nothing"));
    if ((disk.state.raid & KT_PD_SPARE_IN_USE) && !(member && (disk.state.raid & KT_PD_SPARE)))
        wrong.push_back(who + "is a spare in use that is none");
    if (disk.state.patrol.kind && !(disk.state.raid & (KT_PD_MEMBER | KT_PD_SPARE)))
        wrong.push_back(who + "is patrolled for nothing");
    if ((disk.state.config.Online == 0) != ((disk.state.raid & KT_PD_OFFLINE) != 0))
        wrong.push_back(who + "is online and offline");
}

static void checkAdapter(const Context& context, Wrong& wrong) {
    std::set<KT_U16> named;
    forEachVd(context, [&](const Vd& vd) { checkVd(context, vd, named, wrong); });
    forEach<_Block_Info>(context, 0, [&](KT_U64 id, const _Block_Info& block) {
        if (block.Size == 0) wrong.push_back(name("block", id) + "is empty");
        if (block.Status != BLOCK_COPYING && !named.count(block.ID))
            wrong.push_back(name("block", id) + "is in no slot");
        return true;
    });
    forEach<_DG_Info>(context, 0, [&](KT_U64 id, const _DG_Info& info) {
        checkArray(context, Array{info, find<DgState>(context, id).value_or(DgState{})}, wrong);
        return true;
    });
    forEach<_HD_Info>(context, 0, [&](KT_U64 id, const _HD_Info& info) {
        checkDisk(context, Disk{info, find<PdState>(context, id).value_or(PdState{})}, wrong);
        return true;
    });
    forEachJob(context, [&](Owner owner, const Activity& job) {
        if (owner.kind != OwnerKind::Vd) return;
        const auto vd = find<_LD_Info>(context, owner.id);
        if (!vd || isForeignVd(*vd)) wrong.push_back(name("VD", owner.id) + "is busy but not in use");
        if (vd && vd->Status == KT_VD_OFFLINE && job.state == KT_STATE_RUNNING)
            wrong.push_back(name("VD", owner.id) + "is busy but offline");
    });
}

std::vector<std::string> findRaidViolations(Store& store) {
    Wrong wrong = findViolations(store);
    beginTransaction(store, Access::Read);
    const GlobalState global = find<GlobalState>(store, ADAPTER_GLOBAL, 0).value_or(GlobalState{});
    for (unsigned i = 0; i < global.adapterCount; i++)
        checkAdapter(Context{store, static_cast<KT_U8>(i), 0}, wrong);
    rollbackTransaction(store);
    return wrong;
}
