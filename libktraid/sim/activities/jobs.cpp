#include "activities/jobs.h"

#include "activities/activityProgress.h"
#include "activities/reading.h"
#include "frame/settle.h"
#include "raid/candidates.h"
#include "state/events.h"

#include <algorithm>
#include <map>
#include <vector>

namespace sim {

static const KT_U64 HDD_KIB_PER_SECOND = 160 * 1024;
static const KT_U64 SSD_KIB_PER_SECOND = 480 * 1024;

struct JobRule {
    KT_U8 kind;
    KT_U16 eventCode;
    int rank; // the greater one runs first
    KT_U8 _Adapter_Config_V2::*rate;
};

static const JobRule JOB_RULES[] = {
    {KT_BGA_REBUILD, 70, 5, &_Adapter_Config_V2::RebuildRate},
    {KT_BGA_COPY_BACK, 90, 5, &_Adapter_Config_V2::CopybackRate},
    {KT_BGA_MIGRATION, 80, 4, &_Adapter_Config_V2::MigrationRate},
    {KT_BGA_INIT_QUICK, 40, 3, &_Adapter_Config_V2::InitRate},
    {KT_BGA_INIT_FOREGROUND, 60, 3, &_Adapter_Config_V2::InitRate},
    {KT_BGA_INIT_BACKGROUND, 50, 2, &_Adapter_Config_V2::InitRate},
    {KT_BGA_CHECK_FIX, 30, 1, &_Adapter_Config_V2::SyncRate},
    {KT_BGA_CHECK, 20, 1, &_Adapter_Config_V2::SyncRate},
};
static const JobRule PATROL_RULE = {KT_PD_BGA_MEDIA_PATROL, 17, 0, &_Adapter_Config_V2::MPRate};

static const JobRule& ruleOf(Owner owner, KT_U8 kind) {
    if (owner.kind == OwnerKind::Disk) return PATROL_RULE;
    for (const JobRule& rule : JOB_RULES)
        if (rule.kind == kind) return rule;
    return JOB_RULES[0];
}

Activity jobOf(const Context& context, Owner owner) {
    switch (owner.kind) {
    case OwnerKind::Vd:
        return find<VdState>(context, owner.id).value_or(VdState{}).activity;
    case OwnerKind::Array:
        return find<DgState>(context, owner.id).value_or(DgState{}).activity;
    default:
        return find<PdState>(context, owner.id).value_or(PdState{}).patrol;
    }
}

Activity shownActivity(const Context& context, const Vd& vd) {
    if (vd.info.DGID != KT_NO_ID) {
        const Activity job = jobOf(context, Owner{OwnerKind::Array, vd.info.DGID});
        if (job.kind != 0) return job;
    }
    return vd.state.activity;
}

static void showOnVd(const Context& context, KT_U16 id) {
    Vd vd = {};
    if (findVd(context, id, vd) != KT_OK) return;
    const Activity shown = shownActivity(context, vd);
    const KT_U8 state = shown.kind ? shown.state : KT_U8{KT_STATE_NONE};
    if (vd.info.BGAStatus == state) return;
    vd.info.BGAStatus = state;
    save(context, id, vd.info);
}

// An array shows its own activity, or else one of its virtual disks', a running one first.
void showArrayActivity(const Context& context, KT_U16 id) {
    Array array = {};
    if (findArray(context, id, array) != KT_OK) return;
    Activity shown = array.state.activity;
    for (int i = 0; array.state.activity.kind == 0 && i < MAX_SLOTS; ++i) {
        const Activity job = find<VdState>(context, array.info.VDIDs[i]).value_or(VdState{}).activity;
        if (job.kind && (shown.kind == 0 || (shown.state != KT_STATE_RUNNING && job.state == KT_STATE_RUNNING)))
            shown = job;
    }
    array.info.BgaType = shown.kind;
    array.info.BgaState = shown.kind ? shown.state : KT_U8{KT_STATE_NONE};
    save(context, id, array.info);
}

static void saveArrayJob(const Context& context, KT_U16 id, const Activity& job) {
    Array array = {};
    if (findArray(context, id, array) != KT_OK) return;
    array.state.activity = job;
    save(context, id, array.state);
    for (const KT_U16 vd : array.info.VDIDs)
        if (vd != KT_NO_ID) showOnVd(context, vd);
    showArrayActivity(context, id);
}

static void showPatrol(const Context& context, KT_U16 dgid) {
    Array array = {};
    if (dgid == KT_NO_ID || findArray(context, dgid, array) != KT_OK) return;
    array.info.PDBgaRunning = 0;
    for (int i = 0; i < array.info.PDCount; ++i) {
        const auto disk = find<PdState>(context, array.info.PDIDs[i]);
        if (disk && disk->patrol.state == KT_STATE_RUNNING) array.info.PDBgaRunning = 1;
    }
    save(context, dgid, array.info);
}

static void savePatrol(const Context& context, KT_U16 id, const Activity& job) {
    Disk disk = {};
    if (findDisk(context, id, disk) != KT_OK) return;
    const int change = (job.kind ? 1 : 0) - (disk.state.patrol.kind ? 1 : 0);
    disk.state.patrol = job;
    saveDisk(context, disk);
    AdapterState adapter = find<AdapterState>(context, 0).value_or(AdapterState{});
    adapter.patrols = static_cast<KT_U16>(std::max(adapter.patrols + change, 0));
    if (change != 0) save(context, 0, adapter);
    showPatrol(context, disk.state.dgid);
}

void showActivity(const Context& context, KT_U16 id) {
    showOnVd(context, id);
    const auto vd = find<_LD_Info>(context, id);
    if (vd && vd->DGID != KT_NO_ID) showArrayActivity(context, vd->DGID);
}

void saveJob(const Context& context, Owner owner, const Activity& job) {
    if (owner.kind == OwnerKind::Array) return saveArrayJob(context, owner.id, job);
    if (owner.kind == OwnerKind::Disk) return savePatrol(context, owner.id, job);
    Vd vd = {};
    if (findVd(context, owner.id, vd) != KT_OK) return;
    vd.state.activity = job;
    save(context, owner.id, vd.state);
    showActivity(context, owner.id);
}

void dropJob(const Context& context, Owner owner) {
    Activity none = {};
    none.disk = KT_NO_ID;
    saveJob(context, owner, none);
}

static KT_U8 severityOf(JobStep step) {
    if (step == STEP_FAILED) return SEV_MAJOR;
    return step == STEP_ABORTED ? KT_U8{SEV_WARNING} : KT_U8{SEV_INFO};
}

static void logVdJob(const Context& context, KT_U16 id, KT_U16 code, KT_U8 severity, KT_U32 parameter) {
    const auto vd = find<_LD_Info>(context, id);
    if (vd) logEvent(context, EVT_VD, code, id, severity, parameter, 0, 0, isHybridLevel(vd->RaidMode) ? 1 : 0);
}

void logJob(const Context& context, Owner owner, const Activity& job, JobStep step, KT_U32 parameter) {
    const auto code = static_cast<KT_U16>(ruleOf(owner, job.kind).eventCode + step);
    const KT_U8 severity = severityOf(step);
    if (owner.kind == OwnerKind::Disk) {
        logEvent(context, EVT_PD, code, owner.id, severity, parameter);
    } else if (owner.kind == OwnerKind::Vd) {
        logVdJob(context, owner.id, code, severity, parameter);
    } else {
        const auto array = find<_DG_Info>(context, owner.id);
        for (int i = 0; array && i < MAX_SLOTS; ++i)
            if (array->VDIDs[i] != KT_NO_ID) logVdJob(context, array->VDIDs[i], code, severity, parameter);
    }
}

// Disks that a migration moves to are no members yet, but it writes to them.
static void addTargetDisks(const Context& context, KT_U16 vd, std::vector<KT_U16>& disks) {
    const auto target = find<VdTarget>(context, vd);
    for (int i = 0; target && i < geometryOf(target->info).disks; ++i) {
        const auto block = find<_Block_Info>(context, target->info.BlockIDs[i]);
        if (block) disks.push_back(block->HDID);
    }
}

// The disks that an activity of this owner reads or writes, each once.
static std::vector<KT_U16> disksOf(const Context& context, Owner owner, const Activity& job) {
    std::vector<KT_U16> disks;
    if (owner.kind == OwnerKind::Disk) disks.push_back(owner.id);
    if (owner.kind == OwnerKind::Array) {
        const DgState array = find<DgState>(context, owner.id).value_or(DgState{});
        disks.assign(array.members, array.members + std::min<int>(array.memberCount, MAX_MEMBERS));
    }
    const auto vd = owner.kind == OwnerKind::Vd ? find<_LD_Info>(context, owner.id) : std::nullopt;
    for (int i = 0; vd && i < geometryOf(*vd).disks; ++i) {
        const auto block = find<_Block_Info>(context, vd->BlockIDs[i]);
        if (block) disks.push_back(block->HDID);
    }
    if (owner.kind == OwnerKind::Vd && job.kind == KT_BGA_MIGRATION) addTargetDisks(context, owner.id, disks);
    const auto array = owner.kind == OwnerKind::Array && job.kind == KT_BGA_MIGRATION
                           ? find<_DG_Info>(context, owner.id)
                           : std::nullopt;
    for (int i = 0; array && i < MAX_SLOTS; ++i)
        if (array->VDIDs[i] != KT_NO_ID) addTargetDisks(context, array->VDIDs[i], disks);
    if (job.disk != KT_NO_ID) disks.push_back(job.disk);
    std::sort(disks.begin(), disks.end());
    disks.erase(std::unique(disks.begin(), disks.end()), disks.end());
    return disks;
}

static KT_U64 jobSpeed(const Context& context, Owner owner, const Activity& job) {
    const _Adapter_Config_V2 config = adapterConfig(context);
    KT_U64 rate = config.*ruleOf(owner, job.kind).rate;
    if (rate == 0 || rate > 100) rate = std::clamp<KT_U64>(config.BGARate, 1, 100);
    KT_U64 full = SSD_KIB_PER_SECOND;
    for (const KT_U16 id : disksOf(context, owner, job)) {
        const auto disk = find<_HD_Info>(context, id);
        if (disk && !isSolidState(*disk)) full = HDD_KIB_PER_SECOND;
    }
    return full * rate / 100;
}

static void setState(const Context& context, Owner owner, Activity job, KT_U8 state) {
    job.done = activityDone(job, context.now);
    job.since = context.now;
    job.state = state;
    if (state == KT_STATE_RUNNING) job.speed = jobSpeed(context, owner, job);
    saveJob(context, owner, job);
}

void startJob(const Context& context, Owner owner, KT_U8 kind, KT_U64 work, KT_U16 disk) {
    Activity job = {};
    job.kind = kind;
    job.disk = disk;
    job.work = work;
    setState(context, owner, job, KT_STATE_RUNNING);
    logJob(context, owner, job, STEP_STARTED);
}

static void restart(const Context& context, Owner owner, Activity job) {
    // What a migration or a rebuild has moved stays moved; a check or an initialisation begins anew.
    const bool goesOn = job.kind == KT_BGA_MIGRATION && owner.kind != OwnerKind::Disk;
    if (!goesOn) job.done = job.announced = 0; // setState() counts from here
    setState(context, owner, job, KT_STATE_RUNNING);
    logJob(context, owner, job, STEP_RESTARTED);
}

KT_U8 controlJob(const Context& context, Owner owner, KT_U8 control) {
    const Activity job = jobOf(context, owner);
    const bool waits = job.state == KT_STATE_PAUSED || job.state == KT_STATE_AUTO_PAUSED;
    const bool runs = job.state == KT_STATE_RUNNING;
    if (job.kind == 0) return KT_ERR_BGA_ACTION;
    if (control == KT_CONTROL_RESTART && (job.state == KT_STATE_ABORTED || job.state == KT_STATE_INTERRUPTED)) {
        restart(context, owner, job);
    } else if (control == KT_CONTROL_PAUSE && (runs || job.state == KT_STATE_AUTO_PAUSED)) {
        setState(context, owner, job, KT_STATE_PAUSED);
        logJob(context, owner, job, STEP_PAUSED);
    } else if (control == KT_CONTROL_RESUME && waits) {
        if (job.state == KT_STATE_AUTO_PAUSED) return KT_ERR_BGA_RUNNING;
        setState(context, owner, job, KT_STATE_RUNNING);
        logJob(context, owner, job, STEP_RESUMED);
    } else if ((control == KT_CONTROL_STOP || control == KT_CONTROL_STOP_FOR_DELETE) && (runs || waits)) {
        setState(context, owner, job, KT_STATE_ABORTED);
        logJob(context, owner, job, STEP_ABORTED);
    } else {
        return KT_ERR_BGA_ACTION;
    }
    arbitrate(context);
    return KT_OK;
}

void forEachJob(const Context& context, const std::function<void(Owner, const Activity&)>& visit) {
    forEach<VdState>(context, 0, [&](KT_U64 id, const VdState& state) {
        if (state.activity.kind) visit(Owner{OwnerKind::Vd, static_cast<KT_U16>(id)}, state.activity);
        return true;
    });
    forEach<DgState>(context, 0, [&](KT_U64 id, const DgState& state) {
        if (state.activity.kind) visit(Owner{OwnerKind::Array, static_cast<KT_U16>(id)}, state.activity);
        return true;
    });
    if (find<AdapterState>(context, 0).value_or(AdapterState{}).patrols == 0) return;
    forEach<PdState>(context, 0, [&](KT_U64 id, const PdState& state) {
        if (state.patrol.kind) visit(Owner{OwnerKind::Disk, static_cast<KT_U16>(id)}, state.patrol);
        return true;
    });
}

bool isBusy(const Context& context, KT_U16 pd) {
    bool busy = false;
    forEachJob(context, [&](Owner owner, const Activity& job) {
        if (job.state != KT_STATE_RUNNING || busy) return;
        const std::vector<KT_U16> disks = disksOf(context, owner, job);
        busy = std::find(disks.begin(), disks.end(), pd) != disks.end();
    });
    return busy;
}

KT_U64 nextMoment(const Context& context, Owner owner, const Activity& job) {
    Activity part = job;
    const KT_U64 quarter = job.announced + ANNOUNCED_PERCENT;
    if (quarter < 100) part.work = job.work / 100 * quarter + (job.work % 100 * quarter + 99) / 100;
    part.work = std::min(part.work, nextMeeting(context, owner, job));
    // What lies behind already, for its place has changed, shows at once.
    return std::max(activityEnd(part), context.now);
}

struct Claim {
    Owner owner;
    Activity job;
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
    forEachJob(context, [&](Owner owner, const Activity& job) {
        if (job.state != KT_STATE_RUNNING && job.state != KT_STATE_AUTO_PAUSED) return;
        claims.push_back(Claim{owner, job, ruleOf(owner, job.kind).rank, disksOf(context, owner, job)});
    });
    std::stable_sort(claims.begin(), claims.end(),
                     [](const Claim& one, const Claim& other) { return one.rank > other.rank; });
    return claims;
}

// Those that run side by side on a disk share what it can do. Answers when the first of them has something due.
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
        Activity job = jobOf(context, claim.owner);
        const KT_U64 speed = jobSpeed(context, claim.owner, job) / most;
        if (job.speed != speed) {
            job.done = activityDone(job, context.now);
            job.since = context.now;
            job.speed = speed;
            saveJob(context, claim.owner, job);
        }
        due = std::min(due, nextMoment(context, claim.owner, job));
    }
    return due;
}

