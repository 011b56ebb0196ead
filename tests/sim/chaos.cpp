#include "chaos.h"

#include "activities/activities.h"
#include "changes/arrays.h"
#include "changes/arrival.h"
#include "changes/branches.h"
#include "changes/diskIds.h"
#include "changes/health.h"
#include "devices/batteryDeeds.h"
#include "devices/power.h"
#include "frame/invariants.h"
#include "frame/settle.h"
#include "media/wear.h"
#include "raid/damage.h"
#include "raid/members.h"
#include "state/adapterInfo.h"
#include "state/faults.h"
#include "state/simClock.h"

#include <algorithm>

// Levels, and the numbers of disks that each is made of.
struct Shape {
    KT_U8 level;
    KT_U8 counts[3];
};
static const Shape SHAPES[] = {
    {KT_RAID0, {2, 3, 4}},  {KT_RAID1, {2, 2, 2}},  {KT_RAID1, {2, 2, 2}},  {KT_RAID5, {3, 4, 5}},
    {KT_RAID5, {3, 3, 4}},  {KT_RAID5, {3, 3, 4}},  {KT_RAID6, {4, 4, 5}},  {KT_RAID10, {4, 4, 6}},
    {KT_RAID10, {4, 4, 6}}, {KT_RAID1E, {3, 3, 5}}, {KT_RAID50, {6, 6, 8}}, {KT_RAID60, {8, 6, 8}},
    {KT_JBOD, {1, 1, 2}},   {KT_HYBRID, {2, 3, 2}}, {0x77, {2, 3, 200}},
};
static const KT_U8 ANY_CONTROLS[] = {1, 2, 3, 3, 4, 7, 0, 9};

// Free disks, with a mistake now and then.
static KT_U8 disks(Chaos& run, const Shape& shape, KT_U16* ids) {
    const KT_U8 count = run.rarely(15) ? run.byte(9) : run.oneOf(shape.counts);
    const Ids unused = freeDisks(run.context());
    const KT_U16 from = run.pick(unused.size() > count ? static_cast<unsigned>(unused.size() - count + 1) : 1);
    for (KT_U16 i = 0; i < count && i < 24; ++i) {
        const size_t at = size_t{from} + i;
        ids[i] = at < unused.size() && !run.rarely(50) ? unused[at] : run.pick(24);
    }
    return count;
}

// The members of a virtual disk or an array, and some free disks: what a migration asks for.
static KT_U8 withMembers(Chaos& run, OwnerKind kind, KT_U16 id, KT_U16* ids) {
    Ids all = groupOf(run.context(), Owner{kind, id}).members;
    const size_t most = all.size() + run.pick(3);
    for (const KT_U16 pd : freeDisks(run.context()))
        if (all.size() < most && !run.rarely(3)) all.push_back(pd);
    std::copy(all.begin(), all.end(), ids);
    return static_cast<KT_U8>(all.size());
}

static KT_U8 parity(Chaos& run, KT_U8 raid) {
    const KT_U8 right = raid == KT_RAID60 ? 4 : raid == KT_RAID6 ? 2 : 0;
    return run.rarely(10) ? run.byte(256) : right;
}

// What both kinds of adapters are asked for in other words, mostly nothing out of the ordinary.
template <class Param>
static void chooseOptions(Chaos& run, Param& param) {
    param.SectorCoefficient = run.rarely(8) ? run.byte(10) : KT_U8{1};
    param.RoundingScheme = run.rarely(8) ? run.byte(5) : KT_U8{KT_ROUND_NONE};
    param.CachePolicy = run.rarely(6) ? static_cast<KT_U8>(1U << run.pick(8)) : KT_U8{0};
    param.InitializationOption = run.rarely(8) ? run.byte(7) : KT_U8{KT_INIT_QUICK};
    if (run.rarely(4)) param.Name[0] = static_cast<KT_U8>('a' + run.pick(4));
}

