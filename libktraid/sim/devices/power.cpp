#include "devices/power.h"

#include "activities/activities.h"
#include "activities/activityProgress.h"
#include "activities/rebuilding.h"
#include "changes/foreign.h"
#include "changes/outage.h"
#include "devices/battery.h"
#include "devices/batteryDeeds.h"
#include "devices/enclosureElements.h"
#include "devices/encryption.h"
#include "devices/flashRegions.h"
#include "media/blocks.h"
#include "media/life.h"
#include "media/selfTest.h"
#include "media/surface.h"
#include "media/wear.h"
#include "raid/cacheMode.h"
#include "raid/keptCaches.h"
#include "raid/members.h"
#include "state/due.h"
#include "state/events.h"
#include "state/simClock.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <vector>

namespace sim {

static const KT_U64 LOST_SECTORS = 8; // of a virtual disk, where it was written last

struct Note {
    KT_U16 vd;
    BootVd was;
};

template <class Visit>
static void forEachAdapter(Store& store, Visit&& visit) {
    const KT_U16 adapters = find<GlobalState>(store, ADAPTER_GLOBAL, 0).value_or(GlobalState{}).adapterCount;
    const KT_U64 now = simulatedNow(store);
    for (KT_U16 i = 0; i < adapters; ++i)
        visit(Context{store, static_cast<KT_U8>(i), now});
}

static void setPower(Store& store, bool off) {
    GlobalState global = find<GlobalState>(store, ADAPTER_GLOBAL, 0).value_or(GlobalState{});
    global.powerOff = off ? 1 : 0;
    save(store, ADAPTER_GLOBAL, 0, global);
}

static std::vector<KT_U16> disksOf(const Context& context) {
    std::vector<KT_U16> pds;
    forEach<_HD_Info>(context, 0, [&](KT_U64 id, const _HD_Info&) {
        pds.push_back(static_cast<KT_U16>(id));
        return true;
    });
    return pds;
}

// The block in each place of the virtual disk, and of what it is turning into.
static std::vector<std::optional<_Block_Info>> blocksIn(const Context& context, const _LD_Info& vd) {
    std::vector<std::optional<_Block_Info>> blocks;
    const auto add = [&](const _LD_Info& info) {
        for (int i = 0; i < geometryOf(info).disks; ++i)
            blocks.push_back(find<_Block_Info>(context, info.BlockIDs[i]));
    };
    add(vd);
    if (const auto target = find<VdTarget>(context, vd.ID)) add(target->info);
    return blocks;
}

// How the virtual disk is, for comparison at the boot.
static BootVd noteOf(const Context& context, const _LD_Info& vd) {
    BootVd note = {};
    memcpy(note.guid, vd.LD_GUID, sizeof note.guid);
    note.status = vd.Status;
    for (const auto& block : blocksIn(context, vd)) {
        if (block) ++note.there;
        if (block && block->Status == BLOCK_GOOD) ++note.working;
    }
    const Activity activity = activityOf(context, groupOwner(vd));
    const bool fills = activity.kind == KT_BGA_REBUILD || activity.kind == KT_BGA_COPY_BACK;
    note.filling = fills && isAlive(activity) ? activity.kind : KT_U8{0};
    return note;
}

// The power goes.

static void noteVds(const Context& context, bool pulled) {
    const KT_U8 dirty = !pulled ? CACHE_CLEAN : batteryKeepsCache(context) ? CACHE_KEPT : CACHE_LOST;
    bool keeps = powerOffKeptCaches(context);
    forEachVd(context, [&](const Vd& vd) {
        if (isForeign(vd.info)) return;
        BootVd note = noteOf(context, vd.info);
        const bool writesBack = isUsable(vd.info) && !(vd.info.CacheMode & KT_CACHE_OFF);
        note.cache = writesBack ? dirty : KT_U8{CACHE_CLEAN};
        keeps = keeps || note.cache == CACHE_KEPT;
        save(context, vd.info.ID, note);
    });
    drainBattery(context, keeps ? DRAIN_CACHE : DRAIN_LEAK);
}

static void holdActivities(const Context& context) {
    std::vector<Owner> running;
    forEachActivity(context, [&](Owner owner, const Activity& activity) {
        if (activity.state == KT_STATE_RUNNING) running.push_back(owner);
    });
    for (const Owner owner : running) {
        Activity activity = activityOf(context, owner);
        activity.done = activityDone(activity, context.now);
        activity.since = context.now;
        activity.speed = 0;
        saveActivity(context, owner, activity);
    }
}

static void goDown(const Context& context, bool pulled) {
    AdapterState state = find<AdapterState>(context, 0).value_or(AdapterState{});
    // One that has not worked since the power last went has nothing to add.
    if (state.down == ADAPTER_UP) {
        if (!pulled) logEvent(context, EVT_MISC_SHUTDOWN, 0);
        noteVds(context, pulled);
        holdActivities(context);
        state = find<AdapterState>(context, 0).value_or(AdapterState{});
        state.lossesAtOff = state.losses;
    }
    state.down = ADAPTER_OFF;
    save(context, 0, state);
    for (const KT_U16 pd : disksOf(context))
        powerOff(context, pd);
}

void powerDown(Store& store, bool pulled) {
    if (isPoweredOff(store)) return;
    forEachAdapter(store, [&](const Context& context) { goDown(context, pulled); });
    setPower(store, true);
}

// It is back.

static void announceAdapter(const Context& context) {
    const _Adapter_Info info = adapterInfo(context);
    _Event event = newEvent(EVT_ADAPTER_DETECTED, context.adapter);
    event.SenseDataLength = info.SerialNo[0] ? sizeof info.SerialNo : 0;
    memcpy(event.SenseData, info.SerialNo, sizeof info.SerialNo);
    logEvent(context, event);
}

// Disks that do not answer.
static void tellDisks(const Context& context) {
    forEach<PdState>(context, 0, [&](KT_U64 id, const PdState& disk) {
        if (disk.health == PD_FAILED) logEvent(context, EVT_PD_TIMED_OUT, static_cast<KT_U16>(id));
        return true;
    });
}

static std::optional<_LD_Info> sameVd(const Context& context, const Note& note) {
    const auto vd = find<_LD_Info>(context, note.vd);
    return vd && memcmp(note.was.guid, vd->LD_GUID, sizeof note.was.guid) == 0 ? vd : std::nullopt;
}

// One that was offline works again.
static void tellWorking(const Context& context, const _LD_Info& vd) {
    if (vd.Status == KT_VD_DEGRADED) {
        logEvent(context, EVT_VD_DEGRADED, vd.ID);
        return;
    }
    logEvent(context, EVT_VD_ONLINE, vd.ID, vdParams(vd.RaidMode));
    if (vd.Status == KT_VD_PARTIALLY_OPTIMAL) logEvent(context, EVT_VD_LOST_REDUNDANCY, vd.ID);
}

// Whether a place in the virtual disk is nobody's, or a disk's that does not work.
static bool lacksDisk(const Context& context, const _LD_Info& vd) {
    const auto blocks = blocksIn(context, vd);
    return std::any_of(blocks.begin(), blocks.end(),
                       [](const auto& block) { return !block || block->Status == BLOCK_OFFLINE; });
}

// The rebuild or copy back that was under way has lost what it needs.
static void tellFilling(const Context& context, const std::vector<Note>& notes) {
    std::set<std::pair<OwnerKind, KT_U16>> told;
    for (const Note& note : notes) {
        const auto vd = sameVd(context, note);
        if (!vd || note.was.filling == 0) continue;
        const Owner owner = groupOwner(*vd);
        if (activityOf(context, owner).kind != 0 || !told.emplace(owner.kind, owner.id).second) continue;
        Activity failed = {};
        failed.kind = note.was.filling;
        failed.disk = KT_NO_ID;
        logActivity(context, owner, failed, STEP_FAILED);
    }
}

// Says what is wrong with a virtual disk, or was when the power went. False when there is nothing left of it.
static bool tellVd(const Context& context, const Note& note) {
    const auto vd = sameVd(context, note);
    const BootVd now = vd ? noteOf(context, *vd) : BootVd{};
    const bool lost = now.working < note.was.working || now.there < note.was.there;
    if (vd && lost) failOwnActivity(context, note.vd);
    if (now.there == 0) {
        logEvent(context, EVT_MISC_VD_MISSING_AT_BOOT, note.vd);
        return false;
    }
    const bool locked = note.was.status == KT_VD_OFFLINE &&
                        waitsForKey(context, Vd{*vd, find<VdState>(context, note.vd).value_or(VdState{})});
    if (vd->Status == KT_VD_OFFLINE && !locked) {
        logEvent(context, EVT_MISC_VD_OFFLINE_AT_BOOT, note.vd);
    } else if (isUsable(*vd) && note.was.status == KT_VD_OFFLINE) {
        tellWorking(context, *vd);
    } else if (lost || (isUsable(*vd) && lacksDisk(context, *vd))) {
        logEvent(context, EVT_MISC_DISK_MISSING_AT_BOOT, note.vd);
    }
    return true;
}

static void tellVds(const Context& context, const std::vector<Note>& notes) {
    const auto gone =
        std::count_if(notes.begin(), notes.end(), [&](const Note& note) { return !tellVd(context, note); });
    if (gone != 0 && static_cast<size_t>(gone) == notes.size()) logEvent(context, EVT_MISC_NOTHING_AT_BOOT, 0);
}

// What was written last is on some of the members, and not on others.
static void loseCache(const Context& context, const _LD_Info& vd) {
    if (!isRedundant(vd.RaidMode)) return;
    for (int i = 0; i < geometryOf(vd).disks; ++i) {
        const auto block = find<_Block_Info>(context, vd.BlockIDs[i]);
        if (!block || block->Status != BLOCK_GOOD || block->Size < LOST_SECTORS) continue;
        const KT_U64 at = block->StartLBA + context.now / 1000 * LOST_SECTORS % (block->Size - LOST_SECTORS + 1);
        for (KT_U64 lba = at; lba < at + LOST_SECTORS; ++lba)
            addBadSector(context, block->HDID, lba, BadSector{FLAW_WRONG, 0, {}});
        break;
    }
    logEvent(context, EVT_VD_NOT_SYNCHRONIZED, vd.ID, vdParams(vd.RaidMode));
}

static std::optional<_LD_Info> vdOf(const Context& context, const KeptCache& kept) {
    std::optional<_LD_Info> found;
    forEach<_LD_Info>(context, 0, [&](KT_U64, const _LD_Info& vd) {
        if (memcmp(vd.LD_GUID, kept.guid, sizeof kept.guid) == 0) found = vd;
        return !found;
    });
    return found;
}

// What the caches of these and of virtual disks that were offline before held and a battery did not keep.
static void tellLostCaches(const Context& context, const std::vector<Note>& notes) {
    std::vector<_LD_Info> lost;
    bool any = false;
    for (const Note& note : notes) {
        const auto vd = sameVd(context, note);
        any = any || note.was.cache == CACHE_LOST;
        if (note.was.cache == CACHE_LOST && vd) lost.push_back(*vd);
    }
    for (const KeptCache& kept : takeLostCaches(context)) {
        any = true;
        if (const auto vd = vdOf(context, kept)) lost.push_back(*vd);
    }
    if (any) logEvent(context, EVT_ADAPTER_PAGE_ECC_ERROR, context.adapter);
    for (const _LD_Info& vd : lost)
        loseCache(context, vd);
}

// What a battery kept. A virtual disk that is offline takes nothing from the cache, which goes on keeping it.
static void writeCaches(const Context& context, const std::vector<Note>& notes) {
    for (const Note& note : notes)
        if (note.was.cache == CACHE_KEPT) keepCache(context, note.was.guid);
    writeKeptCaches(context, [&](const KeptCache& kept) {
        const auto vd = vdOf(context, kept);
        return vd && isUsable(*vd);
    });
}

static std::vector<Note> takeNotes(const Context& context) {
    std::vector<Note> notes;
    forEach<BootVd>(context, 0, [&](KT_U64 id, const BootVd& was) {
        notes.push_back(Note{static_cast<KT_U16>(id), was});
        return true;
    });
    eraseRows(context.store, context.adapter, KIND_VD_BOOT);
    return notes;
}

static void setDown(const Context& context, KT_U8 down) {
    AdapterState state = find<AdapterState>(context, 0).value_or(AdapterState{});
    state.down = down;
    state.muted = 0;
    // Nothing has become due that could have happened.
    if (down == ADAPTER_UP) state.dueRaid = state.duePeripherals = context.now;
    save(context, 0, state);
}

static void boot(const Context& context) {
    setDown(context, ADAPTER_DEAD); // until its firmware runs
    erase<Mailbox>(context, 0);
    if (!bootImages(context)) return;
    if (isBatteryEmpty(context)) loseKeptCaches(context);
    setDown(context, ADAPTER_UP);
    drainBattery(context, DRAIN_NONE);
    announceAdapter(context);
    tellBattery(context);
    for (const KT_U16 pd : disksOf(context)) {
        startDrive(context, pd);
        powerOn(context, pd);
    }
    const std::vector<Note> notes = takeNotes(context);
    tellDisks(context);
    pollSmart(context);
    tellElements(context);
    tellFilling(context, notes);
    tellVds(context, notes);
    tellLostCaches(context, notes);
    lockPorts(context);
    writeCaches(context, notes);
    reviewForeign(context);
    engageSpares(context);
    resumeInterrupted(context, allGroups(context));
    applyRates(context);
}

void powerUp(Store& store) {
    if (!isPoweredOff(store)) return;
    setPower(store, false);
    forEachAdapter(store, boot);
}

} // namespace sim
