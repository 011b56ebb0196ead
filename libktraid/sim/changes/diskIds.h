// The numbers that an adapter knows its disks by, as its flash remembers them.
#pragma once

#include "state/store.h"

namespace sim {

// The lowest id that neither a disk has nor a pulled one may want back; KT_NO_ID = none is left.
KT_U16 freeDiskId(const Context& context);
// The id of a pulled disk that comes back: its own, or a free one when the adapter has forgotten it.
KT_U16 idOnReturn(const Context& context, KT_U16 pd);

// The ids of pulled disks may go to others; what is left are numbers, beyond those of the adapter, to ask for them by.
void forgetAwayIds(const Context& context);
// The same, and the disks that are there are numbered afresh, in their order; all but the event log follows.
void renumberDisks(const Context& context);

} // namespace sim
