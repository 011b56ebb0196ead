#include "activities/passes.h"

#include "media/blocks.h"
#include "raid/members.h"

#include <algorithm>
#include <set>

namespace sim {

static Pass passThrough(const _Block_Info& block, KT_U64 base, int slot, bool writes) {
    const KT_U32 size = block.BlockSize ? block.BlockSize : 512U;
    return Pass{block.HDID, block.StartLBA, block.Size, size, base, 1, writes, block.LDID, slot};
}

static std::vector<std::optional<_Block_Info>> slotsOf(const Context& context, const _LD_Info& vd) {
    std::vector<std::optional<_Block_Info>> blocks;
    for (int i = 0; i < geometryOf(vd).disks; ++i)
        blocks.push_back(find<_Block_Info>(context, vd.BlockIDs[i]));
    return blocks;
}

static bool isInitialisation(KT_U8 kind) {
    return kind == KT_BGA_INIT_QUICK || kind == KT_BGA_INIT_FOREGROUND || kind == KT_BGA_INIT_BACKGROUND;
}

// Checks read every member, initialisations write them as far as they go.
static void addWhole(const Context& context, const _LD_Info& vd, Run& run) {
    const auto blocks = slotsOf(context, vd);
    const bool writes = isInitialisation(run.activity.kind);
    for (size_t i = 0; i < blocks.size(); ++i) {
        if (!blocks[i]) continue;
        Pass pass = passThrough(*blocks[i], 0, static_cast<int>(i), writes);
        pass.sectors = std::min(pass.sectors, kibToSectors(run.activity.work, pass.sectorSize));
        run.passes.push_back(pass);
    }
}

static bool feedsTarget(const Geometry& geometry, const std::vector<std::optional<_Block_Info>>& blocks, int slot) {
    for (size_t i = 0; i < blocks.size(); ++i) {
        const bool filled = blocks[i] && blocks[i]->Status == BLOCK_REBUILDING;
        if (filled && inSameSet(geometry, static_cast<int>(i), slot)) return true;
    }
    return false;
}

// A rebuild fills the new members from those that share data with them.
static void addRebuild(const Context& context, const _LD_Info& vd, KT_U64 base, Run& run) {
    const auto blocks = slotsOf(context, vd);
    for (size_t i = 0; i < blocks.size(); ++i) {
        const auto slot = static_cast<int>(i);
        if (!blocks[i]) continue;
        const bool target = blocks[i]->Status == BLOCK_REBUILDING;
        const bool source = blocks[i]->Status == BLOCK_GOOD && feedsTarget(geometryOf(vd), blocks, slot);
        if (target || source) run.passes.push_back(passThrough(*blocks[i], base, slot, target));
    }
}

// The block that the virtual disk has on the disk it copies back to.
static std::optional<_Block_Info> copyOf(const Context& context, const _LD_Info& vd, KT_U16 pd) {
    const _HD_Block_Info list = blocksOf(context, pd);
    for (int i = 0; i < list.BlkCount; ++i) {
        const auto block = find<_Block_Info>(context, list.BlkIDs[i]);
        if (block && block->LDID == vd.ID && block->Status == BLOCK_COPYING) return block;
    }
    return std::nullopt;
}

static void addCopy(const Context& context, const Group& group, const _LD_Info& vd, KT_U64 base, Run& run) {
    const auto copy = copyOf(context, vd, run.activity.disk);
    const auto home = std::find(group.homes.begin(), group.homes.end(), run.activity.disk);
    if (!copy || home == group.homes.end()) return;
    const auto slot = static_cast<int>(home - group.homes.begin());
    const auto source = find<_Block_Info>(context, vd.BlockIDs[slot]);
    run.passes.push_back(passThrough(*copy, base, slot, true));
    if (source) run.passes.push_back(passThrough(*source, base, slot, false));
}

// A migration reads the members and writes those that arrive; each counts, so that the work is twice their size.
static void addMigration(const Context& context, const _LD_Info& vd, KT_U64 base, Run& run) {
    const auto blocks = slotsOf(context, vd);
    const auto target = find<VdTarget>(context, vd.ID);
    const auto arriving = target ? slotsOf(context, target->info) : std::vector<std::optional<_Block_Info>>{};
    std::set<KT_U16> members;
    const auto add = [&](const _Block_Info& block, size_t slot, bool writes) {
        run.passes.push_back(passThrough(block, base, static_cast<int>(slot), writes));
        run.passes.back().scale = 2;
    };
    for (size_t i = 0; i < blocks.size(); ++i) {
        if (!blocks[i]) continue;
        members.insert(blocks[i]->ID);
        add(*blocks[i], i, false);
    }
    for (size_t i = 0; i < arriving.size(); ++i)
        if (arriving[i] && !members.count(arriving[i]->ID)) add(*arriving[i], i, true);
}

static void addPatrol(const Context& context, KT_U16 pd, Run& run) {
    const auto disk = find<_HD_Info>(context, pd);
    if (disk) run.passes.push_back(Pass{pd, 0, disk->Size, std::max(disk->BlockSize, 512U), 0, 1, false, KT_NO_ID, 0});
}

Run runOf(const Context& context, Owner owner, const Activity& activity) {
    Run run{owner, activity, {}};
    if (owner.kind == OwnerKind::Disk) {
        addPatrol(context, owner.id, run);
        return run;
    }
    const Group group = groupOf(context, owner);
    KT_U64 base = 0;
    for (const KT_U16 id : group.vds) {
        const auto vd = find<_LD_Info>(context, id);
        if (!vd) continue;
        const KT_U64 share = shareOf(context, *vd);
        if (activity.kind == KT_BGA_REBUILD) {
            addRebuild(context, *vd, base, run);
        } else if (activity.kind == KT_BGA_COPY_BACK) {
            addCopy(context, group, *vd, base, run);
        } else if (activity.kind == KT_BGA_MIGRATION) {
            addMigration(context, *vd, base, run);
        } else {
            addWhole(context, *vd, run);
        }
        base += activity.kind == KT_BGA_MIGRATION ? 2 * share : share;
    }
    return run;
}

KT_U64 lbaAt(const Pass& pass, KT_U64 done) {
    const KT_U64 pieces = done > pass.base ? (done - pass.base) / pass.scale / PIECE_KIB : 0;
    return pass.start + std::min(kibToSectors(pieces * PIECE_KIB, pass.sectorSize), pass.sectors);
}

KT_U64 workAt(const Pass& pass, KT_U64 lba, KT_U64 work) {
    const KT_U64 piece = sectorsToKib(lba - pass.start, pass.sectorSize) / PIECE_KIB;
    return std::min(pass.base + (piece + 1) * PIECE_KIB * pass.scale, work);
}

} // namespace sim
