#include "raid/activityRecords.h"

#include "media/disks.h"

#include <algorithm>

namespace sim {

static const ActivityRule ACTIVITY_RULES[] = {
    {KT_BGA_REBUILD, EVT_VD_REBUILD_STARTED, 5, &_Adapter_Config_V2::RebuildRate},
    {KT_BGA_COPY_BACK, EVT_VD_COPY_BACK_STARTED, 5, &_Adapter_Config_V2::CopybackRate},
    {KT_BGA_MIGRATION, EVT_VD_MIGRATION_STARTED, 4, &_Adapter_Config_V2::MigrationRate},
    {KT_BGA_INIT_QUICK, EVT_VD_QUICK_INIT_STARTED, 3, &_Adapter_Config_V2::InitRate},
    {KT_BGA_INIT_FOREGROUND, EVT_VD_FOREGROUND_INIT_STARTED, 3, &_Adapter_Config_V2::InitRate},
    {KT_BGA_INIT_BACKGROUND, EVT_VD_BACKGROUND_INIT_STARTED, 2, &_Adapter_Config_V2::InitRate},
    {KT_BGA_CHECK_FIX, EVT_VD_FIX_STARTED, 1, &_Adapter_Config_V2::SyncRate},
    {KT_BGA_CHECK, EVT_VD_CHECK_STARTED, 1, &_Adapter_Config_V2::SyncRate},
};
static const ActivityRule PATROL_RULE = {KT_PD_BGA_MEDIA_PATROL, EVT_PD_PATROL_STARTED, 0, &_Adapter_Config_V2::MPRate};

const ActivityRule& ruleOf(Owner owner, KT_U8 kind) {
    if (owner.kind == OwnerKind::Disk) return PATROL_RULE;
    for (const ActivityRule& rule : ACTIVITY_RULES)
        if (rule.kind == kind) return rule;
    return ACTIVITY_RULES[0];
}

Activity activityOf(const Context& context, Owner owner) {
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
        const Activity activity = activityOf(context, Owner{OwnerKind::Array, vd.info.DGID});
        if (activity.kind != 0) return activity;
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
        const Activity activity = find<VdState>(context, array.info.VDIDs[i]).value_or(VdState{}).activity;
        if (isAlive(activity) &&
            (shown.kind == 0 || (shown.state != KT_STATE_RUNNING && activity.state == KT_STATE_RUNNING)))
            shown = activity;
    }
    array.info.BgaType = shown.kind;
    array.info.BgaState = shown.kind ? shown.state : KT_U8{KT_STATE_NONE};
    save(context, id, array.info);
}

static void saveArrayActivity(const Context& context, KT_U16 id, const Activity& activity) {
    Array array = {};
    if (findArray(context, id, array) != KT_OK) return;
    array.state.activity = activity;
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

static void savePatrol(const Context& context, KT_U16 id, const Activity& activity) {
    Disk disk = {};
    if (findDisk(context, id, disk) != KT_OK) return;
    const int change = (activity.kind ? 1 : 0) - (disk.state.patrol.kind ? 1 : 0);
    disk.state.patrol = activity;
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

void saveActivity(const Context& context, Owner owner, const Activity& activity) {
    if (owner.kind == OwnerKind::Array) return saveArrayActivity(context, owner.id, activity);
    if (owner.kind == OwnerKind::Disk) return savePatrol(context, owner.id, activity);
    Vd vd = {};
    if (findVd(context, owner.id, vd) != KT_OK) return;
    vd.state.activity = activity;
    save(context, owner.id, vd.state);
    showActivity(context, owner.id);
}

void dropActivity(const Context& context, Owner owner) {
    Activity none = {};
    none.disk = KT_NO_ID;
    saveActivity(context, owner, none);
}

static void logVdActivity(const Context& context, KT_U16 id, EventName event, KT_U32 parameter) {
    const auto vd = find<_LD_Info>(context, id);
    if (vd) logEvent(context, event, id, vdParams(vd->RaidMode, parameter));
}

void logActivity(const Context& context, Owner owner, const Activity& activity, ActivityStep step, KT_U32 parameter) {
    const auto event = static_cast<EventName>(ruleOf(owner, activity.kind).started + KT_U32{step});
    if (owner.kind == OwnerKind::Disk) {
        logEvent(context, event, owner.id, {parameter});
    } else if (owner.kind == OwnerKind::Vd) {
        logVdActivity(context, owner.id, event, parameter);
    } else {
        const auto array = find<_DG_Info>(context, owner.id);
        for (int i = 0; array && i < MAX_SLOTS; ++i)
            if (array->VDIDs[i] != KT_NO_ID) logVdActivity(context, array->VDIDs[i], event, parameter);
    }
}

void forEachActivity(const Context& context, const std::function<void(Owner, const Activity&)>& visit) {
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

} // namespace sim
