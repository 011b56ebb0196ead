// Making lost redundancy good again: rebuilds, the spares they use, and copying back from a spare.
#pragma once

#include "raid/activityRecords.h"

namespace sim {

// KT_LD_StartRebuild and KT_LD_DG_StartRebuild.
KT_U8 startVdRebuild(const Context& context, KT_U16 id, KT_U16 pd);
KT_U8 startArrayRebuild(const Context& context, KT_U16 id, const KT_U16* pds, int count);

// What the adapter does by itself: rebuilds what is degraded onto spares or replaced disks when auto-rebuild is on, and
// copies back from spares to replaced disks when copy back is on. Call when disks, spares or settings changed.
void engageSpares(const Context& context);

// The end of a rebuild or copy back of a virtual disk or an array.
void finishRebuild(const Context& context, Owner owner);
void finishCopyBack(const Context& context, Owner owner);
// The disk is no longer filled; the rebuild or copy back fails when it fills no other.
void loseTarget(const Context& context, Owner owner, KT_U16 pd);
// Ends the owner's rebuild or copy back without success; the blocks that its target had got are removed.
void failRebuild(const Context& context, Owner owner);
// A copy back that was stopped gives way to what the owner begins now.
void giveUpCopyBack(const Context& context, Owner owner);

} // namespace sim
