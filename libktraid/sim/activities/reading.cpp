#include "activities/reading.h"

#include "activities/activityProgress.h"
#include "activities/passes.h"
#include "media/blocks.h"
#include "media/surface.h"
#include "media/wear.h"
#include "raid/members.h"
#include "state/events.h"

#include <algorithm>
#include <set>
#include <vector>

namespace sim {

enum : KT_U8 { SENSE_MEDIUM_ERROR = 3, ASC_READ_ERROR = 0x11 };
enum ScsiCommand : KT_U8 { SCSI_READ_10 = 0x28, SCSI_VERIFY_10 = 0x2F, SCSI_READ_16 = 0x88, SCSI_VERIFY_16 = 0x8F };
// The last value of the events about bad sectors.
enum : KT_U32 { FLAG_MEDIUM = 0, FLAG_LOST = 1 };

static KT_U64 nextOn(const Context& context, const Pass& pass, const Activity& activity) {
    KT_U64 next = NEVER;
    forEachBadSector(context, pass.pd, lbaAt(pass, activity.done), pass.start + pass.sectors,
                     [&](KT_U64 lba, const BadSector& sector) {
                         // A drive that is only asked to verify cannot tell wrong data.
                         if (sector.flaw == FLAW_WRONG && pass.vd == KT_NO_ID) return true;
                         next = workAt(pass, lba, activity.work);
                         return false;
                     });
    return next;
}

static KT_U64 nextOf(const Context& context, const Run& run) {
    KT_U64 next = NEVER;
    for (const Pass& pass : run.passes)
        next = std::min(next, nextOn(context, pass, run.activity));
    return next;
}

// A cheap first test: false when no disk of the adapter has a bad sector.
static bool mayMeet(const Context& context, const Activity& activity) {
    return activity.state == KT_STATE_RUNNING && activity.done < activity.work && anyBadSector(context);
}

KT_U64 nextMeeting(const Context& context, Owner owner, const Activity& activity) {
    return mayMeet(context, activity) ? nextOf(context, runOf(context, owner, activity)) : NEVER;
}

// Neighbouring bad sectors with the same fate, which are logged as one.
struct Stretch {
    KT_U64 first;
    KT_U32 count;
    KT_U32 known;
    KT_U8 flaw;
    bool lost; // nothing says any more what it held
    bool repaired;
};

// Whether what the sector of a member holds can be made from the others.
static bool canRegenerate(const Context& context, KT_U16 vdId, const _Block_Info& block, KT_U64 lba) {
    Vd vd = {};
    if (findVd(context, vdId, vd) != KT_OK || !isUsable(vd.info)) return false;
    const KT_U64 offset = lba - block.StartLBA;
    const auto isLost = [&](const _Block_Info& other) {
        const auto bad = badSectorAt(context, other.HDID, other.StartLBA + offset);
        return other.ID == block.ID || (offset < other.Size && bad && bad->flaw != FLAW_WRONG);
    };
    return statusWithout(context, vd, isLost) != KT_VD_OFFLINE;
}

static void logSense(const Context& context, const Pass& pass, KT_U64 lba) {
    if (!(adapterInfo(context).AdvancedFeatures & KT_ADV_SENSE_CODE)) return;
    const bool far = lba >> 32 != 0;
    _Event event = newEvent(EVT_PD_COMMAND_FAILED, pass.pd);
    event.Params[0] =
        pass.vd == KT_NO_ID ? (far ? SCSI_VERIFY_16 : SCSI_VERIFY_10) : (far ? SCSI_READ_16 : SCSI_READ_10);
    event.Params[1] = SENSE_MEDIUM_ERROR;
    event.Params[2] = ASC_READ_ERROR;
    // Fixed format: its information field holds 32 bits, so that larger LBAs are left out (bit 7 of byte 0: valid).
    const KT_U8 sense[18] = {static_cast<KT_U8>(far ? 0x70 : 0xF0),
                             0,
                             SENSE_MEDIUM_ERROR,
                             static_cast<KT_U8>(far ? 0 : lba >> 24 & 0xFF),
                             static_cast<KT_U8>(far ? 0 : lba >> 16 & 0xFF),
                             static_cast<KT_U8>(far ? 0 : lba >> 8 & 0xFF),
                             static_cast<KT_U8>(far ? 0 : lba & 0xFF),
                             10,
                             0,
                             0,
                             0,
                             0,
                             ASC_READ_ERROR};
    event.SenseDataLength = sizeof sense;
    std::copy(std::begin(sense), std::end(sense), event.SenseData);
    logEvent(context, event);
}

static void logStretch(const Context& context, EventName event, EventSeverity severity, KT_U16 pd,
                       const Stretch& stretch) {
    logEvent(context, event, pd, severity,
             {static_cast<KT_U32>(stretch.first >> 32), static_cast<KT_U32>(stretch.first & 0xFFFFFFFF), stretch.count,
              stretch.flaw == FLAW_LOST ? FLAG_LOST : FLAG_MEDIUM});
}

// Lost data, and the pass that would have read it.
struct Loss {
    const Pass* from;
    Stretch stretch;
};

// Whether what the other pass writes needs the data: the slots that a rebuild fills from it, or the whole row of
// stripes when a migration lays it out anew.
static bool suffers(const Context& context, const Run& run, const Pass& from, const Pass& other) {
    const auto vd = find<_LD_Info>(context, from.vd);
    if (!vd || other.vd != from.vd || other.pd == from.pd) return false;
    if (run.activity.kind == KT_BGA_MIGRATION) return true;
    return other.writes && (run.activity.kind == KT_BGA_COPY_BACK || inSameSet(geometryOf(*vd), other.slot, from.slot));
}

// What cannot be written for want of the data is marked, so that nobody takes it for good.
static void markLost(const Context& context, const Run& run, const Loss& loss) {
    for (const Pass& pass : run.passes) {
        if (!suffers(context, run, *loss.from, pass)) continue;
        Stretch lost = {pass.start + (loss.stretch.first - loss.from->start), 0, 0, FLAW_LOST, true, false};
        for (KT_U32 i = 0; i < loss.stretch.count && lost.first + i < pass.start + pass.sectors; ++i)
            if (addBadSector(context, pass.pd, lost.first + i, BadSector{FLAW_LOST, 0, {}})) lost.count++;
        if (lost.count) logStretch(context, EVT_PD_BAD_SECTOR, SEV_MAJOR, pass.pd, lost);
    }
}

static void forgetStretch(const Context& context, KT_U16 pd, const Stretch& stretch) {
    for (KT_U32 i = 0; i < stretch.count; ++i)
        eraseBadSector(context, pd, stretch.first + i);
}

static void finishStretch(const Context& context, const Pass& pass, const Stretch& stretch) {
    logStretch(context, EVT_PD_BAD_SECTOR, stretch.lost ? SEV_MAJOR : SEV_WARNING, pass.pd, stretch);
    if (stretch.flaw == FLAW_UNREADABLE) countUnreadable(context, pass.pd, stretch.count - stretch.known);
    if (!stretch.repaired) return;
    forgetStretch(context, pass.pd, stretch);
    logStretch(context, EVT_PD_SECTOR_FIXED, SEV_INFO, pass.pd, stretch);
    if (stretch.flaw == FLAW_UNREADABLE) countReassigned(context, pass.pd, stretch.count, stretch.count);
}

// A bad sector that an activity has come to, and where it is.
struct Met {
    KT_U64 lba;
    BadSector sector;
};

// The bad sectors of the pass in the pieces done since, of those flaws that are read as errors (or as data).
static std::vector<Met> foundOn(const Context& context, const Pass& pass, const Activity& activity, bool errors) {
    const KT_U64 done = activityDone(activity, context.now);
    const KT_U64 end = done >= activity.work ? pass.start + pass.sectors : lbaAt(pass, done);
    std::vector<Met> found;
    forEachBadSector(context, pass.pd, lbaAt(pass, activity.done), end, [&](KT_U64 lba, const BadSector& sector) {
        if ((sector.flaw != FLAW_WRONG) == errors) found.push_back({lba, sector});
        return true;
    });
    return found;
}

// Decides what becomes of one bad sector; `spare` counts down the sectors that the drive can still reassign.
static Stretch judge(const Context& context, const Run& run, KT_U16 pd, const Met& met, KT_U32& spare) {
    const auto& [lba, sector] = met;
    const auto block = blockAt(context, pd, lba);
    const bool used = block && block->LDID != KT_BLOCK_FREE;
    const bool whole = used && canRegenerate(context, block->LDID, *block, lba);
    const bool looksOnly = run.owner.kind != OwnerKind::Disk && run.activity.kind == KT_BGA_CHECK;
    const bool repaired = whole && !looksOnly && (sector.flaw == FLAW_LOST || spare != 0);
    if (repaired && sector.flaw == FLAW_UNREADABLE) spare--;
    return Stretch{lba, 1, sector.known, sector.flaw, used && !whole, repaired};
}

static bool goesOnWith(const Stretch& stretch, const Stretch& next) {
    return stretch.first + stretch.count == next.first && stretch.flaw == next.flaw && stretch.lost == next.lost &&
           stretch.repaired == next.repaired;
}

static void readErrors(const Context& context, const Run& run, const Pass& pass, std::vector<Loss>& losses) {
    std::vector<Stretch> stretches;
    KT_U32 spare = sectorsToSpare(context, pass.pd);
    bool sensed = false;
    for (const Met& met : foundOn(context, pass, run.activity, true)) {
        const auto& [lba, sector] = met;
        if (sector.flaw == FLAW_UNREADABLE && !sensed) logSense(context, pass, lba);
        sensed = sensed || sector.flaw == FLAW_UNREADABLE;
        const Stretch next = judge(context, run, pass.pd, met, spare);
        if (stretches.empty() || !goesOnWith(stretches.back(), next)) {
            stretches.push_back(next);
        } else {
            stretches.back().count++;
            stretches.back().known += next.known;
        }
        if (sector.flaw == FLAW_UNREADABLE) knowBadSector(context, pass.pd, lba);
    }
    for (const Stretch& stretch : stretches) {
        finishStretch(context, pass, stretch);
        if (stretch.lost) losses.push_back(Loss{&pass, stretch});
    }
}

// The LBA of the virtual disk that the sector of a member counts as; NEVER beyond its end.
static KT_U64 inconsistentLba(const _LD_Info& vd, const Pass& pass, KT_U64 lba) {
    const KT_U64 sector = KT_U64{std::max(vd.BlockSize, 512U)} * std::max<KT_U8>(vd.SectorCoefficient, 1);
    const KT_U64 stripe = KT_U64{std::max<KT_U16>(vd.StripeBlockSize, 1)} * 1024;
    const KT_U64 place = placeInVd(geometryOf(vd), pass.slot, (lba - pass.start) * pass.sectorSize, stripe);
    return place / 1024 < vd.Size ? place / sector : NEVER;
}

// Whether the other members cannot make up for the sector: a rebuild then copies what it holds, right or wrong.
static bool isOnlySource(const Context& context, const Pass& pass, KT_U64 lba) {
    const auto block = blockAt(context, pass.pd, lba);
    return block && !canRegenerate(context, pass.vd, *block, lba);
}

static void moveWrongData(const Context& context, const Run& run, const Pass& from, KT_U64 lba) {
    for (const Pass& pass : run.passes) {
        const KT_U64 there = pass.start + (lba - from.start);
        if (pass.writes && pass.vd == from.vd) addBadSector(context, pass.pd, there, BadSector{FLAW_WRONG, 0, {}});
    }
}

// Reading wrong data gives no error; only checks compare members. What is written from wrong data agrees with it
// afterwards: the members are consistent, so that the sector is no longer one that a check would find.
static void readWrongData(const Context& context, const Run& run, const Pass& pass, std::set<KT_U64>& inconsistent) {
    const auto vd = find<_LD_Info>(context, pass.vd);
    for (const auto& [lba, sector] : foundOn(context, pass, run.activity, false)) {
        bool consistent = run.activity.kind == KT_BGA_MIGRATION || run.activity.kind == KT_BGA_CHECK_FIX;
        if (run.activity.kind == KT_BGA_REBUILD) consistent = isOnlySource(context, pass, lba);
        if (run.activity.kind == KT_BGA_COPY_BACK) moveWrongData(context, run, pass, lba);
        const bool compares = run.activity.kind == KT_BGA_CHECK || run.activity.kind == KT_BGA_CHECK_FIX;
        if (vd && compares) inconsistent.insert(inconsistentLba(*vd, pass, lba));
        if (consistent) eraseBadSector(context, pass.pd, lba);
    }
}

static void logInconsistent(const Context& context, KT_U16 vd, const std::set<KT_U64>& lbas) {
    KT_U64 before = NEVER;
    for (const KT_U64 lba : lbas) {
        const bool goesOn = before != NEVER && lba == before + 1;
        before = lba;
        if (goesOn || lba == NEVER) continue;
        logEvent(context, EVT_VD_INCONSISTENT, vd,
                 {static_cast<KT_U32>(lba >> 32), static_cast<KT_U32>(lba & 0xFFFFFFFF)});
    }
}

// Writing repairs a bad sector: the drive reassigns it while it has sectors to spare, and the data is new.
static void overwrite(const Context& context, const Run& run, const Pass& pass) {
    KT_U32 reassigned = 0;
    KT_U32 known = 0;
    for (const bool errors : {true, false}) {
        for (const auto& [lba, sector] : foundOn(context, pass, run.activity, errors)) {
            if (sector.flaw == FLAW_UNREADABLE && reassigned >= sectorsToSpare(context, pass.pd)) continue;
            reassigned += sector.flaw == FLAW_UNREADABLE ? 1 : 0;
            known += sector.known;
            eraseBadSector(context, pass.pd, lba);
        }
    }
    if (reassigned == 0) return;
    logEvent(context, EVT_PD_REASSIGNED, pass.pd);
    countReassigned(context, pass.pd, reassigned, known);
}

void meetBadSectors(const Context& context, Owner owner, const Activity& activity) {
    if (!mayMeet(context, activity)) return;
    const Run run = runOf(context, owner, activity);
    if (nextOf(context, run) > activityDone(activity, context.now)) return;
    std::set<KT_U64> inconsistent;
    std::vector<Loss> losses;
    // Writing first: it would erase the marks of lost data that reading leaves on the same disks.
    for (const Pass& pass : run.passes)
        if (pass.writes) overwrite(context, run, pass);
    for (const Pass& pass : run.passes)
        if (!pass.writes) readErrors(context, run, pass, losses);
    for (const Loss& loss : losses)
        markLost(context, run, loss);
    for (const Pass& pass : run.passes)
        if (!pass.writes && pass.vd != KT_NO_ID) readWrongData(context, run, pass, inconsistent);
    logInconsistent(context, owner.id, inconsistent);
    Activity on = activity;
    on.done = activityDone(activity, context.now);
    on.since = context.now;
    saveActivity(context, owner, on);
}

void wearDisks(const Context& context, Owner owner, const Activity& activity) {
    for (const Pass& pass : runOf(context, owner, activity).passes) {
        const KT_U64 kib = sectorsToKib(pass.sectors, pass.sectorSize);
        if (pass.writes || activity.kind == KT_BGA_MIGRATION) countWritten(context, pass.pd, kib);
    }
}

} // namespace sim
