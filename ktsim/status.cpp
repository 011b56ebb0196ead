#include "activities/activityProgress.h"
#include "commands.h"
#include "devices/battery.h"
#include "media/surface.h"
#include "state/simClock.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>

using namespace sim;

std::string clockText(Store& store);       // clock.cpp
std::string faultText(const Fault& fault); // fault.cpp

static const int ROWS = 16; // of disks and of virtual disks, so that an adapter fits a screen
static const int BAR = 20;

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

template <size_t count>
static std::string wordFor(const Word (&words)[count], int code) {
    for (const Word& word : words)
        if (word.code == code) return word.word;
    return "code " + std::to_string(code);
}

static std::string sizeText(KT_U64 kib) {
    static const char* const UNITS[] = {"KiB", "MiB", "GiB", "TiB", "PiB"};
    double amount = static_cast<double>(kib);
    size_t unit = 0;
    while (amount >= 1024 && unit + 1 < std::size(UNITS)) {
        amount /= 1024;
        ++unit;
    }
    char text[32];
    snprintf(text, sizeof text, "%.1f %s", amount, UNITS[unit]);
    return text;
}

// "[#######-------------] 37% rebuild, 2 h 10 min left"
static std::string progressText(const Activity& activity, const std::string& name, KT_U64 now) {
    const unsigned percent = activityPercent(activity, now);
    std::string text = "[";
    for (unsigned i = 0; i < BAR; ++i)
        text += i < percent * BAR / 100 ? '#' : '-';
    text += "] " + std::to_string(percent) + "% " + name;
    if (activity.state != KT_STATE_RUNNING) return text + ", " + wordFor(STATES, activity.state);
    const KT_U64 end = activityEnd(activity);
    return end == NEVER ? text : text + ", " + durationText(wholeSeconds(std::max(end, now) - now)) + " left";
}

static void printProgress(const Context& context, const Activity& activity) {
    if (activity.kind == 0) return;
    printf("          %s\n", progressText(activity, wordFor(ACTIVITIES, activity.kind), context.now).c_str());
}

static std::string healthNotes(const Context& context) {
    std::string notes;
    _BBU_Info battery = {};
    if (getBattery(context, battery) == KT_OK && battery.status != 0) {
        notes += ", battery " + std::to_string(battery.percentage) + "%";
    } else {
        notes += ", no battery";
    }
    if (const auto last = lastRow(context.store, context.adapter, KIND_EVENT))
        notes += ", last event " + std::to_string(*last);
    return notes;
}

