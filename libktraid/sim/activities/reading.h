// What activities meet on the surfaces of the disks that they read and write.
#pragma once

#include "raid/activityRecords.h"

namespace sim {

// The work done, in KiB, at which the activity next meets a bad sector; NEVER when it meets none.
KT_U64 nextMeeting(const Context& context, Owner owner, const Activity& activity);
// Lets a running activity meet what lies in the pieces done since `activity.since`: it is logged, and repaired where
// the activity does that and can. The activity then counts from context.now.
void meetBadSectors(const Context& context, Owner owner, const Activity& activity);

// Counts on the disks what the activity, which completes now, has written to them.
void wearDisks(const Context& context, Owner owner, const Activity& activity);

} // namespace sim
