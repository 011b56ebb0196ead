// Background activities: starting, steering and ending them, whoever they belong to.
#pragma once

#include "raid/activityRecords.h"

namespace sim {

// Begins an activity of `work` KiB and logs it. One of the same owner that was aborted is forgotten.
void startActivity(const Context& context, Owner owner, KT_U8 kind, KT_U64 work, KT_U16 disk);
// One of KT_CONTROL_*; KT_ERR_BGA_ACTION for what the state does not allow.
KT_U8 controlActivity(const Context& context, Owner owner, KT_U8 control);

// A check or media patrol that was aborted: it can be restarted for a day, unless something else starts on its disks.
bool isLeftOver(Owner owner, const Activity& activity);
inline constexpr KT_U64 LEFT_OVER_KEPT = 24 * 3600 * 1000; // milliseconds

// Whether an activity reads or writes the disk now.
bool isBusy(const Context& context, KT_U16 pd);

// Lets the greater of activities on the same disks run and the lesser wait; call after anything that starts, stops or
// moves one. Then settling looks again at the next moment something is due.
void arbitrate(const Context& context);
// Carries on with new speeds after the adapter's rates were changed.
void applyRates(const Context& context);
// Every running activity of the adapter pauses.
void pauseAll(const Context& context);

// The moment at which a running activity completes, passes the next quarter, which is logged, or meets a bad sector;
// for an aborted check or patrol, the moment at which it can no longer be restarted and is forgotten.
KT_U64 nextMoment(const Context& context, Owner owner, const Activity& activity);
inline constexpr unsigned ANNOUNCED_PERCENT = 25;

} // namespace sim
