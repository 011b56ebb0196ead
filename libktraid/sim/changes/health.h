// Disks that fail, go and come, are set down and brought up, and are wiped. Statuses are those of the library; KT_OK
// means that it happened. What follows from it is in outage.h.
#pragma once

#include "state/store.h"

namespace sim {

// What people and time do to disks.

// The disk stops answering for good: KT_ERR_PD_MISSING when it is not there or has failed already.
KT_U8 failDisk(const Context& context, KT_U16 pd);
// Taken out of its bay; it can come back with what it holds.
KT_U8 pullDisk(const Context& context, KT_U16 pd);
// A pulled disk comes back: KT_ERR_PD_MISSING when none with that id was pulled.
KT_U8 insertDisk(const Context& context, KT_U16 known);
// A new, empty disk of the same make takes the place of one that is there or was pulled; `sectors` 0 = as large.
KT_U8 replaceDisk(const Context& context, KT_U16 known, KT_U64 sectors);
// What the library's calls do.

// KT_PD_SetHDStatus: 0 sets the disk down, 1 brings it up again, which its cipher may forbid (KT_ERR_KEY_MISMATCH).
KT_U8 setDiskStatus(const Context& context, KT_U16 pd, KT_U8 status);
// KT_ERR_PD_CANNOT_SET_DOWN unless it is a member that its virtual disks can do without.
KT_U8 setDiskDown(const Context& context, KT_U16 pd);
// KT_PD_WipeHDMDD.
KT_U8 wipeDisk(const Context& context, KT_U16 pd, bool force);

} // namespace sim
