// Settings of virtual disks, arrays and disks.
#pragma once

#include "state/store.h"

namespace sim {

KT_U8 configureVd(const Context& context, KT_U16 id, const _LD_Config& config);
KT_U8 configureArray(const Context& context, KT_U16 id, const _DG_CONFIG& config);
// Write cache, SMART, the speed of the link, and Online as KT_PD_SetHDStatus does it.
KT_U8 configureDisk(const Context& context, KT_U16 id, const _HD_CONFIG& config);
// The locate LED of a disk, or of every disk under a virtual disk.
KT_U8 locateDevice(const Context& context, KT_U8 kind, KT_U16 id, bool on);

} // namespace sim
