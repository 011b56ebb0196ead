// What happens to activities by themselves as time passes.
#pragma once

#include "raid/activityRecords.h"

namespace sim {

// Carries out what completing means.
void completeActivity(const Context& context, Owner owner);
// Lets activities announce their progress, meet bad sectors and complete as is due at context.now. Answers when to call
// again, which is later than context.now (NEVER = not at all).
KT_U64 settleActivities(Context& context);

} // namespace sim
