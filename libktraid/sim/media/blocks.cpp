#include "media/blocks.h"

#include <algorithm>

namespace sim {

static const int BLOCKS_PER_DISK = sizeof(_HD_Block_Info::BlkIDs) / sizeof(KT_U16);

_HD_Block_Info blocksOf(const Context& context, KT_U16 pd) {
    _HD_Block_Info none = {};
    none.HDID = pd;
    std::fill(std::begin(none.BlkIDs), std::end(none.BlkIDs), KT_U16{KT_NO_ID});
    return find<_HD_Block_Info>(context, pd).value_or(none);
}

static KT_U16 lowestFreeId(const Context& context) {
    KT_U64 next = 0;
    forEach<_Block_Info>(context, 0, [&](KT_U64 id, const _Block_Info&) {
        if (id != next) return false;
        next = id + 1;
        return true;
    });
    return static_cast<KT_U16>(std::min<KT_U64>(next, KT_NO_ID));
}

// The id below which no id is free, cheaply when ids have no gap.
static KT_U16 newBlockId(const Context& context) {
    const auto last = lastRow(context.store, context.adapter, KIND_BLOCK);
    if (!last) return 0;
    if (*last + 1 == count<_Block_Info>(context)) return static_cast<KT_U16>(std::min<KT_U64>(*last + 1, KT_NO_ID));
    return lowestFreeId(context);
}

static KT_U64 startOf(const Context& context, KT_U16 block) {
    const auto found = find<_Block_Info>(context, block);
    return found ? found->StartLBA : NEVER;
}

KT_U16 addBlock(const Context& context, _Block_Info block) {
    _HD_Block_Info list = blocksOf(context, block.HDID);
    const auto adapter = find<_Adapter_Info>(context, 0);
    const int perDisk = adapter && adapter->MaxBlockPerPD ? adapter->MaxBlockPerPD : BLOCKS_PER_DISK;
    if (list.BlkCount >= std::min(perDisk, BLOCKS_PER_DISK)) return KT_NO_ID;
    block.ID = newBlockId(context);
    if (block.ID == KT_NO_ID) return KT_NO_ID;
    int at = list.BlkCount;
    while (at > 0 && startOf(context, list.BlkIDs[at - 1]) > block.StartLBA) {
        list.BlkIDs[at] = list.BlkIDs[at - 1];
        --at;
    }
    list.BlkIDs[at] = block.ID;
    ++list.BlkCount;
    save(context, block.ID, block);
    save(context, block.HDID, list);
    return block.ID;
}

void updateBlock(const Context& context, const _Block_Info& block) {
    save(context, block.ID, block);
}

void removeBlock(const Context& context, KT_U16 id) {
    const auto block = find<_Block_Info>(context, id);
    if (!block) return;
    _HD_Block_Info list = blocksOf(context, block->HDID);
    KT_U16* end = list.BlkIDs + list.BlkCount;
    KT_U16* rest = std::remove(list.BlkIDs, end, id);
    list.BlkCount = static_cast<KT_U8>(rest - list.BlkIDs);
    std::fill(rest, end, KT_U16{KT_NO_ID});
    erase<_Block_Info>(context, id);
    if (list.BlkCount) {
        save(context, block->HDID, list);
    } else {
        erase<_HD_Block_Info>(context, block->HDID);
    }
}

KT_U64 validKib(const _HD_Info& disk, const PdState& state) {
    const KT_U64 whole = sectorsToKib(disk.Size, disk.BlockSize);
    return whole > state.reservedKib ? whole - state.reservedKib : 0;
}

KT_U64 freeKib(const Context& context, KT_U16 pd, KT_U64 valid) {
    const _HD_Block_Info list = blocksOf(context, pd);
    KT_U64 used = 0;
    for (int i = 0; i < list.BlkCount; ++i) {
        const auto block = find<_Block_Info>(context, list.BlkIDs[i]);
        if (block && block->LDID != KT_BLOCK_FREE) used += sectorsToKib(block->Size, block->BlockSize);
    }
    return valid > used ? valid - used : 0;
}

bool isFreeSpace(const Context& context, KT_U16 pd, KT_U64 start, KT_U64 sectors) {
    const _HD_Block_Info list = blocksOf(context, pd);
    for (int i = 0; i < list.BlkCount; ++i) {
        const auto block = find<_Block_Info>(context, list.BlkIDs[i]);
        if (block && block->StartLBA < start + sectors && start < block->StartLBA + block->Size) return false;
    }
    return true;
}

std::optional<KT_U64> findSpace(const Context& context, KT_U16 pd, const _HD_Info& disk, const PdState& state,
                                KT_U64 sectors) {
    const KT_U64 end = kibToSectors(validKib(disk, state), disk.BlockSize);
    const _HD_Block_Info list = blocksOf(context, pd);
    KT_U64 at = 0;
    for (int i = 0; i < list.BlkCount; ++i) {
        const auto block = find<_Block_Info>(context, list.BlkIDs[i]);
        if (!block) continue;
        if (block->StartLBA >= at && block->StartLBA - at >= sectors) return at;
        at = std::max(at, block->StartLBA + block->Size);
    }
    if (at > end || end - at < sectors) return std::nullopt;
    return at;
}

} // namespace sim
