#include "statusRows.h"

#include "activities/activities.h"
#include "activities/activityProgress.h"
#include "changes/ciphers.h"
#include "commands.h"
#include "devices/battery.h"
#include "media/blocks.h"
#include "media/selfTest.h"
#include "media/surface.h"
#include "raid/cacheMode.h"
#include "raid/keptCaches.h"
#include "raid/members.h"
#include "state/adapterInfo.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

using namespace sim;

static const int BAR = 20;
static const char LINE_BELOW[] = "\n          ";

struct Word {
    int code;
    const char* word;
};

static const Word LEVELS[] = {{KT_RAID0, "RAID0"},
                              {KT_RAID1, "RAID1"},
                              {KT_RAID5, "RAID5"},
                              {KT_RAID6, "RAID6"},
                              {KT_RAID10, "RAID10"},
                              {KT_RAID1E, "RAID1E"},
                              {KT_RAID50, "RAID50"},
                              {KT_RAID60, "RAID60"},
                              {KT_JBOD, "JBOD"},
                              {KT_HYBRID, "hybrid"},
                              {KT_TANDEM_CAPACITY, "tandem capacity"},
                              {KT_TANDEM_SAFE, "tandem safe"}};
static const Word STATUSES[] = {{KT_VD_ONLINE, "online"},
                                {KT_VD_DEGRADED, "degraded"},
                                {KT_VD_DELETED, "deleted"},
                                {KT_VD_OFFLINE, "offline"},
                                {KT_VD_PARTIALLY_OPTIMAL, "partially optimal"},
                                {KT_VD_FOREIGN, "foreign"},
                                {KT_VD_IMPORTABLE, "importable"},
                                {KT_VD_NOT_IMPORTABLE, "not importable"},
                                {KT_VD_CONFLICTED, "conflicted"},
                                {KT_VD_PLUGIN_CONFLICTED, "plugin conflicted"},
                                {KT_VD_USING_TABLE, "using table"}};
static const Word ACTIVITIES[] = {{KT_BGA_REBUILD, "rebuild"},
                                  {KT_BGA_CHECK_FIX, "check and fix"},
                                  {KT_BGA_CHECK, "check"},
                                  {KT_BGA_INIT_QUICK, "quick init"},
                                  {KT_BGA_INIT_FOREGROUND, "foreground init"},
                                  {KT_BGA_MIGRATION, "migration"},
                                  {KT_BGA_INIT_BACKGROUND, "background init"},
                                  {KT_BGA_COPY_BACK, "copy back"}};
static const Word STATES[] = {{KT_STATE_ABORTED, "aborted"},
                              {KT_STATE_PAUSED, "paused"},
                              {KT_STATE_AUTO_PAUSED, "auto paused"},
                              {KT_STATE_INTERRUPTED, "interrupted"}};
static const Word PLACES[] = {{KT_LINK_HBA, "port"}, {KT_LINK_PM, "PM"}, {KT_LINK_EXPANDER, "expander"}};

template <size_t count>
static std::string wordFor(const Word (&words)[count], int code) {
    for (const Word& word : words)
        if (word.code == code) return word.word;
    return "code " + std::to_string(code);
}

__attribute__((format(printf, 1, 2))) static std::string format(const char* pattern, ...) {
    char text[256] = "";
    va_list values;
    va_start(values, pattern);
    vsnprintf(text, sizeof text, pattern, values);
    va_end(values);
    return text;
}

static std::string sizeText(KT_U64 kib) {
    static const char* const UNITS[] = {"KiB", "MiB", "GiB", "TiB", "PiB"};
    double amount = static_cast<double>(kib);
    size_t unit = 0;
    while (amount >= 1024 && unit + 1 < std::size(UNITS)) {
        amount /= 1024;
        ++unit;
    }
    return format("%.1f %s", amount, UNITS[unit]);
}

