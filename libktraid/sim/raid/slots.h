// The slots that an array is divided into: each holds one virtual disk or is free.
#pragma once

#include "raid/volumes.h"

#include <vector>

namespace sim {

// KiB on each member of the array for one of its slots.
KT_U64 slotShare(const Array& array, int slot);
std::vector<KT_U64> slotShares(const Array& array);
// Sizes the slots for the array's new make-up, of which each had that share. What a virtual disk of a stated size does
// not need any more is free, as far as the array may have slots.
void divideAnew(const Context& context, Array& array, const std::vector<KT_U64>& shares);
// Sets the free space from the slots.
void countFreeSlots(Array& array);
// Gives a virtual disk's slot back and joins it with free neighbours.
void freeSlot(const Context& context, KT_U16 dgid, KT_U16 vd);

} // namespace sim
