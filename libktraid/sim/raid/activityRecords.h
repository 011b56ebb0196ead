// Who has a background activity, and where it is kept, shown and logged. What makes activities run is in
// activities/activities.h.
#pragma once

#include "raid/volumes.h"
#include "state/events.h"

#include <functional>

namespace sim {

// A virtual disk has its initialisation, check, and outside arrays its rebuild, copy back and migration; an array has
// the rebuild, copy back and migration of all its virtual disks; a disk has its media patrol.
enum class OwnerKind { Vd, Array, Disk };
struct Owner {
    OwnerKind kind;
    KT_U16 id;
};

// What happens to an activity, in the order of its events.
enum ActivityStep : KT_U16 {
    STEP_STARTED = 0,
    STEP_RESTARTED = 1,
    STEP_PAUSED = 2,
    STEP_RESUMED = 3,
    STEP_ABORTED = 4,
    STEP_COMPLETED = 5,
    STEP_PROGRESS = 6,
    STEP_FAILED = 7,
    STEP_AUTO_PAUSED = 8,
    STEP_AUTO_RESUMED = 9
};

// How activities of one kind differ from others.
struct ActivityRule {
    KT_U8 kind;
    EventName started; // its event of STEP_STARTED; those of the other steps follow it
    int rank;          // the greater one runs first
    KT_U8 _Adapter_Config_V2::*rate;
};
const ActivityRule& ruleOf(Owner owner, KT_U8 kind);

// The owner's activity; kind 0 when it has none.
Activity activityOf(const Context& context, Owner owner);
// Keeps it, and shows it in the records of the owner and of what belongs to the owner.
void saveActivity(const Context& context, Owner owner, const Activity& activity);
// Forgets it.
void dropActivity(const Context& context, Owner owner);
void logActivity(const Context& context, Owner owner, const Activity& activity, ActivityStep step,
                 KT_U32 parameter = 0);
// All owners that have an activity.
void forEachActivity(const Context& context, const std::function<void(Owner, const Activity&)>& visit);

// What status calls show of a virtual disk: its array's activity if that has one, else its own.
Activity shownActivity(const Context& context, const Vd& vd);
// True for one that runs or will run again; also for a migration that was stopped, for only it can be gone on with.
inline bool isAlive(const Activity& activity) {
    return activity.kind != 0 && (activity.state != KT_STATE_ABORTED || activity.kind == KT_BGA_MIGRATION);
}

// Brings what the records of a virtual disk and its array show of activities up to date.
void showActivity(const Context& context, KT_U16 id);
void showArrayActivity(const Context& context, KT_U16 id);

} // namespace sim
