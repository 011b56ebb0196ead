// The slots that an array is divided into: each holds one virtual disk or is free.
#pragma once

#include "raid/volumes.h"

namespace sim {

// KiB on each member of the array for one of its slots.
KT_U64 slotShare(const Array& array, int slot);
// Sets the free space from the slots.
void countFreeSlots(Array& array);
// Gives a virtual disk's slot back and joins it with free neighbours.
void freeSlot(const Context& context, KT_U16 dgid, KT_U16 vd);

} // namespace sim
