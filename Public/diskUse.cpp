#include "Public/diskUse.h"

#include <algorithm>
#include <iterator>

#include "Public/listing.h"

KT_U8 findVdsOn(KT_U16 pd, VdsOnDisk& found) {
    _HD_Block_Info blocks = {};
    KT_U8 status = KT_BLK_GetHDBlock(gCurrentAdapter, pd, &blocks);
    const size_t count = std::min<size_t>(blocks.BlkCount, std::size(blocks.BlkIDs));
    for (size_t i = 0; status == KT_OK && i < count; ++i) {
        _BLK_Info_Request block;
        status = getItem(KT_BLK_GetInfo, blocks.BlkIDs[i], block);
        if (status != KT_OK) return status;
        const KT_U16 vd = block.blkInfo[0].LDID;
        const bool known = std::find(found.ids, found.ids + found.count, vd) != found.ids + found.count;
        if (vd != KT_BLOCK_FREE && !known) found.ids[found.count++] = vd;
    }
    return status;
}