static std::string countText(KT_U64 number, const char* what) {
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

static void printHead(const Context& context, const _Adapter_Info& info) {
    printf("\nAdapter %u  %s (%s)%s\n", context.adapter, printable(info.ModelNumber, 20).c_str(),
           info.MaxDiskGroup ? "array-based" : "LD-based", healthNotes(context).c_str());
    const std::string arrays = info.MaxDiskGroup ? countText(count<_DG_Info>(context), "array") + ", " : "";
    printf("  %s, %s%s\n", countText(count<_HD_Info>(context), "disk").c_str(), arrays.c_str(),
           countText(count<_LD_Info>(context), "virtual disk").c_str());
}

static void printMore(KT_U64 total, int shown, const char* what) {
    if (total <= static_cast<KT_U64>(shown)) return;
    printf("    ... %llu more %s (--all shows them)\n",
           static_cast<unsigned long long>(total) - static_cast<unsigned>(shown), what);
}

static void printVd(const Context& context, KT_U16 id, const _LD_Info& vd) {
    const VdState state = find<VdState>(context, id).value_or(VdState{});
    const std::string array = vd.DGID == KT_NO_ID ? "" : "array " + std::to_string(vd.DGID) + " ";
    printf("  VD %-5u %-16s %-11s %10s  %-*s%s", id, printable(vd.Name, sizeof vd.Name).c_str(),
           wordFor(LEVELS, vd.RaidMode).c_str(), sizeText(vd.Size).c_str(), array.empty() ? 0 : 9, array.c_str(),
           wordFor(STATUSES, vd.Status).c_str());
    if (runsSystem(Vd{vd, state})) printf(", runs the OS");
    printf("\n");
    printProgress(context, state.activity);
}

static void printArrays(const Context& context, int rows) {
    static const char* const STATUS_OF[] = {"functional", "disk missing", "offline"};
    int shown = 0;
    forEach<_DG_Info>(context, 0, [&](KT_U64 id, const _DG_Info& array) {
        const std::string free = array.RemainingManagedSpace ? sizeText(array.RemainingManagedSpace) + " free" : "full";
        printf("  Array %-2llu %-16s %-11s %10s  %s, %s\n", static_cast<unsigned long long>(id),
               printable(array.Name, sizeof array.Name).c_str(), wordFor(LEVELS, array.RaidMode).c_str(),
               sizeText(array.TotalManagedSpace).c_str(), STATUS_OF[std::min<KT_U8>(array.Status, 2)], free.c_str());
        const DgState state = find<DgState>(context, id).value_or(DgState{});
        printProgress(context, state.activity);
        return ++shown < rows;
    });
    printMore(count<_DG_Info>(context), shown, "arrays");
}

static void printVds(const Context& context, int rows) {
    int shown = 0;
    forEach<_LD_Info>(context, 0, [&](KT_U64 id, const _LD_Info& vd) {
        printVd(context, static_cast<KT_U16>(id), vd);
        return ++shown < rows;
    });
    printMore(count<_LD_Info>(context), shown, "virtual disks");
}

static std::string roleText(const PdState& state) {
    std::string role;
    if (state.raid & KT_PD_MEMBER) role = "member";
    if (state.raid & KT_PD_MEMBER && state.dgid != KT_NO_ID) role += " of array " + std::to_string(state.dgid);
    const char* also = role.empty() ? "" : ", ";
    if (state.raid & KT_PD_DEDICATED_SPARE) role += also + ("spare of array " + std::to_string(state.dgid));
    if (state.raid & KT_PD_GLOBAL_SPARE) role += also + std::string("global spare");
    if (state.raid & KT_PD_FOREIGN) role += role.empty() ? "foreign" : ", foreign";
    if (role.empty()) role = state.raid & KT_PD_OFFLINE ? "not in use" : "free";
    if (state.raid & KT_PD_OFFLINE) role += ", offline";
    if (state.health == PD_FAILED) role += ", FAILED";
    if (state.smartTripped) role += ", failing";
    return role;
}

static std::string typeText(const _HD_Info& disk) {
    std::string type = disk.HDType & KT_HD_SAS ? "SAS" : disk.HDType & KT_HD_PATA ? "PATA" : "SATA";
    if (disk.HDType & KT_HD_SSD) type += " SSD";
    if (disk.HDType & KT_HD_ATAPI) type = "ATAPI";
    return type;
}

static std::string surfaceText(const Context& context, KT_U16 pd) {
    const KT_U64 bad = badSectorCount(context, pd);
    if (bad == 0) return "";
    return ", " + countText(bad, "bad sector");
}

static void printDisk(const Context& context, KT_U64 id, const _HD_Info& disk) {
    const PdState state = find<PdState>(context, id).value_or(PdState{});
    printf("  PD %-5llu %-21s %-8s %9s  %s%s\n", static_cast<unsigned long long>(id),
           printable(disk.Model, sizeof disk.Model).substr(0, 21).c_str(), typeText(disk).c_str(),
           sizeText(disk.Size / 1024 * disk.BlockSize).c_str(), roleText(state).c_str(),
           surfaceText(context, static_cast<KT_U16>(id)).c_str());
    if (state.patrol.kind) printf("          %s\n", progressText(state.patrol, "media patrol", context.now).c_str());
}

static void printDisks(const Context& context, int rows) {
    int shown = 0;
    forEach<_HD_Info>(context, 0, [&](KT_U64 id, const _HD_Info& disk) {
        printDisk(context, id, disk);
        return ++shown < rows;
    });
    printMore(count<_HD_Info>(context), shown, "disks");
    forEach<PulledDisk>(context, 0, [](KT_U64 id, const PulledDisk& disk) {
        printf("  PD %-5llu %-21s pulled out\n", static_cast<unsigned long long>(id),
               printable(disk.info.Model, sizeof disk.info.Model).substr(0, 21).c_str());
        return true;
    });
}

static void printFaults(Store& store) {
    bool any = false;
    forEach<Fault>(store, ADAPTER_GLOBAL, 0, [&](KT_U64, const Fault& fault) {
        printf("%-8s%s\n", any ? "" : "Faults", faultText(fault).c_str());
        any = true;
        return true;
    });
    if (!any) printf("%-8snone\n", "Faults");
}

static void printStatus(Store& store, const std::string& path, int rows) {
    const GlobalState global = find<GlobalState>(store, ADAPTER_GLOBAL, 0).value_or(GlobalState{});
    printf("%-8s%s (lab %s)\n", "State", path.c_str(), printable(global.lab, sizeof global.lab).c_str());
    printf("%-8s%s\n", "Clock", clockText(store).c_str());
    printFaults(store);
    const KT_U64 now = simulatedNow(store);
    for (unsigned i = 0; i < global.adapterCount; ++i) {
        const Context context{store, static_cast<KT_U8>(i), now};
        const auto info = find<_Adapter_Info>(context, 0);
        if (!info) continue;
        printHead(context, *info);
        printArrays(context, rows);
        printVds(context, rows);
        printDisks(context, rows);
    }
}

void addStatus(CLI::App& app, Options& options) {
    CLI::App* command = app.add_subcommand("status", "Print what there is and what is going on");
    const auto all = std::make_shared<bool>(false);
    command->add_flag("--all", *all, "Every disk and virtual disk, however many");
    command->callback([&options, all] {
        const std::string path = statePathOf(options);
        changeState(options, [&](Store& store) { printStatus(store, path, *all ? 0x7FFFFFFF : ROWS); });
    });
}
