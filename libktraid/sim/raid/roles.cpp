#include "raid/roles.h"

#include "media/blocks.h"
#include "media/disks.h"
#include "raid/activityRecords.h"
#include "state/events.h"

#include <algorithm>

namespace sim {

static bool isArrayMember(const Context& context, KT_U16 dgid, KT_U16 pd) {
    const DgState array = find<DgState>(context, dgid).value_or(DgState{});
    const KT_U16* end = array.members + array.memberCount;
    return std::find(array.members, end, pd) != end;
}

static bool isArraySpare(const Context& context, KT_U16 dgid, KT_U16 pd) {
    const auto array = find<_DG_Info>(context, dgid);
    return array && std::count(std::begin(array->SparePDIDs), std::end(array->SparePDIDs), pd) != 0;
}

void becomeFree(const Context& context, KT_U16 pd) {
    erase<ArrayLabel>(context, pd);
    logEvent(context, EVT_PD_SET_FREE, pd);
}

void releaseDisk(const Context& context, KT_U16 pd) {
    Disk disk = {};
    if (pd == KT_NO_ID || findDisk(context, pd, disk) != KT_OK) return;
    const KT_U8 before = disk.state.raid;
    const bool member = isArrayMember(context, disk.state.dgid, pd);
    if (!member && blocksOf(context, pd).BlkCount == 0)
        disk.state.raid &= static_cast<KT_U8>(~(KT_PD_MEMBER | KT_PD_SPARE_IN_USE | KT_PD_FOREIGN));
    if ((disk.state.raid & KT_PD_DEDICATED_SPARE) && !isArraySpare(context, disk.state.dgid, pd)) {
        disk.state.raid &= static_cast<KT_U8>(~KT_PD_DEDICATED_SPARE);
        logEvent(context, EVT_PD_SPARE_UNSET, pd);
    }
    if (!member && !(disk.state.raid & KT_PD_DEDICATED_SPARE)) disk.state.dgid = KT_NO_ID;
    saveDisk(context, disk);
    const Owner owner{OwnerKind::Disk, pd};
    if (disk.state.patrol.kind && !(disk.state.raid & (KT_PD_MEMBER | KT_PD_SPARE))) {
        logActivity(context, owner, disk.state.patrol, STEP_ABORTED);
        dropActivity(context, owner);
    }
    const bool standsBy = (before & KT_PD_SPARE_IN_USE) && !(disk.state.raid & KT_PD_SPARE_IN_USE);
    if (standsBy && (disk.state.raid & KT_PD_SPARE)) logEvent(context, EVT_PD_SPARE_USED, pd);
    const bool isFree = (disk.state.raid & KT_PD_NOT_FREE) == 0;
    if (isFree && (before & KT_PD_NOT_FREE) != 0) becomeFree(context, pd);
}

static void leaveSpareList(const Context& context, KT_U16 dgid, KT_U16 pd) {
    Array array = {};
    if (dgid == KT_NO_ID || findArray(context, dgid, array) != KT_OK) return;
    KT_U16* begin = std::begin(array.info.SparePDIDs);
    KT_U16* end = std::remove(begin, std::end(array.info.SparePDIDs), pd);
    std::fill(end, std::end(array.info.SparePDIDs), KT_U16{KT_NO_ID});
    end = std::find(begin, std::end(array.info.SparePDIDs), KT_U16{KT_NO_ID});
    array.info.SparePDCount = static_cast<KT_U8>(end - begin);
    saveArray(context, array);
}

void dropSpareRole(const Context& context, KT_U16 pd) {
    Disk disk = {};
    if (findDisk(context, pd, disk) != KT_OK || !(disk.state.raid & KT_PD_SPARE)) return;
    leaveSpareList(context, disk.state.dgid, pd);
    disk.state.raid &= static_cast<KT_U8>(~(KT_PD_SPARE | KT_PD_SPARE_IN_USE));
    if (!(disk.state.raid & KT_PD_MEMBER)) disk.state.dgid = KT_NO_ID;
    saveDisk(context, disk);
    logEvent(context, EVT_PD_SPARE_UNSET, pd);
}

} // namespace sim
