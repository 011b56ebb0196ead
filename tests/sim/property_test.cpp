/* Thousands of calls, right and wrong, with disks failing and time passing in between: what holds always must hold. */
#include "adapter/health.h"
#include "adapter/members.h"
#include "adapter/settle.h"
#include "adapter/surface.h"
#include "clock.h"
#include "invariants.h"
#include "lab.h"
#include "process.h"

#include <gtest/gtest.h>
#include <random>

using namespace sim;

static const char LAB[] = R"({"adapters": [
  {"type": "array-based", "battery": true, "disks": [
     {"count": 14, "type": "SAS", "size": "2GB"}, {"count": 2, "type": "SAS", "size": "1GB"},
     {"count": 2, "type": "SAS", "size": "2GB", "sector": 4096}]},
  {"type": "LD-based", "disks": [
     {"count": 10, "type": "SATA", "size": "2GB"}, {"count": 2, "type": "SATA SSD", "size": "1GB"},
     {"count": 2, "type": "SATA", "size": "3GB", "spare": "global"}]},
  {"type": "LD-based", "DevID": 17920, "disks": [
     {"count": 8, "type": "SATA", "size": "2GB"}, {"count": 2, "type": "SATA", "size": "2GB", "sector": 4096}]}]})";
static const KT_U8 LEVELS[] = {KT_RAID0,  KT_RAID1,  KT_RAID5, KT_RAID5,  KT_RAID6,           KT_RAID10, KT_RAID1E,
                               KT_RAID50, KT_RAID60, KT_JBOD,  KT_HYBRID, KT_TANDEM_CAPACITY, 0x77};
static const KT_U8 CONTROLS[] = {1, 2, 3, 3, 4, 7, 0, 9};

struct Chaos {
    std::minstd_rand random;
    Store* store;
    KT_U8 adapter;
    KT_U64 now;
};

static KT_U16 pick(Chaos& run, unsigned below) {
    return static_cast<KT_U16>(run.random() / 7 % below);
}

static KT_U8 level(Chaos& run) {
    return LEVELS[pick(run, std::size(LEVELS))];
}

static std::vector<KT_U16> freeDisks(Chaos& run) {
    std::vector<KT_U16> ids;
    const Context context{*run.store, run.adapter, run.now};
    forEach<PdState>(context, 0, [&](KT_U64 id, const PdState& state) {
        if ((state.raid & KT_PD_NOT_FREE) == 0) ids.push_back(static_cast<KT_U16>(id));
        return true;
    });
    return ids;
}

/* Free disks, with a mistake now and then. */
static KT_U8 disks(Chaos& run, KT_U8 raid, KT_U16* ids) {
    static const KT_U8 counts[] = {2, 3, 3, 4, 4, 5, 6, 8};
    const KT_U8 count = raid == KT_RAID1 ? KT_U8{2} : counts[pick(run, std::size(counts))];
    const std::vector<KT_U16> unused = freeDisks(run);
    const KT_U16 from = pick(run, 4);
    for (KT_U16 i = 0; i < count; i++) {
        const size_t at = size_t{from} + i;
        ids[i] = at < unused.size() && pick(run, 25) != 0 ? unused[at] : pick(run, 24);
    }
    return pick(run, 40) == 0 ? KT_U8{200} : count;
}

static KT_U16 anyVd(Chaos& run) {
    return pick(run, 5);
}
static KT_U16 anyArray(Chaos& run) {
    return pick(run, 3);
}

/* The members of a virtual disk or an array, and two free disks: what a migration asks for. */
static KT_U8 withMembers(Chaos& run, Kind kind, KT_U16 id, KT_U16* ids) {
    const Context context{*run.store, run.adapter, run.now};
    std::vector<KT_U16> all = groupOf(context, Owner{kind == KIND_VD ? OwnerKind::Vd : OwnerKind::Array, id}).members;
    for (const KT_U16 pd : freeDisks(run))
        if (all.size() < 100 && pick(run, 3) == 0) all.push_back(pd);
    std::copy(all.begin(), all.end(), ids);
    return static_cast<KT_U8>(all.size());
}

static KT_U8 parity(Chaos& run, KT_U8 raid) {
    const KT_U8 right = raid == KT_RAID60 ? 4 : raid == KT_RAID6 ? 2 : 0;
    return pick(run, 10) == 0 ? static_cast<KT_U8>(pick(run, 256)) : right;
}

