#include "activities/activities.h"

#include "activities/activityProgress.h"
#include "activities/reading.h"
#include "media/blocks.h"
#include "media/disks.h"
#include "state/due.h"

#include <algorithm>
#include <map>
#include <vector>

namespace sim {

static const KT_U64 HDD_KIB_PER_SECOND = 160 * 1024;
static const KT_U64 SSD_KIB_PER_SECOND = 480 * 1024;

// Disks that a migration moves to are no members yet, but it writes to them.
static void addTargetDisks(const Context& context, KT_U16 vd, std::vector<KT_U16>& disks) {
    const auto target = find<VdTarget>(context, vd);
    for (int i = 0; target && i < geometryOf(target->info).disks; ++i) {
        const auto block = find<_Block_Info>(context, target->info.BlockIDs[i]);
        if (block) disks.push_back(block->HDID);
    }
}

// The disks that an activity of this owner reads or writes, each once.
static std::vector<KT_U16> disksOf(const Context& context, Owner owner, const Activity& activity) {
    std::vector<KT_U16> disks;
    if (owner.kind == OwnerKind::Disk) disks.push_back(owner.id);
    if (owner.kind == OwnerKind::Array) {
        const DgState array = find<DgState>(context, owner.id).value_or(DgState{});
        disks.assign(array.members, array.members + array.memberCount);
    }
    const auto vd = owner.kind == OwnerKind::Vd ? find<_LD_Info>(context, owner.id) : std::nullopt;
    for (int i = 0; vd && i < geometryOf(*vd).disks; ++i) {
        const auto block = find<_Block_Info>(context, vd->BlockIDs[i]);
        if (block) disks.push_back(block->HDID);
    }
    if (vd) addTargetDisks(context, owner.id, disks);
    const auto array = owner.kind == OwnerKind::Array ? find<_DG_Info>(context, owner.id) : std::nullopt;
    for (int i = 0; array && i < MAX_SLOTS; ++i)
        if (array->VDIDs[i] != KT_NO_ID) addTargetDisks(context, array->VDIDs[i], disks);
    if (activity.disk != KT_NO_ID) disks.push_back(activity.disk);
    std::sort(disks.begin(), disks.end());
    disks.erase(std::unique(disks.begin(), disks.end()), disks.end());
    return disks;
}

static KT_U64 activitySpeed(const Context& context, Owner owner, const Activity& activity) {
    const _Adapter_Config_V2 config = adapterConfig(context);
    KT_U64 rate = config.*ruleOf(owner, activity.kind).rate;
    if (rate == 0 || rate > 100) rate = std::clamp<KT_U64>(config.BGARate, 1, 100);
    KT_U64 full = SSD_KIB_PER_SECOND;
    for (const KT_U16 id : disksOf(context, owner, activity)) {
        const auto disk = find<_HD_Info>(context, id);
        if (disk && !isSolidState(*disk)) full = HDD_KIB_PER_SECOND;
    }
    return full * rate / 100;
}

static void setState(const Context& context, Owner owner, Activity activity, KT_U8 state) {
    activity.done = activityDone(activity, context.now);
    activity.since = context.now;
    activity.state = state;
    if (state == KT_STATE_RUNNING) activity.speed = activitySpeed(context, owner, activity);
    saveActivity(context, owner, activity);
}

bool isLeftOver(Owner owner, const Activity& activity) {
    const bool check = activity.kind == KT_BGA_CHECK || activity.kind == KT_BGA_CHECK_FIX;
    return activity.kind != 0 && activity.state == KT_STATE_ABORTED && (owner.kind == OwnerKind::Disk || check);
}

// Checks and patrols that were aborted on these disks cannot be restarted any more: the new activity replaces them.
static void dropLeftOvers(const Context& context, Owner owner, const Activity& activity) {
    const std::vector<KT_U16> disks = disksOf(context, owner, activity);
    std::vector<Owner> leftOvers;
    forEachActivity(context, [&](Owner other, const Activity& left) {
        if (!isLeftOver(other, left)) return;
        const std::vector<KT_U16> theirs = disksOf(context, other, left);
        const bool meets = std::any_of(disks.begin(), disks.end(), [&](KT_U16 pd) {
            return pd != KT_NO_ID && std::find(theirs.begin(), theirs.end(), pd) != theirs.end();
        });
        if (meets) leftOvers.push_back(other);
    });
    for (const Owner other : leftOvers)
        dropActivity(context, other);
}

void startActivity(const Context& context, Owner owner, KT_U8 kind, KT_U64 work, KT_U16 disk) {
    Activity activity = {};
    activity.kind = kind;
    activity.disk = disk;
    activity.work = work;
    setState(context, owner, activity, KT_STATE_RUNNING);
    dropLeftOvers(context, owner, activity);
    logActivity(context, owner, activity, STEP_STARTED);
}

static void restart(const Context& context, Owner owner, Activity activity) {
    // The data that a migration has moved live in their new place. All else begins anew: what a stopped rebuild or copy
    // back has filled was not written to meanwhile, and a check or an initialisation is worth something as a whole
    // only.
    const bool goesOn = activity.kind == KT_BGA_MIGRATION && owner.kind != OwnerKind::Disk;
    if (!goesOn) activity.done = activity.announced = 0; // setState() takes these as what is done by now
    setState(context, owner, activity, KT_STATE_RUNNING);
    logActivity(context, owner, activity, STEP_RESTARTED);
}

KT_U8 controlActivity(const Context& context, Owner owner, KT_U8 control) {
    const Activity activity = activityOf(context, owner);
    const bool waits = activity.state == KT_STATE_PAUSED || activity.state == KT_STATE_AUTO_PAUSED;
    const bool runs = activity.state == KT_STATE_RUNNING;
    if (activity.kind == 0) return KT_ERR_BGA_ACTION;
    if (control == KT_CONTROL_RESTART &&
        (activity.state == KT_STATE_ABORTED || activity.state == KT_STATE_INTERRUPTED)) {
        restart(context, owner, activity);
    } else if (control == KT_CONTROL_PAUSE && (runs || activity.state == KT_STATE_AUTO_PAUSED)) {
        setState(context, owner, activity, KT_STATE_PAUSED);
        logActivity(context, owner, activity, STEP_PAUSED);
    } else if (control == KT_CONTROL_RESUME && waits) {
        if (activity.state == KT_STATE_AUTO_PAUSED) return KT_ERR_BGA_RUNNING;
        setState(context, owner, activity, KT_STATE_RUNNING);
        logActivity(context, owner, activity, STEP_RESUMED);
    } else if ((control == KT_CONTROL_STOP || control == KT_CONTROL_STOP_FOR_DELETE) && (runs || waits)) {
        setState(context, owner, activity, KT_STATE_ABORTED);
        logActivity(context, owner, activity, STEP_ABORTED);
        scheduleRaid(context, nextMoment(context, owner, activityOf(context, owner)));
    } else {
        return KT_ERR_BGA_ACTION;
    }
    arbitrate(context);
    return KT_OK;
}

bool isBusy(const Context& context, KT_U16 pd) {
    bool busy = false;
    forEachActivity(context, [&](Owner owner, const Activity& activity) {
        if (activity.state != KT_STATE_RUNNING || busy) return;
        const std::vector<KT_U16> disks = disksOf(context, owner, activity);
        busy = std::find(disks.begin(), disks.end(), pd) != disks.end();
    });
    return busy;
}

KT_U64 nextMoment(const Context& context, Owner owner, const Activity& activity) {
    if (isLeftOver(owner, activity)) return std::max(activity.since + LEFT_OVER_KEPT, context.now);
    Activity part = activity;
    const KT_U64 quarter = activity.announced + ANNOUNCED_PERCENT;
    if (quarter < 100) part.work = activity.work / 100 * quarter + (activity.work % 100 * quarter + 99) / 100;
    part.work = std::min(part.work, nextMeeting(context, owner, activity));
    // A moment that is past (a lab or a new speed moved it) is due now.
    return std::max(activityEnd(part), context.now);
}

struct Claim {
    Owner owner;
    Activity activity;
    int rank;
    std::vector<KT_U16> disks;
};

static bool sharesDisk(const Claim& one, const Claim& other) {
    return std::any_of(one.disks.begin(), one.disks.end(), [&](KT_U16 disk) {
        return disk != KT_NO_ID && std::find(other.disks.begin(), other.disks.end(), disk) != other.disks.end();
    });
}

static std::vector<Claim> claimsOf(const Context& context) {
    std::vector<Claim> claims;
    forEachActivity(context, [&](Owner owner, const Activity& activity) {
        if (activity.state != KT_STATE_RUNNING && activity.state != KT_STATE_AUTO_PAUSED) return;
        claims.push_back(Claim{owner, activity, ruleOf(owner, activity.kind).rank, disksOf(context, owner, activity)});
    });
    std::stable_sort(claims.begin(), claims.end(),
                     [](const Claim& one, const Claim& other) { return one.rank > other.rank; });
    return claims;
}

// Activities that run side by side on a disk share its speed. Answers when the first of them has something due.
static KT_U64 shareSpeed(const Context& context, const std::vector<Claim>& granted) {
    std::map<KT_U16, KT_U64> crowd;
    for (const Claim& claim : granted) {
        for (const KT_U16 disk : claim.disks)
            ++crowd[disk];
    }
    KT_U64 due = NEVER;
    for (const Claim& claim : granted) {
        KT_U64 most = 1;
        for (const KT_U16 disk : claim.disks)
            if (disk != KT_NO_ID) most = std::max(most, crowd[disk]);
        Activity activity = activityOf(context, claim.owner);
        const KT_U64 speed = activitySpeed(context, claim.owner, activity) / most;
        if (activity.speed != speed) {
            activity.done = activityDone(activity, context.now);
            activity.since = context.now;
            activity.speed = speed;
            saveActivity(context, claim.owner, activity);
        }
        due = std::min(due, nextMoment(context, claim.owner, activity));
    }
    return due;
}

void arbitrate(const Context& context) {
    if (isDown(context)) return;
    std::vector<Claim> granted;
    for (Claim& claim : claimsOf(context)) {
        const bool waits = std::any_of(granted.begin(), granted.end(), [&](const Claim& other) {
            return other.rank > claim.rank && sharesDisk(other, claim);
        });
        if (waits && claim.activity.state == KT_STATE_RUNNING) {
            setState(context, claim.owner, claim.activity, KT_STATE_AUTO_PAUSED);
            logActivity(context, claim.owner, claim.activity, STEP_AUTO_PAUSED);
        }
        if (waits) continue;
        if (claim.activity.state == KT_STATE_AUTO_PAUSED) {
            setState(context, claim.owner, claim.activity, KT_STATE_RUNNING);
            logActivity(context, claim.owner, claim.activity, STEP_AUTO_RESUMED);
        }
        granted.push_back(std::move(claim));
    }
    scheduleRaid(context, shareSpeed(context, granted));
}

void applyRates(const Context& context) {
    if (isDown(context)) return;
    std::vector<Owner> owners;
    forEachActivity(context, [&](Owner owner, const Activity& activity) {
        if (activity.state == KT_STATE_RUNNING) owners.push_back(owner);
    });
    for (const Owner owner : owners)
        setState(context, owner, activityOf(context, owner), KT_STATE_RUNNING);
    arbitrate(context);
}

void pauseAll(const Context& context) {
    std::vector<Owner> owners;
    forEachActivity(context, [&](Owner owner, const Activity& activity) {
        if (activity.state == KT_STATE_RUNNING || activity.state == KT_STATE_AUTO_PAUSED) owners.push_back(owner);
    });
    // Only then arbitrate(): it would let those that wait run as soon as the first one is paused.
    for (const Owner owner : owners) {
        const Activity activity = activityOf(context, owner);
        setState(context, owner, activity, KT_STATE_PAUSED);
        logActivity(context, owner, activity, STEP_PAUSED);
    }
    arbitrate(context);
}

} // namespace sim
