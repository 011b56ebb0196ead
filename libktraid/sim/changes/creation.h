// Virtual disks straight on disks, and the call that makes them everywhere.
#pragma once

#include "state/store.h"

namespace sim {

// KT_LD_Create. Size 0 takes all there is. Its unit is MB in what a person asks for, KiB in what a configuration file
// restores. From the second generation on the record tells: only people set ReservedForApp, or a hybrid level's water
// mark. The first generation's records (DevID up to 0x4700) do not, so that what fits as MB is MB there, and what does
// not but could come from a file is KiB.
KT_U8 createLd(const Context& context, const _Create_LD_Param& param);
// KT_LD_GetMaxSize: Size in KiB.
KT_U8 maxLdSize(const Context& context, _Create_LD_Param& param);

} // namespace sim
