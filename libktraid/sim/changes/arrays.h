// Arrays: disks taken whole, divided into slots that hold virtual disks.
#pragma once

#include "state/store.h"

namespace sim {

// KT_CreateOrModify_DG: Size comes in MB and goes back in KiB, with KT_ERR_NO_RESOURCE too (the most there is). A DGID
// that is not KT_NO_ID renames that array.
KT_U8 createArray(const Context& context, _CreateOrModify_DG_Param& param, bool sizeOnly);
// KT_CreateOrModify_VD: Size in MB, 0 = the whole slot. A VDID that is not KT_NO_ID renames that virtual disk.
KT_U8 createVdInArray(const Context& context, _CreateOrModify_VD_Param& param);
// KT_LD_Create on an adapter with arrays: into the array of just these disks and this level, or into a new one.
KT_U8 createLdInArray(const Context& context, const _Create_LD_Param& param, KT_U64 wantedKib);
// KT_LD_DG_QuickCreate: an array of the free disks of one type, and a virtual disk on all of it. Type 1 keeps the write
// cache on, 0 off.
KT_U8 quickCreate(const Context& context, KT_U8 type);
KT_U8 deleteArray(const Context& context, KT_U16 id);

} // namespace sim
