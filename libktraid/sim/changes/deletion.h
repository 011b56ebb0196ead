// Taking virtual disks apart and giving their disks back.
#pragma once

#include "raid/volumes.h"

namespace sim {

// KT_LD_Delete. Without `stopActivity` one that runs or waits keeps the virtual disk: KT_ERR_VD_BUSY.
KT_U8 deleteVd(const Context& context, KT_U16 id, bool stopActivity);
// Removes the virtual disk with all that belongs to it, whatever it is doing.
void removeVd(const Context& context, const Vd& vd);
// Logs that the disk is a free one now; what an array elsewhere wrote on it means nothing any more.
void becomeFree(const Context& context, KT_U16 pd);
// Looks again at what a disk is for: without blocks, array or spare role it is free, and its patrol ends.
void releaseDisk(const Context& context, KT_U16 pd);

} // namespace sim
