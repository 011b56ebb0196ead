// Which disk stands in for a lost member, and when it gives the place back.
#pragma once

#include "raid/members.h"

namespace sim {

// The disk that the adapter by itself rebuilds the slot onto, or KT_NO_ID: the disk that the slot is the place of, else
// a spare of the array, else a global spare, and of several the smallest that is large enough. When all that could be
// used are too small, that is logged.
KT_U16 chooseSpare(const Context& context, const Group& group, int slot);
// The slot in which a spare stands in for a disk that could have its place back, or -1.
int slotToCopyBack(const Context& context, const Group& group);
// That a disk is too small is logged once after each loss of a member: this is called when one is lost.
void forgetTold(const Context& context);

} // namespace sim
