// Where disks can be: the bays of shelves, and the ports of the adapter, its expanders and its port multipliers.
#pragma once

#include "state/store.h"

namespace sim {

// Puts the disk into the first free place, which shelves have before ports: KT_ERR_NO_RESOURCE when there is none. What
// pulled disks have left is taken last.
KT_U8 putAnywhere(const Context& context, _HD_Info& disk);
// Whether another disk is where this one says it is, or that place is not there.
bool isPlaceTaken(const Context& context, const _HD_Info& disk);

} // namespace sim