static _Create_LD_Param ldParam(Chaos& run) {
    _Create_LD_Param param = {};
    const Shape& shape = SHAPES[run.pick(std::size(SHAPES))];
    param.RaidMode = shape.level;
    param.HDCount = disks(run, shape, param.HDIDs);
    param.NumParityDisk = parity(run, param.RaidMode);
    param.StripeBlockSize = static_cast<KT_U16>(run.rarely(12) ? run.pick(100) : 16 << run.pick(7));
    chooseOptions(run, param);
    param.LDID = run.vd();
    param.Size = run.rarely(3) ? 0 : KIB_PER_MB * run.pick(3000);
    param.ReservedForApp = run.rarely(10) ? 1 : 0;
    param.TandemWaterMark = run.rarely(8) ? run.byte(120) : KT_U8{0};
    return param;
}

static _CreateOrModify_DG_Param dgParam(Chaos& run, KT_U16 id) {
    _CreateOrModify_DG_Param param = {};
    const Shape& shape = SHAPES[run.pick(std::size(SHAPES))];
    param.RaidMode = shape.level;
    param.PDCount = disks(run, shape, param.PDIDs);
    param.NumParityDisk = parity(run, param.RaidMode);
    param.StripeBlockSize = 64;
    param.BlockSize = run.rarely(8) ? 4096 : 512;
    param.Size = run.rarely(3) ? run.pick(4000) : 0;
    param.DGID = id;
    if (run.rarely(4)) param.Name[0] = static_cast<KT_U8>('a' + run.pick(4));
    return param;
}

static void createOrMigrateVd(Chaos& run, bool migrates) {
    _Create_LD_Param param = ldParam(run);
    if (run.rarely(4)) KT_LD_GetMaxSize(run.adapter, &param);
    if (!migrates) return void(KT_LD_Create(run.adapter, &param));
    param.HDCount = withMembers(run, OwnerKind::Vd, param.LDID, param.HDIDs);
    const auto vd = find<_LD_Info>(run.context(), param.LDID);
    if (vd && run.rarely(3)) param.RaidMode = vd->RaidMode;
    param.NumParityDisk = parity(run, param.RaidMode);
    if (run.rarely(4)) KT_LD_GetMigratedLdSize(run.adapter, &param);
    KT_LD_StartMigration(run.adapter, &param);
}

static void createOrMigrateArray(Chaos& run, bool migrates) {
    _CreateOrModify_DG_Param param = dgParam(run, migrates ? run.array() : KT_U16{KT_NO_ID});
    if (!migrates && run.rarely(8)) param.DGID = run.array();
    if (!migrates) return void(KT_CreateOrModify_DG(run.adapter, &param, run.rarely(5)));
    param.PDCount = withMembers(run, OwnerKind::Array, param.DGID, param.PDIDs);
    const auto array = find<_DG_Info>(run.context(), param.DGID);
    if (array && run.rarely(3)) param.RaidMode = array->RaidMode;
    param.NumParityDisk = parity(run, param.RaidMode);
    KT_DG_StartMigration(run.adapter, &param, run.rarely(4));
}

static void createInArray(Chaos& run) {
    const auto array = find<_DG_Info>(run.context(), run.array());
    if (!array) return;
    _CreateOrModify_VD_Param param = {};
    param.VDID = run.rarely(8) ? run.vd() : KT_U16{KT_NO_ID};
    param.DGID = array->DGID;
    param.RaidMode = array->RaidMode;
    param.NumParityDisk = array->NumParityDisk;
    param.StripeBlockSize = array->StripeBlockSize;
    param.BlockSize = array->BlockSize;
    param.DGSlotNum = run.rarely(3) ? run.byte(4) : KT_U8{255};
    param.Size = run.rarely(4) ? 0 : run.pick(1500);
    chooseOptions(run, param);
    KT_CreateOrModify_VD(run.adapter, &param);
}