std::string countText(KT_U64 number, const char* what) {
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

static std::string listText(const std::vector<KT_U16>& ids) {
    std::string text;
    for (const KT_U16 id : ids)
        text += " " + std::to_string(id);
    return (ids.size() == 1 ? "disk" : "disks") + text;
}

// "[#######-------------] 37% rebuild"
static std::string barText(unsigned percent, const std::string& name) {
    std::string text = std::string(LINE_BELOW) + "[";
    for (unsigned i = 0; i < BAR; ++i)
        text += i < percent * BAR / 100 ? '#' : '-';
    return text + "] " + std::to_string(percent) + "% " + name;
}

static std::string leftText(KT_U64 end, KT_U64 now) {
    return end == NEVER ? "" : ", " + durationText(wholeSeconds(std::max(end, now) - now)) + " left";
}

// "[#######-------------] 37% rebuild of disk 5 from disks 3 4, 2 h 10 min left"
static std::string progressText(const Activity& activity, const std::string& name, KT_U64 now) {
    const std::string text = barText(activityPercent(activity, now), name);
    if (activity.state != KT_STATE_RUNNING) return text + ", " + wordFor(STATES, activity.state);
    return text + leftText(activityEnd(activity), now);
}

// Whether the disk is being filled for the group.
static bool isFilled(const Context& context, const Group& group, KT_U16 pd) {
    for (const KT_U16 id : blocksFor(context, group, pd))
        if (find<_Block_Info>(context, id).value_or(_Block_Info{}).Status == BLOCK_REBUILDING) return true;
    return false;
}

// Which disks a rebuild or copy back reads, and which it writes.
static std::string routeText(const Context& context, Owner owner, const Activity& activity) {
    const Group group = groupOf(context, owner);
    std::vector<KT_U16> from;
    std::vector<KT_U16> to;
    for (size_t i = 0; i < group.members.size(); ++i) {
        const KT_U16 pd = group.members[i];
        if (activity.kind == KT_BGA_COPY_BACK) {
            if (group.homes[i] == activity.disk) from.push_back(pd);
        } else if (!group.needsDisk[i]) {
            (isFilled(context, group, pd) ? to : from).push_back(pd);
        }
    }
    if (activity.kind == KT_BGA_COPY_BACK) to.push_back(activity.disk);
    if (to.empty() || from.empty()) return "";
    return std::string(activity.kind == KT_BGA_COPY_BACK ? " to " : " of ") + listText(to) + " from " + listText(from);
}

// What a migration makes of it.
static std::string targetText(const Context& context, Owner owner) {
    const Group group = groupOf(context, owner);
    for (const KT_U16 vd : group.vds) {
        if (const auto target = find<VdTarget>(context, vd))
            return " to " + wordFor(LEVELS, target->info.RaidMode) + " of " + countText(target->info.HDCount, "disk");
    }
    return "";
}

static std::string jobText(const Context& context, Owner owner, const Activity& activity) {
    if (activity.kind == 0) return "";
    std::string name = wordFor(ACTIVITIES, activity.kind);
    if (activity.kind == KT_BGA_REBUILD || activity.kind == KT_BGA_COPY_BACK)
        name += routeText(context, owner, activity);
    if (activity.kind == KT_BGA_MIGRATION) name += targetText(context, owner);
    return progressText(activity, name, context.now);
}

static Urgency rowUrgency(bool wrong, bool busy) {
    return wrong ? Urgency::Wrong : busy ? Urgency::Busy : Urgency::Well;
}

static std::string batteryText(const Context& context) {
    _BBU_Info battery = {};
    if (getBattery(context, battery) != KT_OK || battery.status == 0) return "no battery";
    const std::vector<const char*> complaints = batteryComplaints(context);
    if (complaints.empty()) return format("battery %u%%", unsigned{battery.percentage});
    return std::string("battery ") + complaints.front();
}

// The cache in force, and what makes it so.
static std::string cacheText(const Context& context, const _LD_Info& vd, const VdState& state) {
    const bool on = (vd.CacheMode & KT_CACHE_OFF) == 0;
    std::string text = on ? "write-back" : "write-through";
    if (state.cachePolicy & KT_CACHE_AUTO) return text + " (auto: " + batteryText(context) + ")";
    return on && !batteryKeepsCache(context) ? text + ", unsafe (" + batteryText(context) + ")" : text;
}

static std::string keptText(const Context& context, const _LD_Info& vd) {
    return hasKeptCache(context, vd) ? ", the cache keeps what it lacks" : "";
}

static StatusRow vdRow(const Context& context, KT_U16 id, const _LD_Info& vd) {
    const VdState state = find<VdState>(context, id).value_or(VdState{});
    const std::string array = vd.DGID == KT_NO_ID ? "" : "array " + std::to_string(vd.DGID) + " ";
    std::string text =
        format("  VD %-5u %-16s %-11s %10s  %-*s", id, printable(vd.Name, sizeof vd.Name).c_str(),
               wordFor(LEVELS, vd.RaidMode).c_str(), sizeText(vd.Size).c_str(), array.empty() ? 0 : 9, array.c_str());
    text += wordFor(STATUSES, vd.Status);
    if (isUsable(vd) || vd.Status == KT_VD_USING_TABLE) text += ", " + cacheText(context, vd, state);
    text += keptText(context, vd);
    if (runsSystem(Vd{vd, state})) text += ", runs the OS";
    text += jobText(context, Owner{OwnerKind::Vd, id}, state.activity);
    const bool well = vd.Status == KT_VD_ONLINE || vd.Status == KT_VD_USING_TABLE;
    return StatusRow{rowUrgency(!well, state.activity.kind != 0), Thing::Vd, text};
}

static StatusRow arrayRow(const Context& context, KT_U16 id, const _DG_Info& array) {
    static const char* const STATUS_OF[] = {"functional", "disk missing", "offline"};
    const std::string free = array.RemainingManagedSpace ? sizeText(array.RemainingManagedSpace) + " free" : "full";
    const DgState state = find<DgState>(context, id).value_or(DgState{});
    std::string text =
        format("  Array %-2u %-16s %-11s %10s  %s, %s", id, printable(array.Name, sizeof array.Name).c_str(),
               wordFor(LEVELS, array.RaidMode).c_str(), sizeText(array.TotalManagedSpace).c_str(),
               STATUS_OF[std::min<KT_U8>(array.Status, 2)], free.c_str());
    text += jobText(context, Owner{OwnerKind::Array, id}, state.activity);
    return StatusRow{rowUrgency(array.Status != ARRAY_FUNCTIONAL, state.activity.kind != 0), Thing::Array, text};
}

// The virtual disks, outside arrays, that have something on the disk.
static std::string vdsOn(const Context& context, KT_U16 pd) {
    const _HD_Block_Info blocks = blocksOf(context, pd);
    std::vector<KT_U16> vds;
    for (int i = 0; i < std::min<int>(blocks.BlkCount, MAX_MEMBERS); ++i) {
        const auto block = find<_Block_Info>(context, blocks.BlkIDs[i]);
        if (block && std::find(vds.begin(), vds.end(), block->LDID) == vds.end()) vds.push_back(block->LDID);
    }
    std::string text;
    for (const KT_U16 vd : vds)
        text += (text.empty() ? " of VD " : " ") + std::to_string(vd);
    return text;
}

// The virtual disks here that the disk was a member of before it went.
static std::string formerVds(const Context& context, KT_U16 pd) {
    const PulledBlocks blocks = find<PulledBlocks>(context, pd).value_or(PulledBlocks{});
    const auto* end = blocks.entries + std::min<int>(blocks.count, MAX_MEMBERS);
    std::string text;
    forEach<_LD_Info>(context, 0, [&](KT_U64 id, const _LD_Info& vd) {
        const auto isOf = [&](const PulledBlock& entry) {
            return memcmp(entry.guid, vd.LD_GUID, sizeof entry.guid) == 0;
        };
        if (std::any_of(blocks.entries, end, isOf)) text += " " + std::to_string(id);
        return true;
    });
    return text.empty() ? "" : " VD" + text;
}

static std::string missedText(const Context& context, KT_U16 pd) {
    const std::string vds = formerVds(context, pd);
    return vds.empty() ? "" : ", has missed what was written to" + vds;
}

static std::string whyOffline(const Context& context, KT_U16 pd, const PdState& state) {
    if (state.health == PD_FAILED) return "FAILED";
    const std::string locked = whyLocked(context, pd);
    return "offline (" + (locked.empty() ? "set down" : locked) + ")";
}

static std::string roleText(const Context& context, KT_U16 pd, const PdState& state) {
    std::string role;
    const bool inArray = state.dgid != KT_NO_ID;
    const std::string vds = vdsOn(context, pd);
    if (state.raid & KT_PD_MEMBER) role = "member" + (inArray ? " of array " + std::to_string(state.dgid) : vds);
    const auto add = [&](const std::string& text) { role += (role.empty() ? "" : ", ") + text; };
    if (state.raid & KT_PD_DEDICATED_SPARE) add("spare of array " + std::to_string(state.dgid));
    if (state.raid & KT_PD_GLOBAL_SPARE) add("global spare");
    if (state.raid & KT_PD_FOREIGN) add("foreign" + (vds.empty() ? missedText(context, pd) : vds));
    if (role.empty()) role = state.raid & KT_PD_OFFLINE ? "not in use" : "free";
    if ((state.raid & KT_PD_OFFLINE) || state.health == PD_FAILED) add(whyOffline(context, pd, state));
    if (state.smartTripped) add("failing");
    return role;
}

static std::string typeText(const _HD_Info& disk) {
    std::string type = disk.HDType & KT_HD_SAS ? "SAS" : disk.HDType & KT_HD_PATA ? "PATA" : "SATA";
    if (disk.HDType & KT_HD_SSD) type += " SSD";
    if (disk.HDType & KT_HD_ATAPI) type = "ATAPI";
    return type;
}

// "bay 1:4", "port 2", "PM 0:3"
static std::string placeText(const _HD_Info& disk) {
    if (disk.Link.Self.EnclosureID != KT_NO_ID)
        return format("bay %u:%u", unsigned{disk.Link.Self.EnclosureID}, unsigned{disk.ElementIdx});
    const _Link_Endpoint& parent = disk.Link.Parent;
    const unsigned port = parent.PhyID[0];
    if (parent.DevType == KT_LINK_HBA) return format("port %u", port);
    return wordFor(PLACES, parent.DevType) + format(" %u:%u", unsigned{parent.DevID}, port);
}

static std::string diskLine(KT_U64 id, const _HD_Info& disk, const std::string& role) {
    return format("  PD %-5llu %-21s %-8s %9s  %-10s  ", static_cast<unsigned long long>(id),
                  printable(disk.Model, sizeof disk.Model).substr(0, 21).c_str(), typeText(disk).c_str(),
                  sizeText(disk.Size / 1024 * disk.BlockSize).c_str(), placeText(disk).c_str()) +
           role;
}

static StatusRow diskRow(const Context& context, KT_U16 id, const _HD_Info& disk) {
    const PdState state = find<PdState>(context, id).value_or(PdState{});
    std::string role = roleText(context, id, state);
    const KT_U64 flawed = badSectorCount(context, id);
    const KT_U64 wrongData = badSectorCount(context, id, FLAW_WRONG);
    if (flawed != wrongData) role += ", " + countText(flawed - wrongData, "bad sector");
    // They read without any error.
    if (wrongData != 0) role += ", wrong data in " + countText(wrongData, "sector");
    if (state.patrol.kind) role += progressText(state.patrol, "media patrol", context.now);
    const KT_U64 testEnds = testEnd(context, id);
    if (testEnds != NEVER) {
        const SolidState drive = driveState(context, id);
        role += barText(percentDone(context, disk, drive), drive.extended ? "long self-test" : "short self-test") +
                leftText(testEnds, context.now);
    }
    const bool wrong = flawed != 0 || state.smartTripped || state.health == PD_FAILED ||
                       (state.raid & (KT_PD_OFFLINE | KT_PD_FOREIGN)) != 0;
    const bool busy = state.patrol.kind != 0 || testEnds != NEVER;
    return StatusRow{rowUrgency(wrong, busy), Thing::Disk, diskLine(id, disk, role)};
}

static StatusRow pulledRow(const Context& context, KT_U16 id, const PulledDisk& disk) {
    const bool missed = find<PulledBlocks>(context, id).value_or(PulledBlocks{}).count != 0;
    const std::string vds = formerVds(context, id);
    const std::string role = vds.empty() ? "pulled out" : "was a member of" + vds + ", pulled out";
    return StatusRow{missed ? Urgency::Wrong : Urgency::Well, Thing::Disk, diskLine(id, disk.info, role)};
}

static void addFlashRows(const Context& context, std::vector<StatusRow>& rows) {
    if (find<AdapterState>(context, 0).value_or(AdapterState{}).down == ADAPTER_DEAD) {
        const char* text = "  does not run: its firmware or boot loader is not sound";
        rows.push_back(StatusRow{Urgency::Wrong, Thing::Adapter, text});
    }
    const _Adapter_Info info = adapterInfo(context);
    if (!(info.AdvancedFeatures & KT_ADV_IMAGE_HEALTH)) return;
    std::string text;
    text += info.firmware_img_health ? "" : " firmware";
    text += info.boot_loader_img_health ? "" : " bin";
    text += info.boot_rom_img_health ? "" : " bios";
    text += info.autoload_img_health ? "" : " autoload";
    text += info.hba_info_img_health ? "" : " settings";
    if (!text.empty()) rows.push_back(StatusRow{Urgency::Wrong, Thing::Adapter, "  Flash    not sound:" + text});
}

// Whether a virtual disk caches, or would with a battery.
static bool needsBattery(const Context& context) {
    bool caches = false;
    forEach<VdState>(context, 0, [&](KT_U64, const VdState& vd) {
        caches = (vd.cachePolicy & KT_CACHE_AUTO) != 0 || (vd.cachePolicy & KT_CACHE_OFF) == 0;
        return !caches;
    });
    return caches;
}

static void addBatteryRow(const Context& context, std::vector<StatusRow>& rows) {
    _BBU_Info battery = {};
    if (getBattery(context, battery) != KT_OK) return;
    if (battery.status == 0) {
        if (!needsBattery(context)) return;
        const char* text = "  Battery  none, caches would not survive a power failure";
        rows.push_back(StatusRow{Urgency::Wrong, Thing::Battery, text});
        return;
    }
    const BatteryState state = find<BatteryState>(context, 0).value_or(BatteryState{});
    const bool wrong = !batteryKeepsCache(context) || state.chargerBroken != 0;
    const bool busy = (battery.status & (KT_BBU_CHARGING | KT_BBU_DISCHARGING)) != 0;
    if (!wrong && !busy) return;
    std::string text = format("  Battery  %u%%, %.2f C, %.2f V", unsigned{battery.percentage},
                              battery.temperature / 100.0, battery.voltage / 1000.0);
    if (busy) text += battery.status & KT_BBU_CHARGING ? ", charging" : ", discharging";
    if (state.relearn == RELEARN_DISCHARGING || state.relearn == RELEARN_CHARGING) text += " to relearn";
    if (state.chargerBroken) text += ", charger broken";
    for (const char* complaint : batteryComplaints(context))
        text += std::string(", ") + complaint;
    if (!batteryKeepsCache(context)) text += ", caches would not survive a power failure";
    rows.push_back(StatusRow{rowUrgency(wrong, busy), Thing::Battery, text});
}

// "  fan 2 critical": of its slots, or of its other elements.
static std::string elementFaults(const Context& context, KT_U16 enclosure, bool slots) {
    std::string text;
    for (const std::string& word : elementWords()) {
        const ElementKind* kind = elementKindNamed(word);
        if (isSlot(kind->type) != slots) continue;
        const std::string faults = describeElements(context, enclosure, *kind, true);
        if (!faults.empty()) text += "  " + word + " " + faults;
    }
    return text;
}

static void addEnclosureRows(const Context& context, std::vector<StatusRow>& rows) {
    forEach<_Enclosure_Info>(context, 0, [&](KT_U64 id, const _Enclosure_Info& enclosure) {
        if (enclosure.Status == 0) return true;
        std::string faults = elementFaults(context, static_cast<KT_U16>(id), false);
        if (faults.empty()) faults = elementFaults(context, static_cast<KT_U16>(id), true);
        const std::string text = format("  Enclosure %llu", static_cast<unsigned long long>(id));
        rows.push_back(StatusRow{Urgency::Wrong, Thing::Enclosure, text + (faults.empty() ? "  unstable" : faults)});
        return true;
    });
}

static void addPulledRows(const Context& context, std::vector<StatusRow>& rows) {
    forEach<AwayBranch>(context, 0, [&](KT_U64 id, const AwayBranch&) {
        const std::string what =
            id < CABLES ? "Cable " + std::to_string(id) : "Enclosure " + std::to_string(id - CABLES);
        rows.push_back(StatusRow{Urgency::Wrong, Thing::Enclosure, "  " + what + "  pulled out"});
        return true;
    });
}

static void addPortRows(const Context& context, std::vector<StatusRow>& rows) {
    forEach<AesPort>(context, 0, [&](KT_U64 id, const AesPort& port) {
        const bool locked = port.entry == NO_ENTRY;
        if (locked && !port.enabled) return true;
        std::string text = format("  Port %llu   ", static_cast<unsigned long long>(id));
        text += locked ? "locked: it encrypts, and no key is mounted"
                       : format("key entry %u, encryption %s", unsigned{port.entry}, port.enabled ? "on" : "off");
        rows.push_back(StatusRow{locked ? Urgency::Wrong : Urgency::Well, Thing::Port, text});
        return true;
    });
}

std::vector<StatusRow> statusRows(const Context& context) {
    std::vector<StatusRow> rows;
    addFlashRows(context, rows);
    addBatteryRow(context, rows);
    addEnclosureRows(context, rows);
    addPulledRows(context, rows);
    addPortRows(context, rows);
    forEach<_DG_Info>(context, 0, [&](KT_U64 id, const _DG_Info& array) {
        rows.push_back(arrayRow(context, static_cast<KT_U16>(id), array));
        return true;
    });
    forEach<_LD_Info>(context, 0, [&](KT_U64 id, const _LD_Info& vd) {
        rows.push_back(vdRow(context, static_cast<KT_U16>(id), vd));
        return true;
    });
    forEach<_HD_Info>(context, 0, [&](KT_U64 id, const _HD_Info& disk) {
        rows.push_back(diskRow(context, static_cast<KT_U16>(id), disk));
        return true;
    });
    forEach<PulledDisk>(context, 0, [&](KT_U64 id, const PulledDisk& disk) {
        rows.push_back(pulledRow(context, static_cast<KT_U16>(id), disk));
        return true;
    });
    return rows;
}