static _Create_LD_Param ldParam(Chaos& run) {
    _Create_LD_Param param = {};
    param.RaidMode = level(run);
    param.HDCount = disks(run, param.RaidMode, param.HDIDs);
    param.NumParityDisk = parity(run, param.RaidMode);
    param.StripeBlockSize = static_cast<KT_U16>(pick(run, 12) ? 16 << pick(run, 7) : pick(run, 100));
    param.SectorCoefficient = 1;
    param.LDID = anyVd(run);
    param.Size = pick(run, 3) ? KIB_PER_MB * pick(run, 3000) : 0;
    param.ReservedForApp = pick(run, 10) == 0 ? 1 : 0;
    param.RoundingScheme = pick(run, 8) == 0 ? static_cast<KT_U8>(pick(run, 4)) : KT_U8{0};
    param.InitializationOption = pick(run, 20) == 0 ? static_cast<KT_U8>(pick(run, 7)) : KT_U8{KT_INIT_QUICK};
    return param;
}

static _CreateOrModify_DG_Param dgParam(Chaos& run) {
    _CreateOrModify_DG_Param param = {};
    param.RaidMode = level(run);
    param.PDCount = disks(run, param.RaidMode, param.PDIDs);
    param.NumParityDisk = parity(run, param.RaidMode);
    param.StripeBlockSize = 64;
    param.BlockSize = pick(run, 8) ? 512 : 4096;
    param.Size = pick(run, 3) ? 0 : pick(run, 4000);
    param.DGID = anyArray(run);
    return param;
}

static void createInArray(Chaos& run) {
    _DG_Info_Request request = {};
    request.header.requestType = KT_REQUEST_ITEM;
    request.header.startingIndexOrId = anyArray(run);
    request.header.numRequested = 1;
    if (KT_DG_GetInfo(run.adapter, &request) != KT_OK) return;
    const _DG_Info& array = request.dgInfo[0];
    _CreateOrModify_VD_Param param = {};
    param.VDID = KT_NO_ID;
    param.DGID = array.DGID;
    param.RaidMode = array.RaidMode;
    param.NumParityDisk = array.NumParityDisk;
    param.StripeBlockSize = array.StripeBlockSize;
    param.BlockSize = array.BlockSize;
    param.DGSlotNum = pick(run, 3) ? 255 : static_cast<KT_U8>(pick(run, 4));
    param.Size = pick(run, 4) ? pick(run, 1500) : 0;
    param.InitializationOption = pick(run, 5) == 0 ? static_cast<KT_U8>(pick(run, 6)) : KT_U8{KT_INIT_QUICK};
    KT_CreateOrModify_VD(run.adapter, &param);
}

static void build(Chaos& run) {
    _Create_LD_Param ld = ldParam(run);
    _CreateOrModify_DG_Param dg = dgParam(run);
    switch (pick(run, 9)) {
    case 0:
    case 1:
        KT_LD_Create(run.adapter, &ld);
        break;
    case 2:
    case 3:
        dg.DGID = KT_NO_ID;
        KT_CreateOrModify_DG(run.adapter, &dg, pick(run, 5) == 0);
        break;
    case 4:
        ld.HDCount = withMembers(run, KIND_VD, ld.LDID, ld.HDIDs);
        KT_LD_StartMigration(run.adapter, &ld);
        break;
    case 5:
        dg.PDCount = withMembers(run, KIND_DG, dg.DGID, dg.PDIDs);
        KT_DG_StartMigration(run.adapter, &dg, 0);
        break;
    case 6:
        if (pick(run, 15) == 0) KT_LD_DG_QuickCreate(run.adapter, static_cast<KT_U8>(pick(run, 3)));
        break;
    default:
        createInArray(run);
        break;
    }
}

static void takeApart(Chaos& run) {
    switch (pick(run, 5)) {
    case 0:
        KT_LD_Delete(run.adapter, anyVd(run), static_cast<KT_U8>(pick(run, 2)));
        break;
    case 1:
        KT_DG_Delete(run.adapter, anyArray(run));
        break;
    case 2:
        KT_PD_WipeHDMDD(run.adapter, pick(run, 20), pick(run, 3) == 0);
        break;
    default:
        KT_PD_Spare2FreeHD(run.adapter, pick(run, 20));
        break;
    }
}

