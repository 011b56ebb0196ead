// What each RAID level asks of its disks, holds and survives.
#pragma once

#include "ktraid.h"

namespace sim {

// A level on a number of disks.
struct Geometry {
    KT_U8 level;
    KT_U8 disks;
    KT_U8 parity; // RAID6 and RAID60: parity disks of the whole; else 0
};

bool isKnownLevel(KT_U8 level);
// Whether the adapter's LogicalDriverMode has the level switched on.
bool isLevelEnabled(const _Adapter_Info& adapter, KT_U8 level);
bool isHybridLevel(KT_U8 level);
// Whether a lost disk can be made up for from the others.
bool isRedundant(KT_U8 level);
// Ranks for migration: a target must not rank below its source.
int redundancyRank(KT_U8 level);

// KT_OK when that many disks make that level: KT_ERR_INVALID_RAID_MODE, KT_ERR_PD_COUNT_FOR_LEVEL or
// KT_ERR_PARITY_COUNT when not. Arrays ask more of RAID6 and RAID60 than virtual disks laid straight on disks.
KT_U8 checkGeometry(const _Adapter_Info& adapter, const Geometry& geometry, bool array);

// Sets of disks inside which redundancy works: pairs of RAID10, halves of RAID50 and RAID60; 1 otherwise.
KT_U8 subCount(const Geometry& geometry);
// Whether one slot is rebuilt from what the other holds, among others.
bool inSameSet(const Geometry& geometry, int one, int other);
// Where byte `offset` of the slot's disk belongs in the virtual disk. Rows of stripes, `stripe` bytes of each disk,
// follow each other, and all disks of a set stand for the one with the row's first data: on three disks of RAID5 with
// stripes of 64 KiB the byte behind the first 64 KiB of each is the one behind the first 128 KiB of the virtual disk.
KT_U64 placeInVd(const Geometry& geometry, int slot, KT_U64 offset, KT_U64 stripe);
// Disks' worth of data, in halves of a disk: RAID1E on 3 disks holds 3 halves.
KT_U32 dataHalves(const Geometry& geometry);
// KiB that the level holds with `share` KiB on every disk.
inline KT_U64 capacityOf(const Geometry& geometry, KT_U64 share) {
    return share / 2 * dataHalves(geometry) + share % 2 * dataHalves(geometry) / 2;
}
// KiB needed on every disk, a multiple of the stripe, so that the level holds `size` KiB.
KT_U64 shareFor(const Geometry& geometry, KT_U64 size, KT_U16 stripe);

// KT_VD_ONLINE, KT_VD_PARTIALLY_OPTIMAL, KT_VD_DEGRADED or KT_VD_OFFLINE for the slots that have no working disk.
// `isHdd` marks the slots of hybrid levels that hold the hard disk.
KT_U8 statusWithLost(const Geometry& geometry, const bool* lost, const bool* isHdd);

} // namespace sim
