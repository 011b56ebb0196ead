#include "activities/steering.h"

#include "activities/activities.h"
#include "activities/rebuilding.h"
#include "media/blocks.h"
#include "media/disks.h"

#include <algorithm>

namespace sim {

static const KT_U64 QUICK_INIT_KIB = 512 * 1024; // the ends of every member are cleared, nothing else

KT_U64 initializationWork(KT_U8 kind, KT_U64 share) {
    return kind == KT_BGA_INIT_QUICK ? std::min(share, QUICK_INIT_KIB) : share;
}

// KT_OK when a virtual disk can begin something: there, working, and nothing else under way.
static KT_U8 checkIdle(const Context& context, KT_U16 id, Vd& vd) {
    const KT_U8 status = findVd(context, id, vd);
    if (status != KT_OK) return status;
    if (!isUsable(vd.info)) return KT_ERR_VD_NOT_READY;
    return isAlive(shownActivity(context, vd)) ? KT_U8{KT_ERR_VD_BUSY} : KT_U8{KT_OK};
}

struct InitRule {
    KT_U8 type;
    KT_U8 kind;
    KT_U8 feature;
};
static const InitRule INIT_RULES[] = {
    {KT_INIT_QUICK, KT_BGA_INIT_QUICK, 0},
    {KT_INIT_FOREGROUND, KT_BGA_INIT_FOREGROUND, KT_FEATURE_FOREGROUND_INIT},
    {KT_INIT_BACKGROUND, KT_BGA_INIT_BACKGROUND, KT_FEATURE_BACKGROUND_INIT},
};

KT_U8 startInitialization(const Context& context, KT_U16 id, KT_U8 initType) {
    const InitRule* rule = std::find_if(std::begin(INIT_RULES), std::end(INIT_RULES),
                                        [&](const InitRule& r) { return r.type == initType; });
    if (rule == std::end(INIT_RULES)) return KT_ERR_INVALID_PARAMETER;
    Vd vd = {};
    const KT_U8 status = checkIdle(context, id, vd);
    if (status != KT_OK) return status;
    if (rule->feature && !(adapterInfo(context).Features & rule->feature)) return KT_ERR_NOT_SUPPORTED;
    if (vd.info.RaidMode == KT_RAID0 && initType != KT_INIT_QUICK) return KT_ERR_NOT_REDUNDANT;
    if (vd.info.Status != KT_VD_ONLINE) return KT_ERR_VD_NOT_READY;
    // Only a background initialisation keeps the data.
    if (runsSystem(vd) && initType != KT_INIT_BACKGROUND) return KT_ERR_VD_HAS_OS;
    vd.state.initialized = 0;
    save(context, id, vd.state);
    giveUpCopyBack(context, Owner{OwnerKind::Vd, id});
    startActivity(context, Owner{OwnerKind::Vd, id}, rule->kind,
                  initializationWork(rule->kind, shareOf(context, vd.info)), KT_NO_ID);
    arbitrate(context);
    return KT_OK;
}

KT_U8 startCheck(const Context& context, KT_U16 id, KT_U8 fix) {
    if (fix > 1) return KT_ERR_INVALID_PARAMETER;
    if (!(adapterInfo(context).Features & KT_FEATURE_SYNC)) return KT_ERR_NOT_SUPPORTED;
    Vd vd = {};
    const KT_U8 status = checkIdle(context, id, vd);
    if (status != KT_OK) return status;
    if (!isRedundant(vd.info.RaidMode)) return KT_ERR_NOT_REDUNDANT;
    if (vd.info.Status != KT_VD_ONLINE) return KT_ERR_VD_NOT_READY;
    // Before the first initialisation members differ everywhere: a check would report that, only a fix is of use.
    if (!fix && !vd.state.initialized) return KT_ERR_VD_NOT_INITIALIZED;
    giveUpCopyBack(context, Owner{OwnerKind::Vd, id});
    startActivity(context, Owner{OwnerKind::Vd, id}, fix ? KT_BGA_CHECK_FIX : KT_BGA_CHECK, shareOf(context, vd.info),
                  KT_NO_ID);
    arbitrate(context);
    return KT_OK;
}

KT_U8 startPatrol(const Context& context, KT_U16 id) {
    if (!(adapterInfo(context).Features & KT_FEATURE_MEDIA_PATROL)) return KT_ERR_NOT_SUPPORTED;
    Disk disk = {};
    const KT_U8 status = findDisk(context, id, disk);
    if (status != KT_OK) return status;
    if (disk.state.raid & KT_PD_OFFLINE) return KT_ERR_PD_MISSING;
    if (!(disk.state.raid & (KT_PD_MEMBER | KT_PD_SPARE)) || (disk.state.raid & KT_PD_FOREIGN)) return KT_ERR_NOT_SPARE;
    if (isAlive(disk.state.patrol)) return KT_ERR_BGA_RUNNING;
    bool another = false;
    forEachActivity(context, [&](Owner owner, const Activity& activity) {
        another = another || (owner.kind == OwnerKind::Disk && owner.id != id && isAlive(activity));
    });
    if (another) return KT_ERR_ONE_MEDIA_PATROL;
    startActivity(context, Owner{OwnerKind::Disk, id}, KT_PD_BGA_MEDIA_PATROL,
                  sectorsToKib(disk.info.Size, disk.info.BlockSize), KT_NO_ID);
    arbitrate(context);
    return KT_OK;
}

static bool isControl(KT_U8 control) {
    return (control >= KT_CONTROL_RESTART && control <= KT_CONTROL_STOP) || control == KT_CONTROL_STOP_FOR_DELETE;
}

static bool setsGoing(KT_U8 control) {
    return control == KT_CONTROL_RESTART || control == KT_CONTROL_RESUME;
}

KT_U8 controlVd(const Context& context, KT_U16 id, KT_U8 control) {
    Vd vd = {};
    const KT_U8 status = findVd(context, id, vd);
    if (status != KT_OK) return status;
    if (!isControl(control)) return KT_ERR_BGA_ACTION;
    const bool arrays =
        vd.info.DGID != KT_NO_ID && activityOf(context, Owner{OwnerKind::Array, vd.info.DGID}).kind != 0;
    if (arrays) return control == KT_CONTROL_STOP_FOR_DELETE ? KT_U8{KT_OK} : KT_U8{KT_ERR_ARRAY_BUSY};
    if (setsGoing(control) && !isUsable(vd.info)) return KT_ERR_VD_NOT_READY;
    return controlActivity(context, Owner{OwnerKind::Vd, id}, control);
}

KT_U8 controlArray(const Context& context, KT_U16 id, KT_U8 control) {
    if (!isArrayBased(adapterInfo(context))) return KT_ERR_NOT_ON_THIS_ADAPTER;
    Array array = {};
    const KT_U8 status = findArray(context, id, array);
    if (status != KT_OK) return status;
    if (!isControl(control) || control == KT_CONTROL_STOP_FOR_DELETE) return KT_ERR_BGA_ACTION;
    for (int i = 0; setsGoing(control) && i < array.info.VDSlotCount; ++i) {
        const auto vd = find<_LD_Info>(context, array.info.VDIDs[i]);
        if (vd && !isUsable(*vd)) return KT_ERR_VD_NOT_READY;
    }
    return controlActivity(context, Owner{OwnerKind::Array, id}, control);
}

KT_U8 controlPatrol(const Context& context, KT_U16 id, KT_U8 control) {
    Disk disk = {};
    const KT_U8 status = findDisk(context, id, disk);
    if (status != KT_OK) return status;
    if (!isControl(control)) return KT_ERR_BGA_ACTION;
    return controlActivity(context, Owner{OwnerKind::Disk, id}, control);
}

} // namespace sim
