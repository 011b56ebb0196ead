#include "changes/spareRoles.h"

#include "activities/rebuilding.h"
#include "media/blocks.h"
#include "raid/candidates.h"
#include "raid/members.h"
#include "raid/roles.h"
#include "state/events.h"

#include <algorithm>

namespace sim {

// KT_OK when the disk is free to stand by.
static KT_U8 checkFree(const Context& context, KT_U16 pd, Disk& disk) {
    if (adapterInfo(context).AdvancedFeatures & KT_ADV_NO_SET_SPARE) return KT_ERR_NOT_ON_THIS_ADAPTER;
    const KT_U8 status = findDisk(context, pd, disk);
    if (status != KT_OK) return status;
    if (disk.state.raid & KT_PD_DEDICATED_SPARE) return KT_ERR_ALREADY_ARRAY_SPARE;
    return checkNewMember(context, pd, Sharing::Whole, disk);
}

// Whether a redundant virtual disk or array of such disks exists, and one that the disk is large enough for.
struct Use {
    bool any;
    bool fits;
};

static Use useAsGlobalSpare(const Context& context, const Disk& disk) {
    Use use = {};
    for (const Owner owner : allGroups(context)) {
        const Group group = groupOf(context, owner);
        if (!isRedundant(group.geometry.level)) continue;
        const KT_U8 status = checkFits(context, group, disk);
        use.any = use.any || status == KT_OK || status == KT_ERR_TARGET_TOO_SMALL;
        use.fits = use.fits || status == KT_OK;
    }
    return use;
}

static void beSpare(const Context& context, Disk& disk, KT_U8 role, KT_U16 dgid) {
    disk.state.raid |= role;
    disk.state.dgid = dgid;
    saveDisk(context, disk);
    logEvent(context, EVT_PD_SPARE_ASSIGNED, disk.state.config.HDID);
}

KT_U8 makeGlobalSpare(const Context& context, KT_U16 pd) {
    Disk disk = {};
    const KT_U8 status = checkFree(context, pd, disk);
    if (status != KT_OK) return status;
    const Use use = useAsGlobalSpare(context, disk);
    if (use.any && !use.fits) return KT_ERR_SPARE_TOO_SMALL;
    beSpare(context, disk, KT_PD_GLOBAL_SPARE, KT_NO_ID);
    engageSpares(context);
    return KT_OK;
}

KT_U8 makeDedicatedSpare(const Context& context, KT_U16 pd, KT_U16 dgid) {
    if (!isArrayBased(adapterInfo(context))) return KT_ERR_NOT_ON_THIS_ADAPTER;
    Array array = {};
    KT_U8 status = findArray(context, dgid, array);
    if (status != KT_OK) return status;
    Disk disk = {};
    status = checkFree(context, pd, disk);
    if (status != KT_OK) return status;
    if (!isRedundant(array.info.RaidMode)) return KT_ERR_NOT_REDUNDANT;
    if (array.info.SparePDCount >= std::size(array.info.SparePDIDs)) return KT_ERR_NO_RESOURCE;
    Disk member = {};
    if (array.info.PDCount > 0 && findDisk(context, array.info.PDIDs[0], member) == KT_OK) {
        status = checkAlike(context, member.info, disk.info);
        if (status != KT_OK) return status;
    }
    if (validKib(disk.info, disk.state) < array.info.SmallestAvailablePDSize) return KT_ERR_SPARE_TOO_SMALL;
    array.info.SparePDIDs[array.info.SparePDCount++] = pd;
    saveArray(context, array);
    beSpare(context, disk, KT_PD_DEDICATED_SPARE, dgid);
    engageSpares(context);
    return KT_OK;
}

void standInAgain(const Context& context, KT_U16 pd, KT_U8 role) {
    Disk disk = {};
    Array array = {};
    if (findDisk(context, pd, disk) != KT_OK || !(disk.state.raid & KT_PD_MEMBER)) return;
    if (role & KT_PD_DEDICATED_SPARE) {
        const bool listed = findArray(context, disk.state.dgid, array) == KT_OK &&
                            array.info.SparePDCount < std::size(array.info.SparePDIDs);
        if (!listed) return;
        array.info.SparePDIDs[array.info.SparePDCount++] = pd;
        saveArray(context, array);
    }
    disk.state.raid |= static_cast<KT_U8>(role | KT_PD_SPARE_IN_USE);
    saveDisk(context, disk);
    logEvent(context, EVT_PD_SPARE_ASSIGNED, pd);
}

KT_U8 releaseSpare(const Context& context, KT_U16 pd) {
    Disk disk = {};
    const KT_U8 status = findDisk(context, pd, disk);
    if (status != KT_OK) return status;
    if (!(disk.state.raid & KT_PD_SPARE)) return KT_ERR_NOT_SPARE;
    if (disk.state.raid & KT_PD_SPARE_IN_USE) return KT_ERR_SPARE_IN_USE;
    const Owner owner{OwnerKind::Disk, pd};
    if (disk.state.patrol.kind) {
        logActivity(context, owner, disk.state.patrol, STEP_ABORTED);
        dropActivity(context, owner);
    }
    dropSpareRole(context, pd);
    becomeFree(context, pd);
    return KT_OK;
}

} // namespace sim
