// Bad sectors where they make a difference to virtual disks.
#pragma once

#include "state/store.h"

namespace sim {

// Whether the sector belongs to a redundant virtual disk in use, so that its being wrong could ever show.
bool isGuarded(const Context& context, KT_U16 pd, KT_U64 lba);
// Makes that many sectors bad where a disk has them (see scratchSurface()); wrong data lies only where it makes a
// difference. Answers how many, and the first.
KT_U32 addBadSectors(const Context& context, KT_U16 pd, const BadSector& sector, KT_U32 count, KT_U64* first = nullptr);

} // namespace sim