void arbitrate(const Context& context) {
    std::vector<Claim> granted;
    for (Claim& claim : claimsOf(context)) {
        const bool waits = std::any_of(granted.begin(), granted.end(), [&](const Claim& other) {
            return other.rank > claim.rank && sharesDisk(other, claim);
        });
        if (waits && claim.job.state == KT_STATE_RUNNING) {
            setState(context, claim.owner, claim.job, KT_STATE_AUTO_PAUSED);
            logJob(context, claim.owner, claim.job, STEP_AUTO_PAUSED);
        }
        if (waits) continue;
        if (claim.job.state == KT_STATE_AUTO_PAUSED) {
            setState(context, claim.owner, claim.job, KT_STATE_RUNNING);
            logJob(context, claim.owner, claim.job, STEP_AUTO_RESUMED);
        }
        granted.push_back(std::move(claim));
    }
    scheduleRaid(context, shareSpeed(context, granted));
}

void applyRates(const Context& context) {
    std::vector<Owner> owners;
    forEachJob(context, [&](Owner owner, const Activity& job) {
        if (job.state == KT_STATE_RUNNING) owners.push_back(owner);
    });
    for (const Owner owner : owners)
        setState(context, owner, jobOf(context, owner), KT_STATE_RUNNING);
    arbitrate(context);
}

void pauseAll(const Context& context) {
    std::vector<Owner> owners;
    forEachJob(context, [&](Owner owner, const Activity& job) {
        if (job.state == KT_STATE_RUNNING || job.state == KT_STATE_AUTO_PAUSED) owners.push_back(owner);
    });
    // All before any that waits could go on.
    for (const Owner owner : owners) {
        const Activity job = jobOf(context, owner);
        setState(context, owner, job, KT_STATE_PAUSED);
        logJob(context, owner, job, STEP_PAUSED);
    }
    arbitrate(context);
}

} // namespace sim
