#include "lab/reportSizes.h"

#include "media/blocks.h"
#include "raid/levels.h"
#include "raid/members.h"

#include <algorithm>

namespace sim {

static bool hasLastSlot(const Context& context, const _LD_Info& vd) {
    const auto array = find<_DG_Info>(context, vd.DGID);
    return array && array->VDSlotCount > 0 && array->VDIDs[array->VDSlotCount - 1] == vd.ID;
}

// KiB that the block would have if it reached to the end of its disk; 0 when another one lies behind it.
static KT_U64 roomToTheEnd(const Context& context, const _Block_Info& block) {
    const auto disk = find<_HD_Info>(context, block.HDID);
    const auto state = find<PdState>(context, block.HDID);
    const _HD_Block_Info list = blocksOf(context, block.HDID);
    if (!disk || !state || list.BlkCount == 0 || list.BlkIDs[list.BlkCount - 1] != block.ID) return 0;
    const KT_U64 valid = validKib(*disk, *state);
    const KT_U64 start = sectorsToKib(block.StartLBA, block.BlockSize);
    return valid > start ? valid - start : 0;
}

static bool reachesTheEnd(const Context& context, const _LD_Info& vd) {
    KT_U64 room = NEVER;
    for (int i = 0; i < geometryOf(vd).disks; ++i) {
        const auto block = find<_Block_Info>(context, vd.BlockIDs[i]);
        if (block) room = std::min(room, roomToTheEnd(context, *block));
    }
    if (room == NEVER || vd.StripeBlockSize == 0) return false;
    const KT_U64 most = capacityOf(geometryOf(vd), room / vd.StripeBlockSize * vd.StripeBlockSize);
    return most >= vd.Size && most - vd.Size < 1024; // what is less than a megabyte is no room
}

void findWhole(const Context& context) {
    std::vector<KT_U16> whole;
    forEach<_LD_Info>(context, 0, [&](KT_U64, const _LD_Info& vd) {
        if (vd.DGID == KT_NO_ID ? reachesTheEnd(context, vd) : hasLastSlot(context, vd)) whole.push_back(vd.ID);
        return true;
    });
    for (const KT_U16 id : whole) {
        VdState state = find<VdState>(context, id).value_or(VdState{});
        state.whole = 1;
        save(context, id, state);
    }
}

} // namespace sim
