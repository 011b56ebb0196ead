#include "activities/completion.h"

#include "activities/activities.h"
#include "activities/activityProgress.h"
#include "activities/migrating.h"
#include "activities/reading.h"
#include "activities/rebuilding.h"

#include <algorithm>
#include <vector>

namespace sim {

static void completeVdActivity(const Context& context, Owner owner, const Activity& activity) {
    Vd vd = {};
    if (findVd(context, owner.id, vd) != KT_OK) return;
    if (activity.kind != KT_BGA_CHECK) vd.state.initialized = 1;
    save(context, owner.id, vd.state);
    dropActivity(context, owner);
    logActivity(context, owner, activity, STEP_COMPLETED);
}

void completeActivity(const Context& context, Owner owner) {
    const Activity activity = activityOf(context, owner);
    wearDisks(context, owner, activity);
    if (owner.kind == OwnerKind::Disk) {
        dropActivity(context, owner);
        logActivity(context, owner, activity, STEP_COMPLETED);
    } else if (activity.kind == KT_BGA_REBUILD) {
        finishRebuild(context, owner);
    } else if (activity.kind == KT_BGA_COPY_BACK) {
        finishCopyBack(context, owner);
    } else if (activity.kind == KT_BGA_MIGRATION) {
        finishMigration(context, owner);
    } else {
        completeVdActivity(context, owner, activity);
    }
}

static void announce(const Context& context, Owner owner, Activity activity) {
    const unsigned percent = activityPercent(activity, context.now);
    const KT_U64 quarter = percent - percent % ANNOUNCED_PERCENT;
    if (quarter <= activity.announced || quarter >= 100) return;
    activity.announced = quarter;
    saveActivity(context, owner, activity);
    logActivity(context, owner, activity, STEP_PROGRESS, static_cast<KT_U32>(quarter));
}

// Answers whether the activity ended.
static bool settleActivity(const Context& context, Owner owner) {
    meetBadSectors(context, owner, activityOf(context, owner));
    const Activity activity = activityOf(context, owner);
    if (isLeftOver(owner, activity)) {
        dropActivity(context, owner);
    } else if (activityEnd(activity) <= context.now) {
        completeActivity(context, owner);
        return true;
    } else {
        announce(context, owner, activity);
    }
    return false;
}

KT_U64 settleActivities(Context& context) {
    // In a new state nothing is due yet (0): a lab says how far an activity is, but not how fast it goes.
    if (find<AdapterState>(context, 0).value_or(AdapterState{}).dueRaid == 0) applyRates(context);
    std::vector<Owner> due;
    forEachActivity(context, [&](Owner owner, const Activity& activity) {
        if (nextMoment(context, owner, activity) <= context.now) due.push_back(owner);
    });
    bool ended = false;
    for (const Owner owner : due)
        ended = settleActivity(context, owner) || ended;
    if (ended) arbitrate(context);
    KT_U64 next = NEVER;
    forEachActivity(context, [&](Owner owner, const Activity& activity) {
        next = std::min(next, nextMoment(context, owner, activity));
    });
    return next;
}

} // namespace sim
