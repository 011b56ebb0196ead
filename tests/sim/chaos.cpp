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
#include "lab/lab.h"
#include "media/wear.h"
#include "raid/damage.h"
#include "raid/members.h"
#include "state/simClock.h"

#include <algorithm>

using namespace sim;

static const KT_U8 LEVELS[] = {KT_RAID0,  KT_RAID1,  KT_RAID5, KT_RAID5,  KT_RAID6,           KT_RAID10, KT_RAID1E,
                               KT_RAID50, KT_RAID60, KT_JBOD,  KT_HYBRID, KT_TANDEM_CAPACITY, 0x77};
static const KT_U8 CONTROLS[] = {1, 2, 3, 3, 4, 7, 0, 9};
static const KT_U8 COUNTS[] = {2, 3, 3, 4, 4, 5, 6, 8};

static KT_U16 pick(Chaos& run, unsigned below) {
    return static_cast<KT_U16>(run.random() / 7 % below);
}
static KT_U8 byte(Chaos& run, unsigned below) {
    return static_cast<KT_U8>(pick(run, below));
}
template <size_t N>
static KT_U8 oneOf(Chaos& run, const KT_U8 (&values)[N]) {
    return values[pick(run, N)];
}
static bool rarely(Chaos& run, unsigned oneIn) {
    return pick(run, oneIn) == 0;
}
static KT_U16 anyDisk(Chaos& run) {
    return pick(run, 20);
}
static KT_U16 anyVd(Chaos& run) {
    return pick(run, 5);
}
static KT_U16 anyArray(Chaos& run) {
    return pick(run, 3);
}

static std::vector<KT_U16> freeDisks(Chaos& run) {
    std::vector<KT_U16> ids;
    forEach<PdState>(Context{*run.store, run.adapter, run.now}, 0, [&](KT_U64 id, const PdState& state) {
        if ((state.raid & KT_PD_NOT_FREE) == 0) ids.push_back(static_cast<KT_U16>(id));
        return true;
    });
    return ids;
}

// Free disks, with a mistake now and then.
static KT_U8 disks(Chaos& run, KT_U8 raid, KT_U16* ids) {
    const KT_U8 count = raid == KT_RAID1 ? KT_U8{2} : oneOf(run, COUNTS);
    const std::vector<KT_U16> unused = freeDisks(run);
    const KT_U16 from = pick(run, 4);
    for (KT_U16 i = 0; i < count; ++i) {
        const size_t at = size_t{from} + i;
        ids[i] = at < unused.size() && !rarely(run, 25) ? unused[at] : pick(run, 24);
    }
    return rarely(run, 40) ? KT_U8{200} : count;
}

// The members of a virtual disk or an array, and some free disks: what a migration asks for.
static KT_U8 withMembers(Chaos& run, OwnerKind kind, KT_U16 id, KT_U16* ids) {
    std::vector<KT_U16> all = groupOf(Context{*run.store, run.adapter, run.now}, Owner{kind, id}).members;
    for (const KT_U16 pd : freeDisks(run))
        if (all.size() < 100 && rarely(run, 3)) all.push_back(pd);
    std::copy(all.begin(), all.end(), ids);
    return static_cast<KT_U8>(all.size());
}

static KT_U8 parity(Chaos& run, KT_U8 raid) {
    const KT_U8 right = raid == KT_RAID60 ? 4 : raid == KT_RAID6 ? 2 : 0;
    return rarely(run, 10) ? byte(run, 256) : right;
}

static _Create_LD_Param ldParam(Chaos& run) {
    _Create_LD_Param param = {};
    param.RaidMode = oneOf(run, LEVELS);
    param.HDCount = disks(run, param.RaidMode, param.HDIDs);
    param.NumParityDisk = parity(run, param.RaidMode);
    param.StripeBlockSize = static_cast<KT_U16>(rarely(run, 12) ? pick(run, 100) : 16 << pick(run, 7));
    param.SectorCoefficient = 1;
    param.LDID = anyVd(run);
    param.Size = rarely(run, 3) ? 0 : KIB_PER_MB * pick(run, 3000);
    param.ReservedForApp = rarely(run, 10) ? 1 : 0;
    param.RoundingScheme = rarely(run, 8) ? byte(run, 4) : KT_U8{0};
    param.InitializationOption = rarely(run, 20) ? byte(run, 7) : KT_U8{KT_INIT_QUICK};
    return param;
}

static _CreateOrModify_DG_Param dgParam(Chaos& run, KT_U16 id) {
    _CreateOrModify_DG_Param param = {};
    param.RaidMode = oneOf(run, LEVELS);
    param.PDCount = disks(run, param.RaidMode, param.PDIDs);
    param.NumParityDisk = parity(run, param.RaidMode);
    param.StripeBlockSize = 64;
    param.BlockSize = rarely(run, 8) ? 4096 : 512;
    param.Size = rarely(run, 3) ? pick(run, 4000) : 0;
    param.DGID = id;
    return param;
}

