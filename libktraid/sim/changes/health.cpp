#include "changes/health.h"

#include "activities/activities.h"
#include "activities/rebuilding.h"
#include "changes/ciphers.h"
#include "changes/deletion.h"
#include "changes/diskIds.h"
#include "changes/foreign.h"
#include "changes/outage.h"
#include "changes/places.h"
#include "changes/spareRoles.h"
#include "media/diskMakes.h"
#include "media/life.h"
#include "media/selfTest.h"
#include "raid/members.h"
#include "raid/roles.h"
#include "state/events.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace sim {

KT_U8 failDisk(const Context& context, KT_U16 pd) {
    Disk disk = {};
    if (findDisk(context, pd, disk) != KT_OK || disk.state.health == PD_FAILED) return KT_ERR_PD_MISSING;
    disk.state.health = PD_FAILED;
    saveDisk(context, disk);
    logEvent(context, EVT_PD_READ_WRITE_ERROR, pd);
    if (disk.state.raid & KT_PD_OFFLINE) return KT_OK;
    logEvent(context, EVT_PD_SET_DOWN, pd);
    loseDisk(context, pd);
    return KT_OK;
}

static bool areThere(const Context& context, const std::vector<KT_U16>& pds) {
    return std::all_of(pds.begin(), pds.end(), [&](KT_U16 pd) { return find<_HD_Info>(context, pd).has_value(); });
}

static void takeOut(const Context& context, KT_U16 pd, const PulledBlocks& blocks, KT_U64 loss) {
    Disk disk = {};
    logEvent(context, EVT_PD_PLUGGED_OUT, pd);
    failPatrol(context, pd);
    dropSpareRole(context, pd);
    findDisk(context, pd, disk);
    powerOff(context, pd);
    const KT_U8 shared = isPlaceTaken(context, disk.info) ? 1 : 0;
    save(context, pd, PulledDisk{disk.info, disk.state, loss, shared, {}});
    save(context, pd, blocks);
}

KT_U8 pullDisks(const Context& context, const std::vector<KT_U16>& pds) {
    if (!areThere(context, pds)) return KT_ERR_PD_MISSING;
    std::vector<PulledBlocks> blocks;
    for (const KT_U16 pd : pds)
        blocks.push_back(rememberBlocks(context, pd));
    const KT_U64 loss = beginLoss(context);
    for (size_t i = 0; i < pds.size(); ++i)
        takeOut(context, pds[i], blocks[i], loss);
    const std::vector<Owner> owners = groupsOn(context, pds);
    for (const KT_U16 pd : pds) {
        erase<_HD_Info>(context, pd);
        erase<PdState>(context, pd);
    }
    for (const Owner owner : owners) {
        for (const KT_U16 pd : pds)
            removeMember(context, groupOf(context, owner), pd);
    }
    followUp(context, owners, pds);
    return KT_OK;
}

// Back where it was, or, where another disk is now, in another place.
static KT_U8 putBack(const Context& context, PulledDisk& disk) {
    const bool elsewhere = !disk.shared && isPlaceTaken(context, disk.info);
    return elsewhere ? putAnywhere(context, disk.info) : KT_U8{KT_OK};
}

static KT_U8 putIn(const Context& context, KT_U16 pd, std::vector<Returning>& returning) {
    auto pulled = find<PulledDisk>(context, pd);
    if (!pulled || find<_HD_Info>(context, pd)) return KT_ERR_PD_MISSING;
    const KT_U8 status = putBack(context, *pulled);
    if (status != KT_OK) return status;
    const PulledBlocks blocks = find<PulledBlocks>(context, pd).value_or(PulledBlocks{});
    erase<PulledDisk>(context, pd);
    erase<PulledBlocks>(context, pd);
    save(context, pd, pulled->info);
    startDrive(context, pd);
    powerOn(context, pd);
    PdState state = pulled->state;
    state.raid = state.health == PD_FAILED ? KT_PD_OFFLINE : 0;
    state.config.Online = state.health == PD_FAILED ? 0 : 1;
    state.dgid = KT_NO_ID;
    state.toldTooSmall = 0;
    save(context, pd, state);
    logEvent(context, EVT_PD_PLUGGED_IN, pd);
    if (state.health != PD_FAILED) returning.push_back(Returning{pd, blocks});
    return KT_OK;
}

