// The slices of disks that virtual disks are built from. A block's row and its disk's list of blocks change together:
// only the functions here write either.
#pragma once

#include "state/store.h"

namespace sim {

inline constexpr int MAX_MEMBERS = 128; // blocks of a disk, disks of a virtual disk or array

// _Block_Info.Status
enum : KT_U8 {
    BLOCK_GOOD = 0,
    BLOCK_OFFLINE = 1,    // its disk does not work
    BLOCK_REBUILDING = 2, // being filled in its virtual disk's slot
    BLOCK_COPYING = 3     // copied back to; not in a slot yet
};

// The blocks of one disk, in order of their place on it; none for an unknown disk.
_HD_Block_Info blocksOf(const Context& context, KT_U16 pd);
// Adds `block` with the lowest free id and answers that id, or KT_NO_ID when the adapter or the disk has no more.
KT_U16 addBlock(const Context& context, _Block_Info block);
// Changes a block that is there; it keeps its id and its disk.
void updateBlock(const Context& context, const _Block_Info& block);
void removeBlock(const Context& context, KT_U16 id);

// KiB of the disk that can hold blocks, and what of it no block holds.
KT_U64 validKib(const _HD_Info& disk, const PdState& state);
KT_U64 freeKib(const Context& context, KT_U16 pd, KT_U64 valid);
// Where `sectors` fit first in the disk's free space, a gap between blocks included; nothing when they do not.
std::optional<KT_U64> findSpace(const Context& context, KT_U16 pd, const _HD_Info& disk, const PdState& state,
                                KT_U64 sectors);
// Whether no block of the disk reaches into these sectors.
bool isFreeSpace(const Context& context, KT_U16 pd, KT_U64 start, KT_U64 sectors);
inline KT_U64 sectorsToKib(KT_U64 sectors, KT_U32 sectorSize) {
    return sectors / 1024 * sectorSize + sectors % 1024 * sectorSize / 1024;
}
inline KT_U64 kibToSectors(KT_U64 kib, KT_U32 sectorSize) {
    return sectorSize ? kib * 1024 / sectorSize : 0;
}

} // namespace sim