static void createOnDisks(Chaos& run) {
    _Create_LD_Param param = ldParam(run);
    KT_LD_Create(run.adapter, &param);
}
static void migrate(Chaos& run) {
    _Create_LD_Param param = ldParam(run);
    param.HDCount = withMembers(run, OwnerKind::Vd, param.LDID, param.HDIDs);
    KT_LD_StartMigration(run.adapter, &param);
}
static void createArray(Chaos& run) {
    _CreateOrModify_DG_Param param = dgParam(run, KT_NO_ID);
    KT_CreateOrModify_DG(run.adapter, &param, rarely(run, 5));
}
static void migrateArray(Chaos& run) {
    _CreateOrModify_DG_Param param = dgParam(run, anyArray(run));
    param.PDCount = withMembers(run, OwnerKind::Array, param.DGID, param.PDIDs);
    KT_DG_StartMigration(run.adapter, &param, 0);
}

static void createInArray(Chaos& run) {
    _DG_Info_Request request = {};
    request.header = {0, KT_REQUEST_ITEM, anyArray(run), 1, 0, 0, {}};
    if (KT_DG_GetInfo(run.adapter, &request) != KT_OK) return;
    const _DG_Info& array = request.dgInfo[0];
    _CreateOrModify_VD_Param param = {};
    param.VDID = KT_NO_ID;
    param.DGID = array.DGID;
    param.RaidMode = array.RaidMode;
    param.NumParityDisk = array.NumParityDisk;
    param.StripeBlockSize = array.StripeBlockSize;
    param.BlockSize = array.BlockSize;
    param.DGSlotNum = rarely(run, 3) ? byte(run, 4) : KT_U8{255};
    param.Size = rarely(run, 4) ? 0 : pick(run, 1500);
    param.InitializationOption = rarely(run, 5) ? byte(run, 6) : KT_U8{KT_INIT_QUICK};
    KT_CreateOrModify_VD(run.adapter, &param);
}

static void rebuildArray(Chaos& run) {
    const KT_U16 pds[2] = {anyDisk(run), anyDisk(run)};
    KT_LD_DG_StartRebuild(run.adapter, anyArray(run), byte(run, 3), pds);
}

// Disks come from elsewhere with what is on them, or stay there when there is no room.
static void bringForeign(Chaos& run, const Context& context) {
    Store* elsewhere = openMemoryStore(fillFromLab, labNamed("default"));
    std::vector<KT_U16> ids;
    std::vector<KT_U16> disks;
    for (KT_U16 pd = pick(run, 4); pd < 10; pd = static_cast<KT_U16>(pd + 1 + pick(run, 3)))
        disks.push_back(pd);
    setMark(*run.store);
    if (insertForeignDisks(context, *elsewhere, byte(run, 2), disks, ids) != KT_OK) rollbackToMark(*run.store);
    closeStore(elsewhere);
}

static bool pullSomeCable(Chaos& run, Context& context) {
    const KT_U8 first = byte(run, 8);
    for (KT_U8 i = 0; i < 8; ++i)
        if (pullCable(context, (first + i) % 8) == KT_OK) return true;
    return false;
}

