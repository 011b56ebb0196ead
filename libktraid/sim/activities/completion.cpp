#include "activities/activityProgress.h"
#include "activities/jobs.h"
#include "activities/migrating.h"
#include "activities/reading.h"
#include "activities/rebuilding.h"
#include "frame/settle.h"

#include <algorithm>
#include <vector>

namespace sim {

static void completeVdJob(const Context& context, Owner owner, const Activity& job) {
    Vd vd = {};
    if (findVd(context, owner.id, vd) != KT_OK) return;
    if (job.kind != KT_BGA_CHECK) vd.state.initialized = 1;
    save(context, owner.id, vd.state);
    dropJob(context, owner);
    logJob(context, owner, job, STEP_COMPLETED);
}

void completeJob(const Context& context, Owner owner) {
    const Activity job = jobOf(context, owner);
    wearDisks(context, owner, job);
    if (owner.kind == OwnerKind::Disk) {
        dropJob(context, owner);
        logJob(context, owner, job, STEP_COMPLETED);
    } else if (job.kind == KT_BGA_REBUILD) {
        finishRebuild(context, owner);
    } else if (job.kind == KT_BGA_COPY_BACK) {
        finishCopyBack(context, owner);
    } else if (job.kind == KT_BGA_MIGRATION) {
        finishMigration(context, owner);
    } else {
        completeVdJob(context, owner, job);
    }
}

static void announce(const Context& context, Owner owner, Activity job) {
    const unsigned percent = activityPercent(job, context.now);
    const KT_U64 quarter = percent - percent % ANNOUNCED_PERCENT;
    if (quarter <= job.announced || quarter >= 100) return;
    job.announced = quarter;
    saveJob(context, owner, job);
    logJob(context, owner, job, STEP_PROGRESS, static_cast<KT_U32>(quarter));
}

KT_U64 settleRaid(Context& context) {
    // A lab states how far an activity is, not how fast it goes.
    if (find<AdapterState>(context, 0).value_or(AdapterState{}).dueRaid == 0) applyRates(context);
    std::vector<Owner> due;
    forEachJob(context, [&](Owner owner, const Activity& job) {
        if (nextMoment(context, owner, job) <= context.now) due.push_back(owner);
    });
    bool ended = false;
    for (const Owner owner : due) {
        meetBadSectors(context, owner, jobOf(context, owner));
        const Activity job = jobOf(context, owner);
        if (activityEnd(job) <= context.now) {
            completeJob(context, owner);
            ended = true;
        } else {
            announce(context, owner, job);
        }
    }
    if (ended) arbitrate(context);
    KT_U64 next = NEVER;
    forEachJob(context,
               [&](Owner owner, const Activity& job) { next = std::min(next, nextMoment(context, owner, job)); });
    return next;
}

} // namespace sim
