// What disks are used for: members, spares, free ones.
#pragma once

#include "state/store.h"

namespace sim {

// Looks again at what a disk is for: without blocks, array or spare role it is free, and its patrol ends.
void releaseDisk(const Context& context, KT_U16 pd);
// Logs that the disk is a free one now; what an array elsewhere wrote on it means nothing any more.
void becomeFree(const Context& context, KT_U16 pd);
// Takes a spare role away, whatever it is doing, without making the disk a free one.
void dropSpareRole(const Context& context, KT_U16 pd);

} // namespace sim