// A whole shelf, all behind a cable, or some disks at once.
static void pullTogether(Chaos& run, Context& context) {
    if (!rarely(run, 3) && pullEnclosure(context, 1) == KT_OK) {
        ++run.shelvesPulled;
    } else if (rarely(run, 2) && pullSomeCable(run, context)) {
        ++run.cablesPulled;
    } else {
        const KT_U16 pd = pick(run, 16);
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
    const Context context{*run.store, run.adapter, run.now};
    powerDown(*run.store, rarely(run, 2));
    ++run.boots;
    for (int i = pick(run, 4); i > 0; --i) {
        insertDisks(context, {pick(run, 18)});
        pullDisks(context, {pick(run, 18)});
    }
    if (rarely(run, 4)) failDisk(context, pick(run, 18));
    if (rarely(run, 5)) removeBattery(context);
    if (rarely(run, 3)) insertBattery(context);
    if (rarely(run, 4)) pullEnclosure(context, 1);
    if (rarely(run, 2)) insertEnclosure(context, 1);
    if (rarely(run, 3)) insertDisks(context, {pick(run, 18)});
    run.now += rarely(run, 2) ? pick(run, 3000) : 0;
    setClock(*run.store, run.now, 1000, true);
    checkAfterCall("while it is off", context);
    powerUp(*run.store);
    checkAfterCall("after the boot", context);
}

// What no client of the library does: disks and time.
static void happen(Chaos& run) {
    beginTransaction(*run.store, Access::Write);
    Context context{*run.store, run.adapter, run.now};
    settle(context);
    const KT_U16 pd = pick(run, 18);
    const auto state = find<PdState>(context, pd);
    const KT_U16 what = pick(run, 30);
    if (what == 0) {
        failDisk(context, pd);
    } else if (what == 1) {
        pullDisks(context, {pd});
        if (rarely(run, 3)) renumberDisks(context);
    } else if (what == 2) {
        tripSmart(context, pd, pick(run, 2) != 0);
    } else if (what < 6) {
        insertDisks(context,
                    {rarely(run, 4) ? static_cast<KT_U16>(0xF000 + pick(run, 3)) : pd}); // its id was forgotten
    } else if (what < 8) {
        addBadSectors(context, pd, BadSector{pick(run, 2) ? FLAW_WRONG : FLAW_UNREADABLE, 0, {}}, pick(run, 300));
        applyRates(context);
    } else if (what == 8 && rarely(run, 4)) {
        bringForeign(run, context);
    } else if (what < 10) {
        pullTogether(run, context);
    } else if (what == 12) {
        powerCycle(run);
    } else if (what < 12) {
        // What was pulled comes back before long.
        insertEnclosure(context, 1);
        insertCable(context, byte(run, 8));
    } else if (!state || state->health == PD_FAILED) {
        // Broken and missing disks are seen to, or there would soon be none.
        const bool small = rarely(run, 6);
        replaceDisk(context, pd, [&](_HD_Info& disk) { disk.Size = small ? 2000000 : disk.Size; });
    }
    run.now += pick(run, 3000);
    setClock(*run.store, run.now, 1000, true);
    commitTransaction(*run.store);
}

static const struct {
    int weight;
    void (*act)(Chaos& run);
} ACTS[] = {
    {70, happen},
    {20, createOnDisks},
    {20, createArray},
    {20, createInArray},
    {10, migrate},
    {10, migrateArray},
    {6, rebuildArray},
    {1, [](Chaos& run) { KT_LD_DG_QuickCreate(run.adapter, byte(run, 3)); }},
    {1, [](Chaos& run) { KT_LD_PauseAll(run.adapter); }},
    {1, [](Chaos& run) { KT_Flash_Erase(run.adapter, KT_PAGE_PD); }},
    {4, [](Chaos& run) { KT_LD_Delete(run.adapter, anyVd(run), byte(run, 2)); }},
    {4, [](Chaos& run) { KT_DG_Delete(run.adapter, anyArray(run)); }},
    {2, [](Chaos& run) { KT_PD_WipeHDMDD(run.adapter, anyDisk(run), rarely(run, 3)); }},
    {4, [](Chaos& run) { KT_LD_Import(run.adapter, anyVd(run)); }},
    {20, [](Chaos& run) { KT_PD_Spare2FreeHD(run.adapter, anyDisk(run)); }},
    {6, [](Chaos& run) { KT_LD_BGAControl(run.adapter, anyVd(run), oneOf(run, CONTROLS)); }},
    {6, [](Chaos& run) { KT_DG_BGAControl(run.adapter, anyArray(run), oneOf(run, CONTROLS)); }},
    {6, [](Chaos& run) { KT_PD_BGAControl(run.adapter, anyDisk(run), oneOf(run, CONTROLS)); }},
    {6, [](Chaos& run) { KT_LD_StartINIT(run.adapter, anyVd(run), byte(run, 4)); }},
    {6, [](Chaos& run) { KT_LD_StartConsistencyCheck(run.adapter, anyVd(run), byte(run, 3)); }},
    {6, [](Chaos& run) { KT_LD_StartRebuild(run.adapter, anyVd(run), anyDisk(run)); }},
    {6, [](Chaos& run) { KT_PD_StartMediaPatrol(run.adapter, anyDisk(run)); }},
    {6, [](Chaos& run) { KT_PD_FreeHD2GlobalSpare(run.adapter, anyDisk(run)); }},
    {12, [](Chaos& run) { KT_PD_FreeHD2DGSpare(run.adapter, anyDisk(run), anyArray(run)); }},
    {6, [](Chaos& run) { KT_PD_SetHDStatus(run.adapter, anyDisk(run), byte(run, 3)); }},
};

void doAnything(Chaos& run) {
    run.adapter = byte(run, KT_Adapter_GetCount());
    int sum = 0;
    for (const auto& [weight, act] : ACTS)
        sum += weight;
    int at = pick(run, static_cast<unsigned>(sum));
    for (const auto& [weight, act] : ACTS)
        if ((at -= weight) < 0) return act(run);
}
