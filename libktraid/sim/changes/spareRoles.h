// Making disks stand by and releasing them, as people ask for it.
#pragma once

#include "state/store.h"

namespace sim {

// KT_PD_FreeHD2GlobalSpare, KT_PD_FreeHD2DGSpare and KT_PD_Spare2FreeHD. A new spare is used at once where it can
// be.
KT_U8 makeGlobalSpare(const Context& context, KT_U16 pd);
KT_U8 makeDedicatedSpare(const Context& context, KT_U16 pd, KT_U16 dgid);
// A spare that stood in for a lost member is that member again: so is its duty, `role` (KT_PD_*_SPARE). Of any other
// disk nothing changes.
void standInAgain(const Context& context, KT_U16 pd, KT_U8 role);
KT_U8 releaseSpare(const Context& context, KT_U16 pd);

} // namespace sim
