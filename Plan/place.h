// Virtual disks in the slots of an array.
#pragma once

#include "Plan/planner.h"

// Puts a virtual disk of that size (none: as much as one slot gives) into a free slot of the array, as an adapter with
// at most `mostSlots` slots an array does; false when it does not fit.
bool placeVd(PresentArray& array, std::optional<KT_U64> size, KT_U64 vd, KT_U64 mostSlots);
// Gives a slot back; free neighbours become one.
void freeSlot(PresentArray& array, KT_U64 vd);
// The first of the wanted virtual disks that is not there and does not fit with those before it; null when all fit.
const WantedVd* firstThatDoesNotFit(const Planner& planner, const WantedArray& wanted, PresentArray array);
KT_U64 slotsOf(const PresentAdapter& adapter);
// Lays the array's slots out anew, as a migration does: the last one grows with the virtual disk in it, and so do free
// ones; from the others is free what their virtual disks, with the sizes that they have then, do not need.
void layOutAnew(PresentArray& array, const PresentLayout& target, KT_U64 mostSlots);
// The size of a virtual disk of the array behind that: what fills the last slot was made of all there was, and grows.
KT_U64 sizeBehind(const PresentArray& array, const PresentVd& vd, const PresentLayout& target);
// The largest free slot.
KT_U64 largestSlot(const PresentArray& array);