// A disk that was a spare when it was pulled becomes one again, one in use only where it is a member again.
static void takeUpRole(const Context& context, const Returning& disk) {
    if (disk.blocks.raid & KT_PD_SPARE_IN_USE) standInAgain(context, disk.pd, disk.blocks.raid & KT_PD_SPARE);
    if (disk.blocks.raid & KT_PD_MEMBER) return;
    if (disk.blocks.raid & KT_PD_GLOBAL_SPARE) makeGlobalSpare(context, disk.pd);
    if (disk.blocks.raid & KT_PD_DEDICATED_SPARE) makeDedicatedSpare(context, disk.pd, disk.blocks.dgid);
}

KT_U8 insertDisks(const Context& context, const std::vector<KT_U16>& known) {
    std::vector<Returning> returning;
    for (const KT_U16 id : known) {
        const KT_U8 status = putIn(context, idOnReturn(context, id), returning);
        if (status != KT_OK) return status;
    }
    rejoin(context, returning);
    std::vector<KT_U16> pds;
    for (const Returning& disk : returning)
        pds.push_back(disk.pd);
    reviewCiphers(context, pds);
    for (const Returning& disk : returning)
        takeUpRole(context, disk);
    engageSpares(context);
    arbitrate(context);
    return KT_OK;
}

// The next serial number of the same make.
static void renumber(const Context& context, _HD_Info& disk) {
    const KT_U64 sequence = lastRow(context.store, context.adapter, KIND_EVENT).value_or(0) + 1;
    size_t length = strnlen(reinterpret_cast<const char*>(disk.SerialNo), sizeof disk.SerialNo);
    char tail[9];
    const int digits = snprintf(tail, sizeof tail, "%06X", static_cast<unsigned>(sequence & 0xFFFFFF));
    if (length < static_cast<size_t>(digits)) length = static_cast<size_t>(digits);
    memcpy(disk.SerialNo + length - digits, tail, static_cast<size_t>(digits));
    disk.WWN[5] = disk.Link.Self.SAS_Address[5] = static_cast<KT_U8>(sequence >> 8 & 0xFF);
}

KT_U8 replaceDisk(const Context& context, KT_U16 known, const std::function<void(_HD_Info&)>& change) {
    const KT_U16 pd = idOnReturn(context, known);
    if (find<_HD_Info>(context, pd)) {
        const KT_U8 status = pullDisks(context, {pd});
        if (status != KT_OK) return status;
    }
    auto pulled = find<PulledDisk>(context, pd);
    if (!pulled) return KT_ERR_PD_MISSING;
    const KT_U8 place = putBack(context, *pulled);
    if (place != KT_OK) return place;
    erase<PulledDisk>(context, pd);
    erase<PulledBlocks>(context, pd);
    _HD_Info info = pulled->info;
    renumber(context, info);
    if (change) change(info);
    if ((info.HDType & KT_HD_SAS) && !(adapterInfo(context).PortSupportType & KT_HD_SAS)) return KT_ERR_NOT_SUPPORTED;
    const DiskMake& make = diskMakeOfType(info.HDType);
    PdState state = {};
    state.config = pulled->state.config;
    state.config.crypto = state.config.AESPercentage = 0; // what the old one held was encrypted, this one is plain
    state.config.Online = 1;
    state.config.WriteCacheOn = info.FeatureSupport & KT_HD_WRITE_CACHE ? 1 : 0;
    state.config.SMARTOn = info.FeatureSupport & KT_HD_SMART ? 1 : 0;
    state.dgid = KT_NO_ID;
    state.reservedKib = pulled->state.reservedKib;
    if (info.HDType != pulled->info.HDType) {
        state.reservedKib = reservedKibOf(make);
        state.config.DriveSpeed = make.speed;
    }
    state.patrol.disk = KT_NO_ID;
    save(context, pd, info);
    save(context, pd, state);
    forgetDisk(context, pd);
    beginLife(context, pd);
    logEvent(context, EVT_PD_PLUGGED_IN, pd);
    reviewCiphers(context, {pd});
    engageSpares(context);
    arbitrate(context);
    return KT_OK;
}

static std::vector<KT_U16> offlineVds(const Context& context) {
    std::vector<KT_U16> offline;
    forEach<_LD_Info>(context, 0, [&](KT_U64 id, const _LD_Info& vd) {
        if (vd.Status == KT_VD_OFFLINE) offline.push_back(static_cast<KT_U16>(id));
        return true;
    });
    return offline;
}

