// Which stretches of which disks an activity reads and writes, from the first to the last sector.
#pragma once

#include "raid/activityRecords.h"

#include <vector>

namespace sim {

// KiB that an activity reads or writes at a time. What is wrong with them shows when they are done.
inline constexpr KT_U64 PIECE_KIB = 1024;

// A stretch of one disk that an activity goes through from its start to its end.
struct Pass {
    KT_U16 pd;
    KT_U64 start;
    KT_U64 sectors;
    KT_U32 sectorSize;
    KT_U64 base;  // KiB of the activity's work before it comes to this stretch
    KT_U64 scale; // KiB of work for each KiB of it
    bool writes;
    KT_U16 vd; // KT_NO_ID: what it reads is not looked at as part of a virtual disk
    int slot;
};

// An activity, its owner, and all stretches that it goes through.
struct Run {
    Owner owner;
    const Activity& activity;
    std::vector<Pass> passes;
};

Run runOf(const Context& context, Owner owner, const Activity& activity);

// Where on the disk the first piece begins that is not done yet when `done` KiB of the work are.
KT_U64 lbaAt(const Pass& pass, KT_U64 done);
// The work done when the piece is that the sector lies in.
KT_U64 workAt(const Pass& pass, KT_U64 lba, KT_U64 work);

} // namespace sim
