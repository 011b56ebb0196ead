#include "raid/damage.h"

#include "media/blocks.h"
#include "media/surface.h"
#include "raid/volumes.h"

#include <algorithm>

namespace sim {

static bool isGuardedBlock(const Context& context, const _Block_Info& block) {
    const auto vd = find<_LD_Info>(context, block.LDID);
    return vd && block.Status == BLOCK_GOOD && isUsable(*vd) && isRedundant(vd->RaidMode);
}

bool isGuarded(const Context& context, KT_U16 pd, KT_U64 lba) {
    const auto block = blockAt(context, pd, lba);
    return block && isGuardedBlock(context, *block);
}

// The first block of the disk whose data is guarded; no sectors when there is none.
static Extent guardedExtent(const Context& context, KT_U16 pd) {
    const _HD_Block_Info list = blocksOf(context, pd);
    for (int i = 0; i < list.BlkCount; ++i) {
        const auto block = find<_Block_Info>(context, list.BlkIDs[i]);
        if (block && isGuardedBlock(context, *block)) return Extent{block->StartLBA, block->Size};
    }
    return Extent{0, 0};
}

KT_U32 addBadSectors(const Context& context, KT_U16 pd, const BadSector& sector, KT_U32 count, KT_U64* first) {
    const Extent within = sector.flaw == FLAW_WRONG ? guardedExtent(context, pd) : wholeDisk(context, pd);
    return scratchSurface(context, pd, Scratch{within, sector, count}, first);
}

} // namespace sim
