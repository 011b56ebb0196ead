#include "invariants.h"

#include "adapter/blocks.h"
#include "adapter/jobs.h"
#include "adapter/surface.h"

#include <algorithm>
#include <map>

using namespace sim;

struct Check {
    const Context& context;
    std::vector<std::string>& wrong;
};

static void report(const Check& check, const std::string& what) {
    check.wrong.push_back("adapter " + std::to_string(check.context.adapter) + ": " + what);
}

static std::string name(const char* kind, KT_U64 id) {
    return std::string(kind) + " " + std::to_string(id);
}

static bool diskKnown(const Context& context, KT_U16 pd) {
    return find<_HD_Info>(context, pd).has_value() || find<PulledDisk>(context, pd).has_value();
}

static KT_U64 diskEnd(const Context& context, KT_U16 pd) {
    const auto disk = find<_HD_Info>(context, pd);
    if (disk) return disk->Size;
    const auto pulled = find<PulledDisk>(context, pd);
    return pulled ? pulled->info.Size : 0;
}

static void checkBlocks(const Check& check) {
    std::map<KT_U16, std::map<KT_U64, _Block_Info>> byDisk;
    forEach<_Block_Info>(check.context, 0, [&](KT_U64 id, const _Block_Info& block) {
        if (block.ID != id) report(check, name("block", id) + " calls itself " + std::to_string(block.ID));
        if (!diskKnown(check.context, block.HDID)) report(check, name("block", id) + " lies on no disk");
        if (block.LDID != KT_BLOCK_FREE && !find<_LD_Info>(check.context, block.LDID))
            report(check, name("block", id) + " belongs to no virtual disk");
        if (!byDisk[block.HDID].emplace(block.StartLBA, block).second)
            report(check, name("block", id) + " starts where another does");
        return true;
    });
    for (const auto& [pd, blocks] : byDisk) {
        KT_U64 end = 0;
        const _HD_Block_Info list = blocksOf(check.context, pd);
        size_t place = 0;
        for (const auto& [start, block] : blocks) {
            if (start < end) report(check, name("block", block.ID) + " overlaps the one before it");
            end = start + block.Size;
            if (place >= list.BlkCount || list.BlkIDs[place] != block.ID)
                report(check, name("disk", pd) + "'s list of blocks is not its blocks");
            place++;
        }
        if (end > diskEnd(check.context, pd)) report(check, name("disk", pd) + " is shorter than its blocks");
        if (place != list.BlkCount) report(check, name("disk", pd) + " lists blocks that are not there");
    }
}

static void checkVds(const Check& check) {
    forEach<_LD_Info>(check.context, 0, [&](KT_U64 id, const _LD_Info& vd) {
        if (vd.ID != id) report(check, name("VD", id) + " calls itself " + std::to_string(vd.ID));
        const auto state = find<VdState>(check.context, id);
        if (!state) report(check, name("VD", id) + " has no state");
        if (state && vd.BGAStatus != shownActivity(check.context, Vd{vd, *state}).state)
            report(check, name("VD", id) + " does not agree with its activity");
        if (vd.DGID != KT_NO_ID && !find<_DG_Info>(check.context, vd.DGID))
            report(check, name("VD", id) + " is on an array that is not there");
        for (const KT_U16 blockId : vd.BlockIDs) {
            if (blockId == KT_NO_ID) continue;
            const auto block = find<_Block_Info>(check.context, blockId);
            if (!block || block->LDID != id) report(check, name("VD", id) + " names a block that is not its own");
        }
        return true;
    });
    forEach<VdState>(check.context, 0, [&](KT_U64 id, const VdState&) {
        if (!find<_LD_Info>(check.context, id)) report(check, name("VD state", id) + " is left over");
        return true;
    });
}

static bool isSpareOf(const _DG_Info& array, KT_U16 pd) {
    const KT_U16* end = array.SparePDIDs + std::min<size_t>(array.SparePDCount, std::size(array.SparePDIDs));
    return std::find(array.SparePDIDs, end, pd) != end;
}

