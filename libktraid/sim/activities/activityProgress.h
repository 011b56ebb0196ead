// Progress of an Activity from its start, speed and the clock.
#pragma once

#include "state/records.h"

namespace sim {

inline constexpr KT_U64 MS_PER_SECOND = 1000;

// KiB done at `now`; never beyond the work.
inline KT_U64 activityDone(const Activity& activity, KT_U64 now) {
    KT_U64 done = activity.done;
    if (activity.state == KT_STATE_RUNNING && now > activity.since) {
        const KT_U64 passed = now - activity.since;
        done += passed / MS_PER_SECOND * activity.speed + passed % MS_PER_SECOND * activity.speed / MS_PER_SECOND;
    }
    return done < activity.work ? done : activity.work;
}

// 0 to 100, rounded down; an activity without work is done.
inline unsigned activityPercent(const Activity& activity, KT_U64 now) {
    if (activity.work == 0) return 100;
    const KT_U64 done = activityDone(activity, now);
    const KT_U64 hundredth = activity.work / 100;
    return static_cast<unsigned>(hundredth ? (done / hundredth < 100 ? done / hundredth : 100)
                                           : done * 100 / activity.work);
}

// The moment a running activity completes, NEVER when it does not run.
inline KT_U64 activityEnd(const Activity& activity) {
    if (activity.state != KT_STATE_RUNNING || activity.speed == 0) return NEVER;
    const KT_U64 left = activity.work > activity.done ? activity.work - activity.done : 0;
    const KT_U64 rest = left % activity.speed * MS_PER_SECOND;
    return activity.since + left / activity.speed * MS_PER_SECOND + (rest + activity.speed - 1) / activity.speed;
}

} // namespace sim