static void steer(Chaos& run) {
    const KT_U8 control = CONTROLS[pick(run, std::size(CONTROLS))];
    const KT_U16 pds[2] = {pick(run, 20), pick(run, 20)};
    switch (pick(run, 12)) {
    case 0:
        KT_LD_BGAControl(run.adapter, anyVd(run), control);
        break;
    case 1:
        KT_DG_BGAControl(run.adapter, anyArray(run), control);
        break;
    case 2:
        KT_PD_BGAControl(run.adapter, pick(run, 20), control);
        break;
    case 3:
        KT_LD_StartINIT(run.adapter, anyVd(run), static_cast<KT_U8>(pick(run, 4)));
        break;
    case 4:
        KT_LD_StartConsistencyCheck(run.adapter, anyVd(run), static_cast<KT_U8>(pick(run, 3)));
        break;
    case 5:
        KT_LD_StartRebuild(run.adapter, anyVd(run), pds[0]);
        break;
    case 6:
        KT_LD_DG_StartRebuild(run.adapter, anyArray(run), static_cast<KT_U8>(pick(run, 3)), pds);
        break;
    case 7:
        KT_PD_StartMediaPatrol(run.adapter, pds[0]);
        break;
    case 8:
        KT_PD_FreeHD2GlobalSpare(run.adapter, pds[0]);
        break;
    case 9:
        KT_PD_FreeHD2DGSpare(run.adapter, pds[0], anyArray(run));
        break;
    case 10:
        KT_PD_SetHDStatus(run.adapter, pds[0], static_cast<KT_U8>(pick(run, 3)));
        break;
    default:
        if (pick(run, 10) == 0) KT_LD_PauseAll(run.adapter);
        break;
    }
}

/* What no client of the library does: disks and time. */
static void happen(Chaos& run) {
    beginTransaction(*run.store, Access::Write);
    Context context{*run.store, run.adapter, run.now};
    settle(context);
    const KT_U16 pd = pick(run, 18);
    const auto state = find<PdState>(context, pd);
    switch (pick(run, 30)) {
    case 0:
        failDisk(context, pd);
        break;
    case 1:
        pullDisk(context, pd);
        break;
    case 2:
        tripSmart(context, pd, pick(run, 2) != 0);
        break;
    case 3:
    case 4:
    case 5:
        insertDisk(context, pd);
        break;
    case 6:
    case 7:
        addBadSectors(context, pd, BadSector{pick(run, 2) ? FLAW_WRONG : FLAW_UNREADABLE, 0, {}}, pick(run, 300));
        applyRates(context);
        break;
    default:
        /* Broken and missing disks are seen to, or there would soon be none. */
        if (!state || state->health == PD_FAILED) replaceDisk(context, pd, pick(run, 6) ? 0 : 2000000);
        break;
    }
    run.now += pick(run, 3000);
    setClock(*run.store, run.now, 1000, true);
    commitTransaction(*run.store);
}

static void doAnything(Chaos& run) {
    run.adapter = static_cast<KT_U8>(pick(run, 3));
    const unsigned what = pick(run, 24);
    if (what < 9)
        build(run);
    else if (what < 10)
        takeApart(run);
    else if (what < 17)
        steer(run);
    else
        happen(run);
}

struct Property : testing::TestWithParam<unsigned> {
    ScratchFolder folder;
    std::string path = folder.path + "/state.db";
    void SetUp() override {
        const BuiltInLab lab = {"lab", LAB};
        closeStore(openStore(path, fillFromLab, &lab));
        setenv("KTRAID_SIM", path.c_str(), 1);
        ASSERT_EQ(KT_API_Initialize(), KT_OK);
    }
    void TearDown() override { KT_API_Finalize(); }
};

TEST_P(Property, WhatHoldsAlwaysHolds) {
    Chaos run{std::minstd_rand(GetParam() + 1), openExistingStore(path), 0, 1800000000000};
    beginTransaction(*run.store, Access::Write);
    setClock(*run.store, run.now, 1000, true);
    commitTransaction(*run.store);
    for (int step = 0; step < 600; step++) {
        doAnything(run);
        const std::vector<std::string> wrong = findRaidViolations(*run.store);
        ASSERT_EQ(wrong, std::vector<std::string>()) << "step " << step;
    }
    closeStore(run.store);
}

INSTANTIATE_TEST_SUITE_P(Seeds, Property, testing::Range(0U, 6U));