KT_U8 setDiskDown(const Context& context, KT_U16 pd) {
    Disk disk = {};
    const KT_U8 status = findDisk(context, pd, disk);
    if (status != KT_OK) return status;
    const bool working = (disk.state.raid & KT_PD_MEMBER) && !(disk.state.raid & (KT_PD_OFFLINE | KT_PD_FOREIGN));
    if (!working || disk.state.hasOs) return KT_ERR_PD_CANNOT_SET_DOWN;
    Array array = {};
    const bool inArray = findArray(context, disk.state.dgid, array) == KT_OK;
    const KT_U8 before = array.info.Status;
    const std::vector<KT_U16> offline = offlineVds(context);
    logEvent(context, EVT_PD_SET_DOWN, pd, SEV_MAJOR);
    loseDisk(context, pd);
    // Whether virtual disks survive shows only afterwards; when the call fails its frame undoes all of this.
    if (inArray && findArray(context, array.info.DGID, array) == KT_OK && before != ARRAY_OFFLINE &&
        array.info.Status == ARRAY_OFFLINE)
        return KT_ERR_PD_CANNOT_SET_DOWN;
    return offlineVds(context) == offline ? KT_U8{KT_OK} : KT_U8{KT_ERR_PD_CANNOT_SET_DOWN};
}

KT_U8 setDiskStatus(const Context& context, KT_U16 pd, KT_U8 status) {
    if (status > 1) return KT_ERR_INVALID_PARAMETER;
    if (status == 0) return setDiskDown(context, pd);
    const KT_U8 result = bringDiskUp(context, pd, false);
    if (result != KT_OK) return result;
    reviewCiphers(context, {pd});
    Disk disk = {};
    const bool suits = findDisk(context, pd, disk) == KT_OK && !(disk.state.raid & KT_PD_OFFLINE);
    return suits ? KT_U8{KT_OK} : KT_U8{KT_ERR_KEY_MISMATCH};
}

// Takes the parts of foreign virtual disks off the disk; those that it held the last part of are gone.
static void wipeForeign(const Context& context, KT_U16 pd) {
    std::vector<Vd> foreign;
    forEachVd(context, [&](const Vd& vd) {
        const Group group = groupOf(context, Owner{OwnerKind::Vd, vd.info.ID});
        if (isForeign(vd.info) && !blocksFor(context, group, pd).empty()) foreign.push_back(vd);
    });
    for (const Vd& vd : foreign) {
        const Group group = groupOf(context, Owner{OwnerKind::Vd, vd.info.ID});
        const bool last = std::all_of(group.members.begin(), group.members.end(),
                                      [&](KT_U16 member) { return member == pd || member == KT_NO_ID; });
        last ? removeVd(context, vd) : removeMember(context, group, pd);
    }
}

KT_U8 wipeDisk(const Context& context, KT_U16 pd, bool force) {
    Disk disk = {};
    KT_U8 status = findDisk(context, pd, disk);
    if (status != KT_OK) return status;
    if (disk.state.health == PD_FAILED) return KT_ERR_LINK_TIMEOUT;
    if (runsSystem(disk.state)) return KT_ERR_PD_HAS_OS;
    const bool foreign = (disk.state.raid & KT_PD_FOREIGN) != 0;
    // Without force: foreign data on it, and data that an offline virtual disk still waits for, would be lost.
    if ((disk.state.raid & (KT_PD_MEMBER | KT_PD_FOREIGN)) && !force) return KT_ERR_PD_ASSIGNED;
    if ((disk.state.raid & KT_PD_SPARE) && !force) return KT_ERR_IS_SPARE;
    for (const Owner owner : groupsOn(context, {pd})) {
        const Group group = groupOf(context, owner);
        // A hybrid virtual disk has its only complete copy on the hard disk.
        const bool hybrid = isHybridLevel(group.geometry.level) && !isSolidState(disk.info);
        if (hybrid && !foreign) return KT_ERR_TANDEM_HDD_DATA;
        for (const KT_U16 id : group.vds) {
            Vd vd = {};
            if (findVd(context, id, vd) == KT_OK && runsSystem(vd)) return KT_ERR_VD_HAS_OS;
        }
    }
    wipeForeign(context, pd);
    erase<PulledBlocks>(context, pd);
    erase<ArrayLabel>(context, pd);
    dropSpareRole(context, pd);
    failPatrol(context, pd);
    const std::vector<Owner> owners = detach(context, pd);
    findDisk(context, pd, disk);
    disk.state.raid &= KT_PD_OFFLINE;
    disk.state.dgid = KT_NO_ID;
    // The adapter takes no disk with a partition table by itself, and would rebuild onto one that is back in its place.
    disk.state.hasMbr = 0;
    saveDisk(context, disk);
    for (const Owner owner : allGroups(context))
        forgetHome(context, owner, pd);
    followUp(context, owners, {pd});
    return KT_OK;
}

} // namespace sim