// Disks come from elsewhere with what is on them, or stay there when there is no room.
static void bringForeign(Chaos& run, const Context& context) {
    BuiltInLab lab = *labNamed("default");
    lab.stoppedAt = run.now;
    Store* elsewhere = openMemoryStore(fillFromLab, &lab);
    Ids ids;
    Ids disks;
    for (KT_U16 pd = run.pick(4); pd < 10; pd = static_cast<KT_U16>(pd + 1 + run.pick(3)))
        disks.push_back(pd);
    const KT_U8 there = run.byte(2);
    beginTransaction(*elsewhere, Access::Write);
    if (run.rarely(3)) pullDisks(Context{*elsewhere, there, run.now}, {disks.front(), disks.back()});
    commitTransaction(*elsewhere);
    setMark(*run.store);
    if (insertForeignDisks(context, *elsewhere, there, disks, ids) != KT_OK) rollbackToMark(*run.store);
    closeStore(elsewhere);
}

// A whole shelf, all behind a cable, or some disks at once.
static void pullTogether(Chaos& run, Context& context) {
    if (!run.rarely(3) && pullEnclosure(context, 1) == KT_OK) {
        ++run.shelvesPulled;
    } else if (run.rarely(2) && pullCable(context, run.byte(8)) == KT_OK) {
        ++run.cablesPulled;
    } else {
        const KT_U16 pd = run.pick(16);
        pullDisks(context, {pd, static_cast<KT_U16>(pd + 1), static_cast<KT_U16>(pd + 2)});
    }
}

// The power goes, properly or not, and may stay away for a while; disks and shelves go and come meanwhile.
static void powerCycle(Chaos& run) {
    const KT_U16 adapters = find<GlobalState>(*run.store, ADAPTER_GLOBAL, 0)->adapterCount;
    for (KT_U16 i = 0; i < adapters; ++i) {
        Context context{*run.store, static_cast<KT_U8>(i), run.now};
        settle(context);
    }
    const Context context = run.context();
    powerDown(*run.store, run.rarely(2));
    ++run.boots;
    for (int i = run.pick(4); i > 0; --i) {
        insertDisks(context, {run.pick(18)});
        pullDisks(context, {run.pick(18)});
    }
    if (run.rarely(4)) failDisk(context, run.pick(18));
    if (run.rarely(5)) removeBattery(context);
    if (run.rarely(3)) insertBattery(context);
    if (run.rarely(4)) pullEnclosure(context, 1);
    if (run.rarely(2)) insertEnclosure(context, 1);
    if (run.rarely(3)) insertDisks(context, {run.pick(18)});
    run.now += run.rarely(2) ? run.pick(3000) : 0;
    setClock(*run.store, run.now, 1000, true);
    checkAfterCall("while it is off", context);
    powerUp(*run.store);
    checkAfterCall("after the boot", context);
}

// What no client of the library does: disks and time.
static void happen(Chaos& run) {
    beginTransaction(*run.store, Access::Write);
    Context context = run.context();
    settle(context);
    const KT_U16 pd = run.pick(18);
    const KT_U16 pulled = run.among(all<PulledDisk>(context), 18);
    const KT_U16 broken =
        run.among(idsWhere<PdState>(context, [](const PdState& disk) { return disk.health == PD_FAILED; }), 18);
    const KT_U16 what = run.pick(32);
    if (what == 0) {
        failDisk(context, pd);
    } else if (what == 1) {
        pullDisks(context, {pd});
        if (run.rarely(3)) renumberDisks(context);
    } else if (what == 2) {
        tripSmart(context, pd, run.pick(2) != 0);
    } else if (what < 6) {
        const KT_U16 forgotten = 0xF000; // the first id of a pulled disk whose own is somebody else's
        insertDisks(context, {run.rarely(4) ? static_cast<KT_U16>(forgotten + run.pick(3)) : pulled});
    } else if (what < 8) {
        addBadSectors(context, pd, BadSector{run.pick(2) ? FLAW_WRONG : FLAW_UNREADABLE, 0, {}}, run.pick(300));
        applyRates(context);
    } else if (what == 8) {
        bringForeign(run, context);
    } else if (what < 12) {
        pullTogether(run, context);
    } else if (what < 14) {
        // What was pulled comes back before long.
        insertEnclosure(context, 1);
        for (KT_U8 port = 0; port < 8; ++port)
            insertCable(context, port);
    } else if (what < 16) {
        powerCycle(run);
    } else {
        // Broken and missing disks are seen to, or there would soon be none.
        const bool small = run.rarely(6);
        replaceDisk(context, run.rarely(3) ? pulled : broken,
                    [&](_HD_Info& disk) { disk.Size = small ? 2000000 : disk.Size; });
    }
    // Mostly seconds; now and then hours, in which a battery empties and all that goes on comes to its end.
    run.now += run.rarely(60) ? KT_U64{3600000} * run.pick(12) : run.pick(3000);
    setClock(*run.store, run.now, 1000, true);
    commitTransaction(*run.store);
}

