#include "frame/invariants.h"

#include "media/blocks.h"
#include "media/surface.h"
#include "raid/activityRecords.h"
#include "raid/keptCaches.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>

namespace sim {

// The check of one thing of an adapter.
struct Check {
    const Context& context;
    bool byRules; // whether the adapters' rules made the state, not a lab
    std::vector<std::string>& wrong;
    std::string who;

    Check of(const char* kind, KT_U64 id) const {
        return {context, byRules, wrong,
                "adapter " + std::to_string(context.adapter) + ": " + kind + " " + std::to_string(id) + " "};
    }
    void require(bool holds, const std::string& otherwise) const {
        if (!holds) wrong.push_back(who + otherwise);
    }
};

template <class Record>
static bool has(const Check& check, KT_U64 id) {
    return find<Record>(check.context, id).has_value();
}

template <class Record, class Act>
static void each(const Check& check, const char* kind, Act act) {
    forEach<Record>(check.context, 0, [&](KT_U64 id, const Record& record) {
        act(check.of(kind, id), id, record);
        return true;
    });
}

static KT_U64 diskEnd(const Check& check, KT_U16 pd) {
    const auto disk = find<_HD_Info>(check.context, pd);
    const auto pulled = find<PulledDisk>(check.context, pd);
    return disk ? disk->Size : pulled ? pulled->info.Size : 0;
}

static void checkBlocksOfDisk(const Check& check, KT_U16 pd, const std::map<KT_U64, _Block_Info>& blocks) {
    KT_U64 end = 0;
    const _HD_Block_Info list = blocksOf(check.context, pd);
    size_t place = 0;
    for (const auto& [start, block] : blocks) {
        check.require(start >= end, "has blocks that overlap");
        end = start + block.Size;
        check.require(place < list.BlkCount && list.BlkIDs[place] == block.ID, "lists other blocks than its own");
        ++place;
    }
    check.require(end <= diskEnd(check, pd), "is shorter than its blocks");
    check.require(place == list.BlkCount, "lists blocks that are not there");
}

static bool isCopiedTo(const Context& context, const _Block_Info& block) {
    const auto vd = find<_LD_Info>(context, block.LDID);
    const bool own = !vd || vd->DGID == KT_NO_ID;
    const Activity activity =
        activityOf(context, own ? Owner{OwnerKind::Vd, block.LDID} : Owner{OwnerKind::Array, vd->DGID});
    return block.Status == BLOCK_COPYING && activity.kind == KT_BGA_COPY_BACK && activity.disk == block.HDID;
}

static void checkBlocks(const Check& all, const std::set<KT_U16>& named) {
    std::map<KT_U16, std::map<KT_U64, _Block_Info>> byDisk;
    each<_Block_Info>(all, "block", [&](const Check& check, KT_U64 id, const _Block_Info& block) {
        check.require(block.ID == id, "calls itself " + std::to_string(block.ID));
        check.require(has<_HD_Info>(check, block.HDID) || has<PulledDisk>(check, block.HDID), "lies on no disk");
        check.require(block.LDID == KT_BLOCK_FREE || has<_LD_Info>(check, block.LDID), "belongs to no VD");
        check.require(byDisk[block.HDID].emplace(block.StartLBA, block).second, "starts where another does");
        if (!check.byRules) return;
        check.require(block.Size != 0, "is empty");
        check.require(isCopiedTo(check.context, block) || named.count(block.ID), "is in no slot");
    });
    for (const auto& [pd, blocks] : byDisk)
        checkBlocksOfDisk(all.of("disk", pd), pd, blocks);
}

static void checkVdByRules(const Check& check, const Vd& vd, std::set<KT_U16>& named) {
    const Geometry geometry = geometryOf(vd.info);
    const auto target = find<VdTarget>(check.context, vd.info.ID);
    KT_U64 least = NEVER;
    bool whole = true;
    for (int i = 0; i < MAX_MEMBERS; ++i) {
        const auto block = find<_Block_Info>(check.context, vd.info.BlockIDs[i]);
        if (block) named.insert(block->ID);
        if (target && target->info.BlockIDs[i] != KT_NO_ID) named.insert(target->info.BlockIDs[i]);
        check.require(i < geometry.disks || vd.info.BlockIDs[i] == KT_NO_ID, "has blocks beyond its slots");
        if (i >= geometry.disks) continue;
        whole = whole && block && block->Status == BLOCK_GOOD;
        if (block && block->Size) least = std::min(least, sectorsToKib(block->Size, block->BlockSize));
    }
    const bool even = !isHybridLevel(geometry.level) && geometry.level != KT_JBOD;
    check.require(least == NEVER || !even || capacityOf(geometry, least) >= vd.info.Size, "is larger than its blocks");
    const bool online = vd.info.Status == KT_VD_ONLINE;
    check.require(target || !isUsable(vd.info) || online == whole, whole ? "lacks nothing" : "is online, not whole");
    const bool migrates = shownActivity(check.context, vd).kind == KT_BGA_MIGRATION;
    check.require(migrates == target.has_value(), "has a target or migrates, not both");
}

static void checkVds(const Check& all, std::set<KT_U16>& named) {
    each<_LD_Info>(all, "VD", [&](const Check& check, KT_U64 id, const _LD_Info& vd) {
        check.require(vd.ID == id, "calls itself " + std::to_string(vd.ID));
        const auto state = find<VdState>(check.context, id);
        check.require(state.has_value(), "has no state");
        if (!state) return;
        check.require(vd.BGAStatus == shownActivity(check.context, Vd{vd, *state}).state, "hides its activity");
        check.require(vd.DGID == KT_NO_ID || has<_DG_Info>(check, vd.DGID), "is on no array");
        for (const KT_U16 blockId : vd.BlockIDs) {
            const auto block = find<_Block_Info>(check.context, blockId);
            check.require(blockId == KT_NO_ID || (block && block->LDID == id), "names a block that is not its own");
        }
        if (check.byRules) checkVdByRules(check, Vd{vd, *state}, named);
    });
    each<VdState>(all, "VD", [](const Check& check, KT_U64 id, const VdState&) {
        check.require(has<_LD_Info>(check, id), "left its state");
    });
    forEachActivity(all.context, [&](Owner owner, const Activity& activity) {
        if (owner.kind != OwnerKind::Vd || !all.byRules) return;
        const auto vd = find<_LD_Info>(all.context, owner.id);
        const bool may = vd && (isUsable(*vd) || vd->Status == KT_VD_OFFLINE);
        all.of("VD", owner.id).require(may, "is busy but not in use");
        const bool runs = vd && vd->Status == KT_VD_OFFLINE && activity.state == KT_STATE_RUNNING;
        all.of("VD", owner.id).require(!runs, "is busy but offline");
    });
}

static void checkMembers(const Check& check, const _DG_Info& array, const DgState& state) {
    int listed = 0;
    for (int i = 0; i < state.memberCount; ++i) {
        const KT_U16 member = state.members[i];
        for (int slot = 0; slot < array.VDSlotCount; ++slot) {
            const auto vd = find<_LD_Info>(check.context, array.VDIDs[slot]);
            if (!vd) continue;
            const auto block = find<_Block_Info>(check.context, vd->BlockIDs[i]);
            check.require(block ? block->HDID == member : member == KT_NO_ID,
                          "has another disk in slot " + std::to_string(i) + " than its VD " + std::to_string(vd->ID));
        }
        if (member == KT_NO_ID) continue;
        ++listed;
        const auto disk = find<PdState>(check.context, member);
        check.require(disk && (disk->raid & KT_PD_MEMBER) && disk->dgid == array.DGID,
                      "has a member that does not know of it: " + std::to_string(member));
    }
    check.require(listed == array.PDCount, "lists other disks than its members");
}

static void checkArray(const Check& check, KT_U64 id, const _DG_Info& array) {
    KT_U64 used = 0;
    KT_U64 free = 0;
    for (size_t slot = 0; slot < std::min<size_t>(array.VDSlotCount, std::size(array.VDIDs)); ++slot) {
        used += array.VDSlotSize[slot];
        if (array.VDIDs[slot] == KT_NO_ID) free += array.VDSlotSize[slot];
        const auto vd = find<_LD_Info>(check.context, array.VDIDs[slot]);
        check.require(array.VDIDs[slot] == KT_NO_ID || (vd && vd->DGID == id), "names a VD that is not on it");
        check.require(!check.byRules || !vd || vd->Size <= array.VDSlotSize[slot], "has a VD larger than its slot");
    }
    check.require(used <= array.TotalManagedSpace, "has more in slots than it manages");
    for (size_t i = 0; i < std::min<size_t>(array.SparePDCount, std::size(array.SparePDIDs)); ++i) {
        const auto disk = find<PdState>(check.context, array.SparePDIDs[i]);
        check.require(!disk || ((disk->raid & KT_PD_DEDICATED_SPARE) && disk->dgid == id),
                      "names a spare that does not know of it");
    }
    if (!check.byRules) return;
    check.require(used == array.TotalManagedSpace, "does not manage the sum of its slots");
    check.require(free == array.RemainingManagedSpace, "has another amount free than its slots");
    checkMembers(check, array, find<DgState>(check.context, id).value_or(DgState{}));
}

static void checkDisk(const Check& check, KT_U16 id, const PdState& disk) {
    check.require(has<_HD_Info>(check, id), "left its state");
    const auto array = find<_DG_Info>(check.context, disk.dgid);
    const bool dedicated = (disk.raid & KT_PD_DEDICATED_SPARE) != 0;
    check.require(array || (disk.dgid == KT_NO_ID && !dedicated), "names an array that is not there");
    if (array && dedicated) {
        const KT_U16* end = array->SparePDIDs + std::min<size_t>(array->SparePDCount, std::size(array->SparePDIDs));
        check.require(std::find(array->SparePDIDs, end, id) != end, "is a spare that its array does not know");
    }
    if (!check.byRules) return;
    const auto state = find<DgState>(check.context, disk.dgid);
    const bool inArray = state && std::count(state->members, state->members + state->memberCount, id) != 0;
    const bool member = (disk.raid & KT_PD_MEMBER) != 0;
    const bool used = inArray || blocksOf(check.context, id).BlkCount != 0;
    check.require(member == used || (disk.raid & KT_PD_FOREIGN), used ? "is used as no member" : "is no one's member");
    check.require(disk.dgid == KT_NO_ID || member || dedicated, "names an array that it does not serve");
    const bool spare = (disk.raid & KT_PD_SPARE) != 0;
    check.require(!(disk.raid & KT_PD_SPARE_IN_USE) || (member && spare), "is a spare in use that is none");
    check.require(!disk.patrol.kind || member || spare, "is patrolled for nothing");
    check.require((disk.config.Online == 0) == ((disk.raid & KT_PD_OFFLINE) != 0), "is online and offline");
}

static void checkSurface(const Check& all) {
    std::map<KT_U16, KT_U64> counts;
    each<BadSector>(all, "bad sector", [&](const Check& check, KT_U64 id, const BadSector& sector) {
        const auto pd = static_cast<KT_U16>(id >> 48);
        check.require(id % (KT_U64{1} << 48) < diskEnd(check, pd), "lies beyond its disk");
        check.require(++counts[pd] <= BAD_SECTORS_KEPT, "is one too many");
        check.require(sector.flaw >= FLAW_UNREADABLE && sector.flaw <= FLAW_WRONG, "is bad in no known way");
        check.require(sector.known == 0 || (sector.known == 1 && sector.flaw == FLAW_UNREADABLE), "is known in none");
    });
}

// What waits in the cache does so for virtual disks that do not work.
static void checkKeptCaches(const Check& all) {
    if (find<AdapterState>(all.context, 0).value_or(AdapterState{}).down != ADAPTER_UP) return;
    each<_LD_Info>(all, "VD", [](const Check& check, KT_U64, const _LD_Info& vd) {
        check.require(!isUsable(vd) || !hasKeptCache(check.context, vd), "works without what the cache keeps for it");
    });
}

static void checkAdapter(const Check& all) {
    std::set<KT_U16> named; // blocks, by virtual disks
    checkVds(all, named);
    checkBlocks(all, named);
    checkSurface(all);
    checkKeptCaches(all);
    each<_DG_Info>(all, "array", checkArray);
    each<_HD_Info>(all, "disk", [](const Check& check, KT_U64 id, const _HD_Info&) {
        check.require(has<PdState>(check, id), "has no state");
    });
    each<PdState>(all, "disk", [](const Check& check, KT_U64 id, const PdState& disk) {
        checkDisk(check, static_cast<KT_U16>(id), disk);
    });
}

static void checkEvents(const Check& all) {
    KT_U64 last = 0;
    each<_Event>(all, "event", [&](const Check& check, KT_U64 id, const _Event& event) {
        check.require(event.SequenceNo == id && (!last || id == last + 1), "is out of sequence");
        last = id;
    });
}

// What the rows say themselves, before anything is made of it.
template <class Record>
static void checkRows(const Check& all, const char* kind) {
    RowWalk walk = beginWalk(all.context.store, all.context.adapter, KindOf<Record>::value, 0);
    while (nextRow(walk)) {
        const Check check = all.of(kind, walk.id);
        check.require(walk.size == sizeof(Record), "is not whole");
        if (walk.size != sizeof(Record)) continue;
        Record record;
        memcpy(&record, walk.data, sizeof record);
        Bounding by;
        bound(record, by);
        if (by.beyond != nullptr) check.require(false, std::string(by.beyond) + " is beyond what its record holds");
    }
    endWalk(walk);
}

static void checkAllRows(const Check& all) {
    checkRows<GlobalState>(all, "state");
    checkRows<Clock>(all, "clock");
    checkRows<Fault>(all, "fault");
    checkRows<_LD_Info>(all, "VD");
    checkRows<VdState>(all, "state of VD");
    checkRows<VdTarget>(all, "migration of VD");
    checkRows<AwayVd>(all, "VD on pulled disks");
    checkRows<_DG_Info>(all, "array");
    checkRows<DgState>(all, "state of array");
    checkRows<_HD_Info>(all, "disk");
    checkRows<PdState>(all, "state of disk");
    checkRows<PulledDisk>(all, "pulled disk");
    checkRows<PulledBlocks>(all, "blocks of pulled disk");
    checkRows<_Block_Info>(all, "block");
    checkRows<_HD_Block_Info>(all, "blocks of disk");
}

std::vector<std::string> findViolations(Store& store, bool byRules) {
    std::vector<std::string> wrong;
    try {
        beginTransaction(store, Access::Read);
        const GlobalState global = find<GlobalState>(store, ADAPTER_GLOBAL, 0).value_or(GlobalState{});
        checkAllRows(Check{Context{store, ADAPTER_GLOBAL, 0}, byRules, wrong, {}});
        for (unsigned i = 0; i < global.adapterCount; ++i) {
            const Context context{store, static_cast<KT_U8>(i), 0};
            const Check check{context, byRules, wrong, {}};
            checkAllRows(check);
            checkAdapter(check);
            checkEvents(check);
        }
    } catch (const StoreFailure& failure) {
        wrong.push_back(failure.message);
    }
    rollbackTransaction(store);
    return wrong;
}

std::vector<std::string> findViolations(const Context& context) {
    std::vector<std::string> wrong;
    checkAdapter(Check{context, false, wrong, {}});
    return wrong;
}

void checkAfterCall(const char* call, const Context& context) {
    static const bool wanted = getenv("KTRAID_SIM_CHECK") != nullptr;
    if (!wanted || context.adapter == ADAPTER_GLOBAL) return;
    const std::vector<std::string> wrong = findViolations(context);
    if (wrong.empty()) return;
    for (const std::string& line : wrong)
        fprintf(stderr, "ktraid-sim: %s: %s\n", call, line.c_str());
    abort();
}

} // namespace sim