static void checkArrays(const Check& check) {
    forEach<_DG_Info>(check.context, 0, [&](KT_U64 id, const _DG_Info& array) {
        KT_U64 used = 0;
        for (size_t slot = 0; slot < std::min<size_t>(array.VDSlotCount, std::size(array.VDIDs)); slot++) {
            used += array.VDSlotSize[slot];
            if (array.VDIDs[slot] == KT_NO_ID) continue;
            const auto vd = find<_LD_Info>(check.context, array.VDIDs[slot]);
            if (!vd || vd->DGID != id) report(check, name("array", id) + " names a VD that is not on it");
        }
        if (used > array.TotalManagedSpace) report(check, name("array", id) + " has more in slots than it manages");
        for (size_t i = 0; i < std::min<size_t>(array.SparePDCount, std::size(array.SparePDIDs)); i++) {
            const auto disk = find<PdState>(check.context, array.SparePDIDs[i]);
            if (disk && (!(disk->raid & KT_PD_DEDICATED_SPARE) || disk->dgid != id))
                report(check, name("array", id) + " names a spare that does not know of it");
        }
        return true;
    });
}

static void checkDisks(const Check& check) {
    forEach<_HD_Info>(check.context, 0, [&](KT_U64 id, const _HD_Info&) {
        if (!find<PdState>(check.context, id)) report(check, name("disk", id) + " has no state");
        return true;
    });
    forEach<PdState>(check.context, 0, [&](KT_U64 id, const PdState& disk) {
        if (!find<_HD_Info>(check.context, id)) report(check, name("disk state", id) + " is left over");
        if (disk.dgid == KT_NO_ID) {
            if (disk.raid & KT_PD_DEDICATED_SPARE) report(check, name("disk", id) + " is a dedicated spare of nothing");
            return true;
        }
        const auto array = find<_DG_Info>(check.context, disk.dgid);
        if (!array) report(check, name("disk", id) + " names an array that is not there");
        if (array && disk.raid & KT_PD_DEDICATED_SPARE && !isSpareOf(*array, static_cast<KT_U16>(id)))
            report(check, name("disk", id) + " is a spare that its array does not know");
        return true;
    });
}

static void checkSurface(const Check& check) {
    std::map<KT_U16, KT_U64> counts;
    forEach<BadSector>(check.context, 0, [&](KT_U64 id, const BadSector& sector) {
        const auto pd = static_cast<KT_U16>(id >> 48);
        if (id % (KT_U64{1} << 48) >= diskEnd(check.context, pd) || ++counts[pd] > BAD_SECTORS_KEPT)
            report(check, name("disk", pd) + " has bad sectors beyond its end, or too many");
        const bool known = sector.known == 0 || (sector.known == 1 && sector.flaw == FLAW_UNREADABLE);
        if (!known || sector.flaw < FLAW_UNREADABLE || sector.flaw > FLAW_WRONG)
            report(check, name("disk", pd) + " has sectors bad in a way that there is not");
        return true;
    });
}

static void checkEvents(const Check& check) {
    KT_U64 last = 0;
    forEach<_Event>(check.context, 0, [&](KT_U64 id, const _Event& event) {
        if (event.SequenceNo != id || (last && id != last + 1))
            report(check, name("event", id) + " is out of sequence");
        last = id;
        return true;
    });
}

std::vector<std::string> findViolations(Store& store) {
    std::vector<std::string> wrong;
    beginTransaction(store, Access::Read);
    const GlobalState global = find<GlobalState>(store, ADAPTER_GLOBAL, 0).value_or(GlobalState{});
    for (unsigned i = 0; i < global.adapterCount; i++) {
        const Context context{store, static_cast<KT_U8>(i), 0};
        const Check check{context, wrong};
        checkBlocks(check);
        checkVds(check);
        checkArrays(check);
        checkDisks(check);
        checkSurface(check);
        checkEvents(check);
    }
    rollbackTransaction(store);
    return wrong;
}
