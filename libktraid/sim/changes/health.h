// Disks that fail, go and come, are set down and brought up, and are wiped. Statuses are those of the library; KT_OK
// means that it happened. What follows from it is in outage.h.
#pragma once

#include "state/store.h"

#include <functional>
#include <vector>

namespace sim {

// What people and time do to disks.

// The disk stops answering for good: KT_ERR_PD_MISSING when it is not there or has failed already.
KT_U8 failDisk(const Context& context, KT_U16 pd);
// Taken out of their bays at one blow, as with their shelf; they can come back with what they hold.
KT_U8 pullDisks(const Context& context, const std::vector<KT_U16>& pds);
// Pulled disks come back, together, where they were or where there is room: KT_ERR_PD_MISSING when one of these ids was
// not pulled, KT_ERR_NO_RESOURCE when there is no place for one.
KT_U8 insertDisks(const Context& context, const std::vector<KT_U16>& known);
// A new, empty disk takes the place of one that is there or was pulled: another of the same make and size, unless
// `change` makes something else of its record. KT_ERR_NOT_SUPPORTED for one that the adapter has no ports for.
KT_U8 replaceDisk(const Context& context, KT_U16 known, const std::function<void(_HD_Info&)>& change = nullptr);
// What the library's calls do.

// KT_PD_SetHDStatus: 0 sets the disk down, 1 brings it up again, which its cipher may forbid (KT_ERR_KEY_MISMATCH).
KT_U8 setDiskStatus(const Context& context, KT_U16 pd, KT_U8 status);
// KT_ERR_PD_CANNOT_SET_DOWN unless it is a member that its virtual disks can do without.
KT_U8 setDiskDown(const Context& context, KT_U16 pd);
// KT_PD_WipeHDMDD.
KT_U8 wipeDisk(const Context& context, KT_U16 pd, bool force);

} // namespace sim