// A call goes wrong soon, once or a few times.
static void setAnyFault(Chaos& run) {
    static const char* const CALLS[] = {"KT_LD_Create",           "KT_LD_GetInfo",   "KT_LD_GetMaxSize",
                                        "KT_DG_GetInfo",          "KT_PD_GetHDInfo", "KT_PD_SetConfig",
                                        "KT_EVT_GetEventMessage", "KT_EVT_GetEvent", "KT_BBU_GetInfo"};
    Fault fault = {};
    strncpy(fault.call, CALLS[run.pick(std::size(CALLS))], sizeof fault.call - 1);
    fault.kind = run.byte(4);
    fault.status = run.byte(200);
    fault.adapter = run.rarely(2) ? run.adapter : KT_U8{ADAPTER_GLOBAL};
    fault.after = run.pick(3);
    fault.times = run.pick(3) + 1;
    beginTransaction(*run.store, Access::Write);
    addFault(*run.store, fault);
    commitTransaction(*run.store);
}

// A record with two bytes of any value: settings that somebody may hand to an adapter.
template <class Record>
static Record spoilt(Chaos& run, Record record = {}) {
    for (int i = 0; i < 2; ++i)
        reinterpret_cast<KT_U8*>(&record)[run.pick(sizeof record)] = run.rarely(2) ? run.byte(3) : run.byte(256);
    return record;
}

static void setAdapter(Chaos& run) {
    _Adapter_Config_V2 config = {};
    KT_Adapter_GetConfig(run.adapter, &config);
    config = spoilt(run, config);
    KT_Adapter_SetConfig(run.adapter, &config);
}

static void setPart(Chaos& run) {
    const auto vd = spoilt<_LD_Config>(run);
    const auto array = spoilt<_DG_CONFIG>(run);
    const KT_U16 pd = run.disk();
    const auto now = find<PdState>(run.context(), pd);
    const auto disk = spoilt(run, now ? now->config : _HD_CONFIG{});
    KT_LD_SetConfig(run.adapter, run.vd(), &vd);
    KT_DG_SetConfig(run.adapter, run.array(), &array);
    KT_PD_SetConfig(run.adapter, pd, &disk);
}

static void import(Chaos& run) {
    const auto isForeign = [](const _LD_Info& vd) { return vd.Status == KT_VD_IMPORTABLE; };
    KT_LD_Import(run.adapter, run.among(idsWhere<_LD_Info>(run.context(), isForeign), 5));
}

// What is lost for good makes room.
static void tidyUp(Chaos& run) {
    const auto isLost = [](const _LD_Info& vd) { return vd.Status >= KT_VD_OFFLINE && vd.Status != KT_VD_IMPORTABLE; };
    const Ids lost = idsWhere<_LD_Info>(run.context(), isLost);
    if (!lost.empty()) KT_LD_Delete(run.adapter, run.among(lost, 5), 1);
    if (run.rarely(4)) KT_DG_Delete(run.adapter, run.array());
}

// Steers what goes on, or what does not.
static void steer(Chaos& run) {
    const auto works = [](const _LD_Info& vd) { return vd.BGAStatus != 0; };
    const auto isRead = [](const PdState& disk) { return disk.patrol.state != 0; };
    const KT_U16 vd = run.among(idsWhere<_LD_Info>(run.context(), works), 5);
    const KT_U16 array = run.array();
    const KT_U16 pd = run.among(idsWhere<PdState>(run.context(), isRead), 20);
    KT_LD_BGAControl(run.adapter, vd, run.oneOf(ANY_CONTROLS));
    KT_DG_BGAControl(run.adapter, array, run.oneOf(ANY_CONTROLS));
    KT_PD_BGAControl(run.adapter, pd, run.oneOf(ANY_CONTROLS));
}

