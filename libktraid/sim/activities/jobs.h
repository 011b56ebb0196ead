// Background activities: starting, steering and ending them, whoever they belong to.
#pragma once

#include "raid/volumes.h"

#include <functional>

namespace sim {

// A virtual disk has its initialisation, check, and outside arrays its rebuild, copy back and migration; an array has
// the rebuild, copy back and migration of all its virtual disks; a disk has its media patrol.
enum class OwnerKind { Vd, Array, Disk };
struct Owner {
    OwnerKind kind;
    KT_U16 id;
};

// What happens to an activity, in the order of its event codes.
enum JobStep : KT_U16 {
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

// The owner's activity; kind 0 when it has none.
Activity jobOf(const Context& context, Owner owner);
// Keeps it, and shows it in the records of the owner and of what belongs to the owner.
void saveJob(const Context& context, Owner owner, const Activity& job);
// Forgets it.
void dropJob(const Context& context, Owner owner);
// Begins an activity of `work` KiB, in place of one that was aborted, and logs it.
void startJob(const Context& context, Owner owner, KT_U8 kind, KT_U64 work, KT_U16 disk);
// One of KT_CONTROL_*; KT_ERR_BGA_ACTION for what the state does not allow.
KT_U8 controlJob(const Context& context, Owner owner, KT_U8 control);
void logJob(const Context& context, Owner owner, const Activity& job, JobStep step, KT_U32 parameter = 0);

// Whether an activity reads or writes the disk now.
bool isBusy(const Context& context, KT_U16 pd);

// What status calls show of a virtual disk: its array's activity if that has one, else its own.
Activity shownActivity(const Context& context, const Vd& vd);
// True for one that runs or will run again; also for a migration that was stopped, for only it can be gone on with.
inline bool isAlive(const Activity& job) {
    return job.kind != 0 && (job.state != KT_STATE_ABORTED || job.kind == KT_BGA_MIGRATION);
}

// Brings what the records of a virtual disk and its array show of activities up to date.
void showActivity(const Context& context, KT_U16 id);
void showArrayActivity(const Context& context, KT_U16 id);

// Lets the greater of activities on the same disks run and the lesser wait; call after anything that starts, stops or
// moves one. Then settling looks again at the next moment something is due.
void arbitrate(const Context& context);
// Carries on with new speeds after the adapter's rates were changed.
void applyRates(const Context& context);
// Every running activity of the adapter pauses.
void pauseAll(const Context& context);

// The moment at which a running activity completes, passes the next quarter, which is logged, or meets a bad sector.
KT_U64 nextMoment(const Context& context, Owner owner, const Activity& job);
inline constexpr unsigned ANNOUNCED_PERCENT = 25;
// All owners that have an activity.
void forEachJob(const Context& context, const std::function<void(Owner, const Activity&)>& visit);

// completion.cpp: carries out what completing means.
void completeJob(const Context& context, Owner owner);

} // namespace sim
