// Disks arriving from other adapters.
#pragma once

#include "state/store.h"

#include <vector>

namespace sim {

// Disks of another state (a lab) are put into this adapter, with what is on them, whether they are in their bays there
// or were pulled out before; `ids` are theirs here, the lowest free ones. Their virtual disks show up as foreign ones,
// importable as soon as enough of their members have come. KT_ERR_PD_MISSING when there is no such disk,
// KT_ERR_NOT_SUPPORTED when it does not fit the adapter's ports, KT_ERR_NO_RESOURCE and KT_ERR_NO_VD_ID when the
// adapter is full.
KT_U8 insertForeignDisks(const Context& context, Store& other, KT_U8 otherAdapter, const std::vector<KT_U16>& disks,
                         std::vector<KT_U16>& ids);

} // namespace sim