// What is done, how often, and on which adapters: those based on virtual disks, those based on arrays, or both.
enum class On : KT_U8 { Vds, Arrays, Both };
struct Act {
    int weight;
    On on;
    void (*done)(Chaos& run);
};
static const Act ACTS[] = {
    {70, On::Both, happen},
    {40, On::Both, useDevices},
    {30, On::Vds, [](Chaos& run) { createOrMigrateVd(run, false); }},
    {15, On::Vds, [](Chaos& run) { createOrMigrateVd(run, true); }},
    {20, On::Arrays, [](Chaos& run) { createOrMigrateArray(run, false); }},
    {10, On::Arrays, [](Chaos& run) { createOrMigrateArray(run, true); }},
    {20, On::Arrays, createInArray},
    {6, On::Arrays,
     [](Chaos& run) {
         KT_LD_DG_StartRebuild(run.adapter, run.array(), run.byte(3), Ids{run.freeDisk(), run.freeDisk()}.data());
     }},
    {1, On::Both, [](Chaos& run) { KT_LD_DG_QuickCreate(run.adapter, run.byte(3)); }},
    {1, On::Both, [](Chaos& run) { KT_LD_PauseAll(run.adapter); }},
    {5, On::Both, setAnyFault},
    {4, On::Both, setAdapter},
    {4, On::Both, setPart},
    {1, On::Both, [](Chaos& run) { KT_AdapterMute(run.adapter); }},
    {1, On::Both, [](Chaos& run) { KT_BBU_ChangePower(run.adapter, run.byte(4)); }},
    {2, On::Both, [](Chaos& run) { KT_VDHDD_AddLink(run.adapter, run.vd(), run.freeDisk()); }},
    {2, On::Both, [](Chaos& run) { KT_LD_Report(run.adapter, run.vd()); }},
    {1, On::Both, [](Chaos& run) { KT_Flash_Erase(run.adapter, KT_PAGE_PD); }},
    {20, On::Both, tidyUp},
    {3, On::Both, [](Chaos& run) { KT_LD_Delete(run.adapter, run.vd(), run.byte(2)); }},
    {3, On::Both, [](Chaos& run) { KT_PD_WipeHDMDD(run.adapter, run.freeDisk(), run.rarely(3)); }},
    {6, On::Both, import},
    {6, On::Both, [](Chaos& run) { KT_PD_Spare2FreeHD(run.adapter, run.disk()); }},
    {12, On::Both, steer},
    {6, On::Both, [](Chaos& run) { KT_LD_StartINIT(run.adapter, run.vd(), run.byte(4)); }},
    {6, On::Both, [](Chaos& run) { KT_LD_StartConsistencyCheck(run.adapter, run.vd(), run.byte(2)); }},
    {8, On::Vds, [](Chaos& run) { KT_LD_StartRebuild(run.adapter, run.vd(), run.freeDisk()); }},
    {6, On::Both, [](Chaos& run) { KT_PD_StartMediaPatrol(run.adapter, run.disk()); }},
    {4, On::Both, [](Chaos& run) { KT_PD_FreeHD2GlobalSpare(run.adapter, run.freeDisk()); }},
    {12, On::Arrays, [](Chaos& run) { KT_PD_FreeHD2DGSpare(run.adapter, run.freeDisk(), run.array()); }},
    {6, On::Both, [](Chaos& run) { KT_PD_SetHDStatus(run.adapter, run.disk(), run.byte(3)); }},
};

void Chaos::doAnything() {
    adapter = byte(KT_Adapter_GetCount());
    const On other = adapterInfo(context()).MaxDiskGroup != 0 ? On::Vds : On::Arrays;
    int sum = 0;
    for (const Act& act : ACTS)
        sum += act.weight;
    for (;;) {
        int at = pick(static_cast<unsigned>(sum));
        const auto* act =
            std::find_if(std::begin(ACTS), std::end(ACTS), [&](const Act& a) { return (at -= a.weight) < 0; });
        if (act->on != other || rarely(15)) return act->done(*this);
    }
}
