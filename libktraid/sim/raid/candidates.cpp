#include "raid/candidates.h"

#include "media/blocks.h"
#include "raid/levels.h"
#include "state/adapterInfo.h"

#include <algorithm>

namespace sim {

KT_U64 largestGapKib(const Context& context, const Disk& disk) {
    const KT_U64 end = kibToSectors(validKib(disk.info, disk.state), disk.info.BlockSize);
    const _HD_Block_Info list = blocksOf(context, disk.state.config.HDID);
    KT_U64 at = 0;
    KT_U64 largest = 0;
    for (int i = 0; i < list.BlkCount; ++i) {
        const auto block = find<_Block_Info>(context, list.BlkIDs[i]);
        if (!block) continue;
        if (block->StartLBA > at) largest = std::max(largest, block->StartLBA - at);
        at = std::max(at, block->StartLBA + block->Size);
    }
    if (end > at) largest = std::max(largest, end - at);
    return sectorsToKib(largest, disk.info.BlockSize);
}

static bool isOnAnotherAdapter(const Context& context, KT_U16 pd) {
    const auto global = find<GlobalState>(context.store, ADAPTER_GLOBAL, 0);
    for (int adapter = 0; global && adapter < global->adapterCount; ++adapter)
        if (find<_HD_Info>(context.store, static_cast<KT_U8>(adapter), pd)) return true;
    return false;
}

KT_U8 checkNewMember(const Context& context, KT_U16 id, Sharing sharing, Disk& disk) {
    if (findDisk(context, id, disk) != KT_OK)
        return isOnAnotherAdapter(context, id) ? KT_ERR_OTHER_ADAPTER : KT_ERR_PD_MISSING;
    const KT_U8 raid = disk.state.raid;
    if (disk.info.HDType & KT_HD_ATAPI) return KT_ERR_ATAPI;
    if (raid & KT_PD_OFFLINE) return KT_ERR_PD_MISSING;
    if (raid & KT_PD_SPARE) return KT_ERR_IS_SPARE;
    if (raid & KT_PD_FOREIGN) return KT_ERR_PD_ASSIGNED;
    if ((raid & KT_PD_MEMBER) && sharing == Sharing::Whole) return KT_ERR_PD_ASSIGNED;
    if (disk.state.hasOs) return KT_ERR_PD_HAS_OS;
    return KT_OK;
}

KT_U8 checkAlike(const Context& context, const _HD_Info& one, const _HD_Info& other) {
    if (one.BlockSize != other.BlockSize) return KT_ERR_PD_SECTORS_DIFFER;
    const bool same = one.HDType == other.HDType && isSolidState(one) == isSolidState(other);
    const bool mustBe = (adapterInfo(context).Features & KT_FEATURE_SAME_TYPE_ONLY) != 0;
    return mustBe && !same ? KT_U8{KT_ERR_PD_TYPES_DIFFER} : KT_U8{KT_OK};
}

// A hybrid level joins solid-state disks with one hard disk.
static KT_U8 checkHybrid(const Context& context, const std::vector<Disk>& disks) {
    const _Adapter_Info adapter = adapterInfo(context);
    int ssds = 0;
    for (const Disk& disk : disks)
        ssds += isSolidState(disk.info) ? 1 : 0;
    const int hdds = static_cast<int>(disks.size()) - ssds;
    if (ssds == 0 || ssds > std::max<int>(adapter.MaxSSDPerTandemix, 1)) return KT_ERR_TANDEM_SSD_COUNT;
    return hdds == 0 || hdds > std::max<int>(adapter.MaxTandemHdd, 1) ? KT_U8{KT_ERR_PD_COUNT_FOR_LEVEL} : KT_U8{KT_OK};
}

KT_U8 collectMembers(const Context& context, KT_U8 level, std::span<const KT_U16> ids, Sharing sharing,
                     std::vector<Disk>& disks) {
    for (const KT_U16& id : ids) {
        Disk disk = {};
        const KT_U8 status = checkNewMember(context, id, sharing, disk);
        if (status != KT_OK) return status;
        if (std::find(ids.data(), &id, id) != &id) return KT_ERR_PD_COUNT; // named before
        disks.push_back(disk);
    }
    if (isHybridLevel(level)) {
        for (const Disk& disk : disks)
            if (disk.info.BlockSize != disks.front().info.BlockSize) return KT_ERR_PD_SECTORS_DIFFER;
        return checkHybrid(context, disks);
    }
    for (const Disk& disk : disks) {
        const KT_U8 status = checkAlike(context, disks.front().info, disk.info);
        if (status != KT_OK) return status;
    }
    return KT_OK;
}

} // namespace sim
