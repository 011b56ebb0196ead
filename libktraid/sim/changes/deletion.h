// Taking virtual disks apart and giving their disks back.
#pragma once

#include "raid/volumes.h"

namespace sim {

// KT_LD_Delete. Without `stopActivity` one that runs or waits keeps the virtual disk: KT_ERR_VD_BUSY.
KT_U8 deleteVd(const Context& context, KT_U16 id, bool stopActivity);
// Removes the virtual disk with all that belongs to it, whatever it is doing.
void removeVd(const Context& context, const Vd& vd);
} // namespace sim
