#include "devices/power.h"

#include "activities/activities.h"
#include "activities/activityProgress.h"
#include "activities/rebuilding.h"
#include "changes/foreign.h"
#include "changes/outage.h"
#include "devices/battery.h"
#include "devices/encryption.h"
#include "devices/flashRegions.h"
#include "media/blocks.h"
#include "media/life.h"
#include "media/selfTest.h"
#include "media/surface.h"
#include "raid/cacheMode.h"
#include "state/due.h"
#include "state/events.h"
#include "state/simClock.h"

#include <algorithm>
#include <cstring>
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

// How the virtual disk is, for comparison at the boot.
static BootVd noteOf(const Context& context, const _LD_Info& vd) {
    BootVd note = {};
    memcpy(note.guid, vd.LD_GUID, sizeof note.guid);
    note.status = vd.Status;
    for (int i = 0; i < geometryOf(vd).disks; ++i) {
        const auto block = find<_Block_Info>(context, vd.BlockIDs[i]);
        if (block) ++note.there;
        if (block && block->Status == BLOCK_GOOD) ++note.working;
    }
    return note;
}

// The power goes.

static void noteVds(const Context& context, bool pulled) {
    const KT_U8 dirty = !pulled ? CACHE_CLEAN : batteryKeepsCache(context) ? CACHE_KEPT : CACHE_LOST;
    bool keeps = false;
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

// Disks that have stopped answering meanwhile.
static void tellDisks(const Context& context, KT_U64 lossesAtOff) {
    forEach<PdState>(context, 0, [&](KT_U64 id, const PdState& disk) {
        if (disk.health == PD_FAILED && disk.left > lossesAtOff)
            logEvent(context, EVT_PD_TIMED_OUT, static_cast<KT_U16>(id));
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

// Says what became of a virtual disk since the power went. False when there was something of it, and is no more.
static bool tellVd(const Context& context, const Note& note) {
    const auto vd = sameVd(context, note);
    const BootVd now = vd ? noteOf(context, *vd) : BootVd{};
    const bool lost = now.working < note.was.working || now.there < note.was.there;
    if (vd && lost) failOwnActivity(context, note.vd);
    if (now.there == 0 && note.was.there != 0) {
        logEvent(context, EVT_MISC_VD_MISSING_AT_BOOT, note.vd);
        return false;
    }
    if (!vd) return true;
    if (vd->Status == KT_VD_OFFLINE && note.was.status != KT_VD_OFFLINE) {
        logEvent(context, EVT_MISC_VD_OFFLINE_AT_BOOT, note.vd);
    } else if (lost) {
        logEvent(context, EVT_MISC_DISK_MISSING_AT_BOOT, note.vd);
    } else if (isUsable(*vd) && note.was.status == KT_VD_OFFLINE) {
        tellWorking(context, *vd);
    }
    return true;
}

static void tellVds(const Context& context, const std::vector<Note>& notes) {
    size_t had = 0;
    size_t gone = 0;
    for (const Note& note : notes) {
        had += note.was.there != 0 ? 1 : 0;
        gone += tellVd(context, note) ? 0 : 1;
    }
    if (gone != 0 && gone == had) logEvent(context, EVT_MISC_NOTHING_AT_BOOT, 0);
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

// A virtual disk that is offline takes nothing from the cache.
static bool isWritten(const Context& context, const Note& note, bool empty) {
    const auto vd = sameVd(context, note);
    return note.was.cache == CACHE_KEPT && !empty && vd && isUsable(*vd);
}

static void settleCaches(const Context& context, const std::vector<Note>& notes, bool empty) {
    std::vector<_LD_Info> lost;
    bool any = false;
    KT_U32 written = 0;
    for (const Note& note : notes) {
        if (note.was.cache == CACHE_CLEAN) continue;
        const bool kept = isWritten(context, note, empty);
        written += kept ? 1 : 0;
        any = any || !kept;
        if (const auto vd = kept ? std::nullopt : sameVd(context, note)) lost.push_back(*vd);
    }
    if (written != 0) {
        logEvent(context, EVT_ADAPTER_FLUSH_STARTED, context.adapter);
        logEvent(context, EVT_ADAPTER_FLUSH_PROGRESS, context.adapter, {written, written});
        logEvent(context, EVT_ADAPTER_FLUSH_FINISHED, context.adapter);
    }
    if (any) logEvent(context, EVT_ADAPTER_PAGE_ECC_ERROR, context.adapter);
    for (const _LD_Info& vd : lost)
        loseCache(context, vd);
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

static AdapterState setDown(const Context& context, KT_U8 down) {
    const AdapterState before = find<AdapterState>(context, 0).value_or(AdapterState{});
    AdapterState state = before;
    state.down = down;
    state.muted = 0;
    // Nothing has become due that could have happened.
    if (down == ADAPTER_UP) state.dueRaid = state.duePeripherals = context.now;
    save(context, 0, state);
    return before;
}

static void boot(const Context& context) {
    setDown(context, ADAPTER_DEAD); // until its firmware runs
    erase<Mailbox>(context, 0);
    if (!bootImages(context)) return;
    const bool empty = isBatteryEmpty(context);
    const AdapterState before = setDown(context, ADAPTER_UP);
    drainBattery(context, DRAIN_NONE);
    announceAdapter(context);
    for (const KT_U16 pd : disksOf(context)) {
        startDrive(context, pd);
        powerOn(context, pd);
    }
    const std::vector<Note> notes = takeNotes(context);
    tellDisks(context, before.lossesAtOff);
    tellVds(context, notes);
    settleCaches(context, notes, empty);
    lockPorts(context);
    reviewForeign(context);
    engageSpares(context);
    applyRates(context);
}

void powerUp(Store& store) {
    if (!isPoweredOff(store)) return;
    setPower(store, false);
    forEachAdapter(store, boot);
}

} // namespace sim
