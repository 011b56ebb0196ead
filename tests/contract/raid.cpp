#include "frame.h"

// Disks 0 to 7 are alike, 8 is half as large, 9 has other sectors, 10 carries the system; adapters 1 and 2 have no
// arrays, 2 lets virtual disks share disks.
static const char RAID_LAB[] = R"({"adapters": [
  {"type": "array-based", "enclosures": [{}], "disks": [
     {"count": 8, "type": "SAS", "size": "100GB"}, {"type": "SAS", "size": "50GB"},
     {"type": "SAS", "size": "100GB", "sector": 4096}, {"type": "SAS", "size": "100GB", "os": true}]},
  {"type": "LD-based", "disks": [
     {"count": 6, "type": "SATA", "size": "100GB"}, {"type": "SATA", "size": "50GB"},
     {"count": 2, "type": "SATA SSD", "size": "50GB"}]},
  {"type": "LD-based", "DevID": 17920, "MaxParityDisks": 0, "disks": [{"count": 4, "type": "SATA", "size": "100GB"}]}]})";
static const KT_U8 ARRAYS = 0, PLAIN = 1, OLD = 2;
static const KT_U64 MB = 1024;

struct Raid : LabTest<RAID_LAB> {
    static KT_U8 fail(KT_U16 pd, KT_U8 adapter = ARRAYS) { return failDisk(adapter, pd); }
    static KT_U8 pull(KT_U16 pd, KT_U8 adapter = ARRAYS) { return pullDisk(adapter, pd); }
    static KT_U8 insert(KT_U16 pd, KT_U8 adapter = ARRAYS) { return insertDisk(adapter, pd); }
    static KT_U8 replace(KT_U16 pd) { return replaceDisk(ARRAYS, pd); }
    static KT_U8 deleteVd(KT_U16 vd) { return KT_LD_Delete(ARRAYS, vd, 0); }
    static KT_U8 control(KT_U8 what) { return KT_DG_BGAControl(ARRAYS, 0, what); }
    static KT_U8 controlLd(KT_U8 what) { return KT_LD_BGAControl(PLAIN, 0, what); }
    static KT_U8 rebuild(KT_U16 pd) { return KT_LD_StartRebuild(PLAIN, 0, pd); }
    static KT_U8 rebuildDg(const Ids& disks) {
        return KT_LD_DG_StartRebuild(ARRAYS, 0, static_cast<KT_U8>(disks.size()), disks.data());
    }
};

static KT_U8 createLd(KT_U8 level, const Ids& disks, KT_U64 size = 0, KT_U8 adapter = PLAIN) {
    _Create_LD_Param param = ldParam(level, disks, size);
    return KT_LD_Create(adapter, &param);
}

// The same with one thing in its record set.
template <class Field>
static KT_U8 createWith(_Create_LD_Param param, Field _Create_LD_Param::*field, Field value, KT_U8 adapter = PLAIN) {
    param.*field = value;
    return KT_LD_Create(adapter, &param);
}

static KT_U8 createDg(KT_U8 level, const Ids& disks) {
    _CreateOrModify_DG_Param param = dgParam(level, disks);
    return KT_CreateOrModify_DG(ARRAYS, &param, 0);
}

static _CreateOrModify_VD_Param vdParam(KT_U8 level, KT_U64 megabytes = 0, KT_U8 slot = 255) {
    _CreateOrModify_VD_Param param = {};
    param.VDID = KT_NO_ID;
    param.RaidMode = level;
    param.NumParityDisk = level == KT_RAID6 ? 2 : 0;
    param.StripeBlockSize = 64;
    param.BlockSize = 512;
    param.Size = megabytes;
    param.DGSlotNum = slot;
    param.InitializationOption = KT_INIT_NONE;
    return param;
}

static KT_U8 createVd(KT_U8 level, KT_U64 megabytes = 0, KT_U8 slot = 255) {
    _CreateOrModify_VD_Param param = vdParam(level, megabytes, slot);
    return KT_CreateOrModify_VD(ARRAYS, &param);
}

// An array with virtual disks of these sizes in megabytes, all of them initialised.
static void makeArray(KT_U8 level, const Ids& disks, const std::vector<KT_U64>& sizes, KT_U16 id = 0) {
    succeed({createDg(level, disks)});
    for (const KT_U64 size : sizes) {
        _CreateOrModify_VD_Param param = vdParam(level, size);
        param.DGID = id;
        param.InitializationOption = KT_INIT_QUICK;
        succeed({KT_CreateOrModify_VD(ARRAYS, &param)});
    }
    advance(60);
}

// The slots of array 0 after calls that go well, "virtual disk:megabytes" ("-": free), and how many megabytes are free
// in all.
static std::string slots(std::initializer_list<KT_U8> calls) {
    succeed(calls);
    const _DG_Info array = dgInfo(ARRAYS, 0);
    std::string seen;
    for (int i = 0; i < array.VDSlotCount; ++i) {
        const KT_U16 vd = array.VDIDs[i];
        seen += (vd == KT_NO_ID ? "-" : std::to_string(vd)) + ":" + std::to_string(array.VDSlotSize[i] / MB) + " ";
    }
    return seen + std::to_string(array.RemainingManagedSpace / MB);
}

TEST_F(Raid, SizesAreMegabytesFromPeopleAndKibFromFiles) {
    succeed({createLd(KT_RAID1, {0, 1}, 3000 * MB)});
    EXPECT_EQ(createLd(KT_RAID1, {1, 2}, 3000 * MB), KT_ERR_PD_ASSIGNED) << "no second one on a disk";
    for (const KT_U16 pd : Ids{1, 5}) {
        _HD_Block_Info blocks = {};
        succeed({KT_BLK_GetHDBlock(PLAIN, pd, &blocks)});
        EXPECT_EQ((Ints{blocks.HDID, blocks.BlkCount}), (Ints{pd, pd == 1 ? 1 : 0}));
    }
    succeed({createWith(ldParam(KT_RAID1, {2, 3}, 3000), &_Create_LD_Param::ReservedForApp, KT_U8{1})});
    _Create_LD_Param param = ldParam(KT_HYBRID, {7, 2}, 3000);
    param.TandemWaterMark = 90;
    EXPECT_EQ(LOG_OF(PLAIN, KT_LD_Create(PLAIN, &param)), "1/2:2(0,0,0,1) 1/40:2(0,0,0,1)") << "beside another one";
    for (const KT_U16 vd : Ids{0, 1, 2})
        EXPECT_EQ(vdInfo(PLAIN, vd).Size, 3000 * MB);
    EXPECT_NE(memcmp(vdInfo(PLAIN, 0).LD_GUID, vdInfo(PLAIN, 1).LD_GUID, 8), 0);
    // On the old ones a person asks for megabytes, a file for what it restores, and for no rounding.
    succeed({createLd(KT_RAID1, {0, 1}, 4096, OLD), createLd(KT_RAID1, {0, 1}, 4096 * MB, OLD)});
    EXPECT_EQ(createLd(KT_RAID1, {0, 1}, 4000 * MB, OLD), KT_ERR_NO_RESOURCE);
    for (const KT_U16 vd : Ids{0, 1})
        EXPECT_EQ(vdInfo(OLD, vd).Size, 4096 * MB);
    _HD_FreeSpaceInfo rest = {};
    param = ldParam(KT_RAID1, {0, 1});
    succeed({KT_PD_GetFreeSpaceInfo(OLD, 0, &rest), KT_LD_GetMaxSize(OLD, &param)});
    EXPECT_EQ(param.Size, rest.FreeSize / 64 * 64) << "what is left behind the two";
    param = ldParam(KT_RAID0, {2, 3});
    param.RoundingScheme = KT_ROUND_10GB;
    succeed({KT_PD_GetFreeSpaceInfo(OLD, 2, &rest), KT_LD_GetMaxSize(OLD, &param)});
    EXPECT_EQ(param.Size, 2 * rest.FreeSize / (10000 * MB) * 10000 * MB);
    EXPECT_EQ(rest.HDID, 2);
}

TEST_F(Raid, AnAdapterThatNamesNoStripesTakesTheUsualOnes) {
    for (const auto& [features, largest] : {std::pair{0, 128}, {KT_ADV_BIG_STRIPE, 1024}}) {
        start(R"({"adapters": [{"type": "LD-based", "StripeSizeSupported": 0, "AdvancedFeatures": )" +
              std::to_string(features) + R"(, "disks": [{"count": 4}]}]})");
        const auto createStriped = [](int kib, const Ids& disks) {
            _Create_LD_Param param = ldParam(KT_RAID0, disks, 1024);
            param.StripeBlockSize = static_cast<KT_U16>(kib);
            return KT_LD_Create(0, &param);
        };
        answer(KT_ERR_BLOCK_SIZE, {createStriped(8, {0, 1}), createStriped(2 * largest, {0, 1})});
        succeed({createStriped(16, {0, 1}), createStriped(largest, {2, 3})});
    }
}

TEST_F(Raid, CreationSaysWhatIsWrong) {
    EXPECT_EQ(createLd(0x77, {0, 1}), KT_ERR_INVALID_RAID_MODE);
    answer(KT_ERR_PD_COUNT_FOR_LEVEL, {createLd(KT_RAID5, {0, 1}), createLd(KT_RAID10, {0, 1, 2, 3, 4}),
                                       createLd(KT_HYBRID, {7, 8}), createDg(KT_RAID6, {0, 1, 2})});
    answer(KT_ERR_PD_COUNT, {createLd(KT_RAID0, {}), createLd(KT_RAID0, {1, 1})});
    EXPECT_EQ(createLd(KT_RAID0, {0, 77}), KT_ERR_PD_MISSING);
    EXPECT_EQ(createLd(KT_RAID0, {0, 10}), KT_ERR_OTHER_ADAPTER);
    EXPECT_EQ(createLd(KT_RAID0, {0, 1}, KT_U64{1} << 40), KT_ERR_NO_RESOURCE);
    EXPECT_EQ(createLd(KT_HYBRID, {0, 1}), KT_ERR_TANDEM_SSD_COUNT);
    _Create_LD_Param param = ldParam(KT_RAID6, {0, 1, 2, 3});
    const auto parity = &_Create_LD_Param::NumParityDisk; // two, where no limit is told
    answer(KT_ERR_PARITY_COUNT, {createWith(param, parity, KT_U8{4}), createWith(param, parity, KT_U8{3}, OLD)});
    EXPECT_EQ(createWith(param, &_Create_LD_Param::StripeBlockSize, KT_U16{48}), KT_ERR_BLOCK_SIZE);
    param.Name[0] = 7;
    EXPECT_EQ(KT_LD_Create(PLAIN, &param), KT_ERR_VD_NAME);
    EXPECT_EQ(createDg(KT_RAID1, {0, 9}), KT_ERR_PD_SECTORS_DIFFER);
    EXPECT_EQ(createDg(KT_RAID1, {0, 10}), KT_ERR_PD_HAS_OS);
    succeed({KT_PD_FreeHD2GlobalSpare(ARRAYS, 0), createDg(KT_RAID1, {1, 2})});
    EXPECT_EQ(createDg(KT_RAID1, {0, 3}), KT_ERR_IS_SPARE);
    EXPECT_EQ(createDg(KT_RAID1, {2, 3}), KT_ERR_PD_ASSIGNED);
    _CreateOrModify_VD_Param vd = vdParam(KT_RAID1);
    vd.StripeBlockSize = 128;
    EXPECT_EQ(KT_CreateOrModify_VD(ARRAYS, &vd), KT_ERR_STRIPE_MISMATCH);
    vd = vdParam(KT_RAID1);
    vd.BlockSize = 4096;
    EXPECT_EQ(KT_CreateOrModify_VD(ARRAYS, &vd), KT_ERR_BLOCK_SIZE);
    vd.BlockSize = 512;
    vd.Name[0] = 7;
    EXPECT_EQ(KT_CreateOrModify_VD(ARRAYS, &vd), KT_ERR_VD_NAME);
    EXPECT_TRUE(newEvents(PLAIN).empty());
}

TEST_F(Raid, ArraysDivideTheirSpaceIntoSlots) {
    _CreateOrModify_DG_Param asked = dgParam(KT_RAID5, {0, 1, 2});
    succeed({KT_CreateOrModify_DG(ARRAYS, &asked, 1)});
    EXPECT_EQ(readList(KT_DG_GetInfo, ARRAYS, &_DG_Info_Request::dgInfo).size(), 0U);
    EXPECT_EQ(slots({createDg(KT_RAID5, {0, 1, 2})}), "-:190664 190664");
    EXPECT_EQ(dgInfo(ARRAYS, 0).TotalManagedSpace, asked.Size);
    _CreateOrModify_DG_Param most = dgParam(KT_RAID5, {3, 4, 5}, KT_U64{1} << 40);
    EXPECT_EQ(KT_CreateOrModify_DG(ARRAYS, &most, 0), KT_ERR_NO_RESOURCE);
    EXPECT_EQ(most.Size, asked.Size) << "that is all there is";
    succeed({createVd(KT_RAID5, 1000), createVd(KT_RAID5, 1000), createVd(KT_RAID5, 1000), deleteVd(1)});
    EXPECT_EQ(createVd(KT_RAID5, 2000, 1), KT_ERR_NO_RESOURCE);
    EXPECT_EQ(createVd(KT_RAID5, 600, 4), KT_ERR_OUT_OF_RANGE);
    _CreateOrModify_VD_Param asFirst = vdParam(KT_RAID5, 600, 1);
    asFirst.SectorCoefficient = 4;
    memcpy(asFirst.Name, "Named", 6);
    EXPECT_EQ(slots({KT_CreateOrModify_VD(ARRAYS, &asFirst)}), "0:1000 1:600 -:400 2:1000 -:187664 188064");
    EXPECT_EQ(vdInfo(ARRAYS, 1).SectorCoefficient, 4);
    EXPECT_EQ(textOf(vdInfo(ARRAYS, 1).Name), "Named");
    EXPECT_EQ(slots({deleteVd(0), deleteVd(1), deleteVd(2)}), "-:190664 190664");
    succeed({createVd(KT_RAID5, 2000), createVd(KT_RAID5, 1000), createVd(KT_RAID5, 500), createVd(KT_RAID5)});
    EXPECT_EQ(slots({deleteVd(0), deleteVd(2), createVd(KT_RAID5)}), "0:2000 1:1000 -:500 3:187164 500")
        << "all of the largest slot";
    EXPECT_EQ(slots({createVd(KT_RAID5, 500), deleteVd(1), deleteVd(3), createVd(KT_RAID5, 400)}),
              "0:2000 1:400 -:600 2:500 -:187164 187764")
        << "the first slot that is large enough";
    EXPECT_EQ(KT_DG_Delete(ARRAYS, 0), KT_ERR_ARRAY_HAS_VD);
    succeed({deleteVd(0), deleteVd(1), deleteVd(2)});
    EXPECT_EQ(LOG_OF(ARRAYS, KT_DG_Delete(ARRAYS, 0)), "13/1:0 2/54:0 2/54:1 2/54:2");
    EXPECT_EQ(roleOf(ARRAYS, 1), 0);
    EXPECT_EQ(show().find("\"rows\""), std::string::npos) << "nothing of them is remembered";
}

TEST_F(Raid, ASpareStandsInUntilTheDiskIsReplaced) {
    makeArray(KT_RAID5, {0, 1, 2}, {10000});
    EXPECT_EQ(KT_PD_FreeHD2DGSpare(ARRAYS, 8, 0), KT_ERR_SPARE_TOO_SMALL);
    EXPECT_EQ(KT_PD_FreeHD2GlobalSpare(ARRAYS, 8), KT_ERR_SPARE_TOO_SMALL) << "for every array";
    succeed({KT_PD_FreeHD2DGSpare(ARRAYS, 5, 0)});
    EXPECT_EQ(KT_PD_FreeHD2GlobalSpare(ARRAYS, 5), KT_ERR_ALREADY_ARRAY_SPARE);
    EXPECT_EQ(LOG_OF(ARRAYS, fail(1)), "2/4:1 2/2:1 1/4:0 2/59:5(5) 1/70:0");
    EXPECT_EQ(look(ARRAYS, 0), "degraded 0 5 2, 1/1 0");
    EXPECT_EQ(roleOf(ARRAYS, 5), KT_PD_MEMBER | KT_PD_SPARE_IN_USE | KT_PD_DEDICATED_SPARE);
    EXPECT_EQ(KT_PD_Spare2FreeHD(ARRAYS, 5), KT_ERR_SPARE_IN_USE);
    EXPECT_EQ(look(ARRAYS, 0, {advance(HOUR)}), "online 0 5 2");
    EXPECT_EQ(LOG_OF(ARRAYS, replace(1)), "2/0:1 2/1:1 1/90:0");
    EXPECT_EQ(pdConfig(ARRAYS, 1).Online, 1);
    EXPECT_EQ(look(ARRAYS, 0, {fail(0)}), "degraded 0 5 2, 128/1 0") << "it does not read that one";
    EXPECT_EQ(look(ARRAYS, 0, {replace(0), advance(HOUR)}), "online 0 1 2");
    EXPECT_EQ(roleOf(ARRAYS, 5), KT_PD_DEDICATED_SPARE);
    succeed({KT_PD_Spare2FreeHD(ARRAYS, 5)});
    EXPECT_EQ(dgInfo(ARRAYS, 0).SparePDCount, 0);
    succeed({createVd(KT_RAID5, 30000), pull(2), insert(2), advance(25)});
    EXPECT_EQ(LOG_OF(ARRAYS, KT_LD_Delete(ARRAYS, 1, 1)), "1/74:1 1/3:1");
    EXPECT_EQ(look(ARRAYS, 0), "degraded 0 1 2, 1/1 10");
    EXPECT_EQ(look(ARRAYS, 0, {advance(57)}), "online 0 1 2") << "only 5000 MB are left to fill";
    EXPECT_EQ(LOG_OF(ARRAYS, replaceDisk(ARRAYS, 1, 2000000)), "2/0:1 1/4:0 2/1:1 12/20:1");
    EXPECT_EQ(LOG_OF(ARRAYS, pull(6)), "2/0:6") << "a disk of no array's says nothing again";
    succeed({KT_PD_FreeHD2GlobalSpare(ARRAYS, 5)});
    EXPECT_EQ(LOG_OF(ARRAYS, pull(0)), "2/0:0 1/0:0 1/77:0 2/59:5");
    EXPECT_EQ(look(ARRAYS, 0, {insert(0)}), "degraded 0 5 2, 1/1 0") << "nothing was written since";
}

// What it had filled is of no use to what begins now; its disk is free for the next one.
TEST_F(Raid, AStoppedCopyBackGivesWay) {
    makeArray(KT_RAID5, {0, 1, 2}, {10000});
    succeed({KT_PD_FreeHD2DGSpare(ARRAYS, 5, 0), fail(1), advance(HOUR), replace(1)});
    for (const bool migrates : {false, true}) {
        EXPECT_EQ(look(ARRAYS, 0), migrates ? "online 0 5 4, 128/1 0" : "online 0 5 2, 128/1 0");
        succeed({control(KT_CONTROL_STOP)});
        EXPECT_EQ(roleOf(ARRAYS, 1), KT_PD_MEMBER);
        succeed({migrates ? migrateDg(ARRAYS, 0, KT_RAID6, {0, 5, 4, 3}) : fail(2)});
        if (!migrates) succeed({rebuildDg({4})});
        EXPECT_EQ(roleOf(ARRAYS, 1), 0);
        advance(63); // the rebuild is done, and the copy back has begun again
    }
    EXPECT_EQ(look(ARRAYS, 0, {advance(HOUR)}), "online 0 1 4 3");
    succeed({createLd(KT_RAID1, {0, 1}, 4000 * MB), KT_PD_FreeHD2GlobalSpare(PLAIN, 3), advance(HOUR)});
    for (const bool checks : {false, true}) {
        succeed({fail(1, PLAIN), advance(HOUR), replaceDisk(PLAIN, 1), KT_LD_BGAControl(PLAIN, 0, KT_CONTROL_STOP)});
        EXPECT_EQ(roleOf(PLAIN, 1), KT_PD_MEMBER);
        succeed({checks ? KT_LD_StartConsistencyCheck(PLAIN, 0, 1) : KT_LD_StartINIT(PLAIN, 0, KT_INIT_QUICK)});
        EXPECT_EQ(roleOf(PLAIN, 1), 0);
        advance(HOUR);
    }
}

TEST_F(Raid, QuickCreationTakesEveryFreeDisk) {
    EXPECT_EQ(slots({KT_PD_FreeHD2GlobalSpare(ARRAYS, 7), KT_LD_DG_QuickCreate(ARRAYS, 1)}), "0:333474 0");
    EXPECT_EQ(look(ARRAYS, 0, {advance(HOUR)}) + " " + textOf(vdInfo(ARRAYS, 0).Name), "online 0 1 2 3 4 5 6 8 Auto");
    EXPECT_EQ(KT_LD_DG_QuickCreate(ARRAYS, 1), KT_ERR_NO_RESOURCE);
    EXPECT_EQ(KT_LD_DG_QuickCreate(ARRAYS, 2), KT_ERR_INVALID_PARAMETER);
    EXPECT_EQ(KT_LD_DG_QuickCreate(PLAIN, 0), KT_ERR_NOT_ON_THIS_ADAPTER);
}

TEST_F(Raid, WhatWorksAgainAtABootIsTold) {
    succeed({createLd(KT_RAID0, {0, 1}, 4000, OLD), createLd(KT_RAID1, {2, 3}, 4000, OLD), advance(60), pull(0, OLD),
             pull(3, OLD), pull(2, OLD)});
    EXPECT_EQ(LOG_OF(OLD, reboot([] { succeed({insert(0, OLD), insert(2, OLD)}); })), "12/7:0 0/9:2 1/1:0 1/4:1");
}

TEST_F(Raid, RebuildsAreStartedByHandWhenAutoRebuildIsOff) {
    succeed({configure(PLAIN, &Config::AutoRebuildOn, 0), createLd(KT_RAID1, {0, 1}, 20000 * MB),
             createLd(KT_RAID0, {2, 3}, 80000 * MB), advance(60)});
    EXPECT_EQ(rebuild(4), KT_ERR_VD_FUNCTIONAL);
    EXPECT_EQ(KT_LD_StartRebuild(PLAIN, 1, 4), KT_ERR_NOT_REDUNDANT);
    EXPECT_EQ(look(PLAIN, 0, {fail(1, PLAIN)}), "degraded 0 1");
    EXPECT_EQ(rebuild(0), KT_ERR_TARGET_IS_MEMBER);
    EXPECT_EQ(rebuild(2), KT_ERR_PD_ASSIGNED);
    EXPECT_EQ(rebuild(1), KT_ERR_PD_MISSING);
    EXPECT_EQ(look(PLAIN, 0, {rebuild(4), advance(128)}), "degraded 0 4, 1/1 51") << "20000 MB at half of 160 MiB/s";
    EXPECT_EQ(rebuild(5), KT_ERR_VD_BUSY);
    EXPECT_EQ(look(PLAIN, 0, {controlLd(KT_CONTROL_PAUSE), advance(HOUR)}), "degraded 0 4, 1/3 51");
    EXPECT_EQ(controlLd(KT_CONTROL_RESTART), KT_ERR_BGA_ACTION);
    succeed({controlLd(KT_CONTROL_RESUME), controlLd(KT_CONTROL_STOP), controlLd(KT_CONTROL_RESTART)});
    EXPECT_EQ(look(PLAIN, 0), "degraded 0 4, 1/1 0") << "what was filled has missed what was written meanwhile";
    succeed({controlLd(KT_CONTROL_STOP)});
    EXPECT_EQ(LOG_OF(PLAIN, pull(4, PLAIN)), "2/0:4") << "what was stopped does not fail";
    EXPECT_EQ(look(PLAIN, 0), "degraded 0 -");
    makeArray(KT_RAID6, {0, 1, 2, 3}, {4000});
    succeed({fail(0), fail(1)});
    EXPECT_EQ(createVd(KT_RAID6, 4000), KT_ERR_ARRAY_DISK_MISSING);
    succeed({rebuildDg({6, 7}), control(KT_CONTROL_STOP), rebuildDg({4, 5}), control(KT_CONTROL_STOP)});
    EXPECT_EQ(roleOf(ARRAYS, 6) | roleOf(ARRAYS, 7), 0) << "both that were left half filled gave way";
    EXPECT_EQ(migrateDg(ARRAYS, 0, KT_RAID6, {4, 5, 2, 3, 6}), KT_ERR_VD_NOT_READY) << "they are no source";
    EXPECT_EQ(look(ARRAYS, 0, {control(KT_CONTROL_RESTART), fail(4)}), "degraded - 5 2 3, 1/1 0") << "one is filled";
    EXPECT_EQ(roleOf(ARRAYS, 4), KT_PD_OFFLINE);
    EXPECT_EQ(look(ARRAYS, 0, {fail(5)}), "degraded - - 2 3");
}

TEST_F(Raid, NothingGoesOnWithAnOfflineArray) {
    makeArray(KT_RAID5, {0, 1, 2}, {4000});
    succeed({createLd(KT_RAID5, {2, 1, 0}, 1000 * MB, ARRAYS)});
    EXPECT_EQ(dgInfo(ARRAYS, 0).VDIDs[1], 1) << "the array on these disks takes it in";
    EXPECT_EQ(look(ARRAYS, 0, {fail(0), rebuildDg({3}), control(KT_CONTROL_STOP), fail(1)}), "offline 3 1 2, 1/2 0");
    answer(KT_ERR_VD_NOT_READY, {control(KT_CONTROL_RESTART), KT_LD_StartConsistencyCheck(ARRAYS, 0, 1)});
}

TEST_F(Raid, WithoutAWriteCacheNothingIsCached) {
    start(R"({"adapters": [{"type": "LD-based", "AdvancedFeatures": )" + std::to_string(KT_ADV_NO_WRITE_CACHE) +
          R"(, "disks": [{"count": 2, "type": "SATA", "size": "100GB"}]}]})");
    succeed({createLd(KT_RAID1, {0, 1}, 2000 * MB, 0)});
    EXPECT_EQ(vdInfo(0, 0).CacheMode & KT_CACHE_OFF, KT_CACHE_OFF);
    const auto setCache = [](int policy) {
        _LD_Config config = {};
        config.CachePolicy = static_cast<KT_U8>(policy);
        memcpy(config.Name, "Renamed", 7);
        return KT_LD_SetConfig(0, 0, &config);
    };
    EXPECT_EQ(LOG_OF(0, setCache(0)), "");
    EXPECT_EQ(textOf(vdInfo(0, 0).Name), "Renamed");
    EXPECT_EQ(vdInfo(0, 0).CacheMode & KT_CACHE_OFF, KT_CACHE_OFF);
    EXPECT_EQ(LOG_OF(0, setCache(KT_CACHE_OFF | KT_CACHE_RESTORE)), "") << "its cache is as before";
    EXPECT_EQ(LOG_OF(0, setCache(KT_CACHE_OFF | KT_CACHE_RESTORE | KT_CACHE_READ_AHEAD)), "1/6:0");
}

// A quick one clears the ends of the members, however large they are.
TEST_F(Raid, AQuickInitialisationIsBrief) {
    succeed({createLd(KT_RAID1, {0, 1}, 2000 * MB), createLd(KT_RAID1, {2, 3}, 80000 * MB), advance(60),
             KT_LD_StartINIT(PLAIN, 0, KT_INIT_QUICK), KT_LD_StartINIT(PLAIN, 1, KT_INIT_QUICK), advance(3)});
    EXPECT_EQ(look(PLAIN, 0) + "; " + look(PLAIN, 1), "online 0 1, 8/1 46; online 2 3, 8/1 46");
    succeed({configure(PLAIN, &Config::BGARate, 25), configure(PLAIN, &Config::InitRate, 0)});
    EXPECT_EQ(look(PLAIN, 1, {advance(3)}), "online 2 3, 8/1 70") << "at the rate of all that has none of its own";
}

TEST_F(Raid, GreaterActivitiesGoFirst) {
    const auto init = [](KT_U16 vd, KT_U8 adapter = ARRAYS) {
        return KT_LD_StartINIT(adapter, vd, KT_INIT_BACKGROUND);
    };
    succeed({createDg(KT_RAID5, {0, 1, 2}), createVd(KT_RAID5, 20000), createVd(KT_RAID5, 20000)});
    EXPECT_EQ(KT_LD_StartConsistencyCheck(ARRAYS, 0, 0), KT_ERR_VD_NOT_INITIALIZED);
    succeed({KT_PD_StartMediaPatrol(ARRAYS, 0)});
    EXPECT_EQ(dgInfo(ARRAYS, 0).PDBgaRunning, 1);
    EXPECT_EQ(KT_PD_StartMediaPatrol(ARRAYS, 1), KT_ERR_ONE_MEDIA_PATROL);
    EXPECT_EQ(KT_PD_StartMediaPatrol(ARRAYS, 4), KT_ERR_NOT_SPARE);
    EXPECT_EQ(LOG_OF(ARRAYS, KT_LD_StartConsistencyCheck(ARRAYS, 0, 1)), "1/30:0 2/25:0");
    EXPECT_EQ(dgInfo(ARRAYS, 0).PDBgaRunning, 0) << "the patrol waits";
    EXPECT_EQ(LOG_OF(ARRAYS, init(1)), "1/50:1 1/38:0") << "the check waits under its own codes";
    EXPECT_EQ(init(1), KT_ERR_VD_BUSY);
    succeed({KT_LD_BGAControl(ARRAYS, 0, KT_CONTROL_STOP), init(0), advance(125)});
    EXPECT_EQ(look(ARRAYS, 0), "online 0 1 2, 64/1 50") << "alone it would be done";
    EXPECT_EQ(LOG_OF(ARRAYS, KT_LD_PauseAll(ARRAYS)), "1/52:0 1/52:1 2/19:0");
    succeed({KT_LD_BGAControl(ARRAYS, 0, KT_CONTROL_RESUME), KT_LD_BGAControl(ARRAYS, 1, KT_CONTROL_RESUME)});
    EXPECT_EQ(LOG_OF(ARRAYS, KT_PD_BGAControl(ARRAYS, 0, KT_CONTROL_RESUME), advance(DAY)),
              "2/20:0 2/25:0 1/56:0(75) 1/56:1(75) 1/55:0 1/55:1 2/26:0 2/23:0(25) 2/23:0(50) 2/23:0(75) 2/22:0")
        << "the patrol goes on after them";
    // On disks that they share.
    succeed({createLd(KT_RAID1, {0, 1}, 4000, OLD), createLd(KT_RAID1, {1, 2}, 4000, OLD), advance(60), init(0, OLD),
             KT_LD_StartConsistencyCheck(OLD, 1, 0)});
    EXPECT_EQ(LOG_OF(OLD, fail(0, OLD)), "2/4:0 2/2:0 1/57:0 1/4:0 1/29:1") << "goes on at once";
    const _Create_LD_Param busy = ldParam(KT_RAID1, {2, 3}, 4000);
    const auto option = &_Create_LD_Param::InitializationOption;
    EXPECT_EQ(look(OLD, 2, {createWith(busy, option, KT_U8{KT_INIT_BACKGROUND}, OLD)}), "online 2 3, 64/1 0");
    EXPECT_EQ(look(OLD, 3, {createWith(busy, option, KT_U8{KT_INIT_INTELLIGENT}, OLD)}), "online 2 3, 64/1 0");
}

TEST_F(Raid, MigrationKeepsMembersAndTheSizeThatWasStated) {
    succeed({createLd(KT_RAID1, {0, 1}, 4000 * MB), createLd(KT_RAID1, {4, 5}, 4000 * MB), advance(60)});
    EXPECT_EQ(migrateLd(PLAIN, 0, KT_RAID5, {0, 2, 3}), KT_ERR_ARRAY_DISK_MISSING);
    EXPECT_EQ(migrateLd(PLAIN, 0, KT_RAID0, {0, 1, 2}), KT_ERR_MIGRATION_UNSUPPORTED);
    EXPECT_EQ(migrateLd(PLAIN, 0, KT_RAID1, {0, 1}), KT_ERR_MIGRATION_UNNECESSARY);
    _Create_LD_Param to = ldParam(KT_RAID5, {0, 1, 2});
    succeed({KT_LD_GetMigratedLdSize(PLAIN, &to)});
    EXPECT_EQ(to.Size, 4000 * MB);
    succeed({KT_LD_StartConsistencyCheck(PLAIN, 0, 0), controlLd(KT_CONTROL_STOP), KT_LD_StartMigration(PLAIN, &to)});
    EXPECT_EQ(migrateLd(PLAIN, 1, KT_RAID5, {3, 4, 5}), KT_ERR_ONE_VD_MIGRATION);
    newEvents(PLAIN); // a quarter is announced, and not once more after a new start
    succeed({advance(30), controlLd(KT_CONTROL_PAUSE), controlLd(KT_CONTROL_RESUME), controlLd(KT_CONTROL_STOP)});
    EXPECT_EQ(look(PLAIN, 0, {controlLd(KT_CONTROL_RESTART)}), "online 0 1, 32/1 30");
    _LD_Info target = {};
    succeed({KT_LD_GetTargetLDInfo(PLAIN, 0, &target)});
    EXPECT_EQ((Ints{target.RaidMode, target.BGAStatus, vdInfo(PLAIN, 0).RaidMode}),
              (Ints{KT_RAID5, KT_STATE_NONE, KT_RAID1}));
    advance(HOUR);
    EXPECT_EQ(newEvents(PLAIN), "1/86:0(25) 1/82:0 1/83:0 1/84:0 1/81:0 1/86:0(50) 1/86:0(75) 1/85:0");
    EXPECT_EQ(look(PLAIN, 0), "online 0 1 2");
    EXPECT_EQ(blockInfo(PLAIN, vdInfo(PLAIN, 0).BlockIDs[2]).Size, 2000 * 2 * MB) << "the rest of the disks is free";
    EXPECT_EQ(vdInfo(PLAIN, 0).Size, 4000 * MB);
    EXPECT_EQ(KT_LD_GetTargetLDInfo(PLAIN, 0, &target), KT_ERR_VD_STATUS);
    succeed({KT_LD_Delete(PLAIN, 0, 0), createLd(KT_RAID1, {0, 1})});
    const KT_U64 all = vdInfo(PLAIN, 0).Size;
    succeed({advance(60), KT_LD_GetMigratedLdSize(PLAIN, &to), KT_LD_StartMigration(PLAIN, &to), advance(30 * HOUR)});
    EXPECT_EQ(to.Size, 2 * all);
    EXPECT_EQ(vdInfo(PLAIN, 0).Size, 2 * all) << "what was made of all there was grows";
}

TEST_F(Raid, PartsAreCounted) {
    const auto parts = [] { return Ints{dgInfo(ARRAYS, 0).SubVDCount, vdInfo(ARRAYS, 0).SubLDCount}; };
    makeArray(KT_RAID5, {0, 1, 2}, {4000});
    EXPECT_EQ(parts(), (Ints{0, 0}));
    _CreateOrModify_DG_Param to = dgParam(KT_RAID50, {0, 1, 2, 3, 4, 5});
    to.DGID = 0;
    succeed({KT_DG_StartMigration(ARRAYS, &to, 1)});
    EXPECT_EQ(to.Size, 2 * dgInfo(ARRAYS, 0).TotalManagedSpace);
    EXPECT_EQ(look(ARRAYS, 0), "online 0 1 2") << "only its size was asked for";
    _LD_Info target = {};
    succeed({KT_DG_StartMigration(ARRAYS, &to, 0), KT_LD_GetTargetLDInfo(ARRAYS, 0, &target)});
    EXPECT_EQ(target.SubLDCount, 2);
    EXPECT_EQ(look(ARRAYS, 0, {advance(HOUR)}), "online 0 1 2 3 4 5");
    EXPECT_EQ(parts(), (Ints{2, 2}));
}

// Two of stated sizes with a gap between them, and one of what is left.
TEST_F(Raid, AnArrayGrowsWhereNoSizeWasStated) {
    makeArray(KT_RAID5, {0, 1, 2}, {6000, 4000, 2000, 178664}); // the last takes all that is left
    EXPECT_EQ(slots({deleteVd(1)}), "0:6000 -:4000 2:2000 3:178664 -:0 4000");
    EXPECT_EQ(slots({migrateDg(ARRAYS, 0, KT_RAID5, {0, 1, 2, 3, 4}), advance(90 * HOUR)}),
              "0:6000 -:14000 2:2000 -:2000 3:357328 -:1 16001")
        << "the gap took up its half";
    for (const KT_U16 id : Ids{0, 2, 3})
        EXPECT_EQ(vdInfo(ARRAYS, id).Size / MB, id == 0 ? 6000U : id == 2 ? 2000U : 357328U);
    succeed({createVd(KT_RAID5, 14000)});
}

TEST_F(Raid, AMigrationStopsWithoutItsTarget) {
    makeArray(KT_RAID1, {0, 1}, {4000});
    makeArray(KT_RAID1, {4, 5}, {4000}, 1);
    succeed({migrateDg(ARRAYS, 0, KT_RAID5, {0, 1, 2, 3})});
    EXPECT_EQ(migrateDg(ARRAYS, 1, KT_RAID5, {4, 5, 6}), KT_ERR_ONE_ARRAY_MIGRATION);
    EXPECT_EQ(LOG_OF(ARRAYS, KT_PD_StartMediaPatrol(ARRAYS, 2)), "2/17:2 2/25:2") << "waits on new disks too";
    succeed({advance(30), control(KT_CONTROL_STOP), control(KT_CONTROL_RESTART)});
    EXPECT_EQ(look(ARRAYS, 0), "online 0 1, 32/1 30") << "what has moved stays moved";
    succeed({pull(2), pull(3)});
    EXPECT_EQ(LOG_OF(ARRAYS, advance(HOUR)), "");
    EXPECT_EQ(look(ARRAYS, 0), "offline 0 1, 32/5 30");
    EXPECT_EQ(control(KT_CONTROL_RESTART), KT_ERR_VD_NOT_READY);
    EXPECT_EQ(look(ARRAYS, 0, {insert(3)}), "degraded 0 1, 32/1 30") << "one of RAID5's disks may be missing";
    EXPECT_EQ(look(ARRAYS, 0, {advance(HOUR), insert(2)}), "degraded 0 1 2 3, 1/1 0") << "it has kept its place";
}

// A page of ids is written anew once disk 0 has left: the others are one less from then on, wherever they are named.
TEST_F(Raid, NewIdsOfDisksAreFollowedEverywhere) {
    start(R"({"adapters": [
      {"type": "array-based", "disks": [{"count": 8, "size": "100GB"}, {"size": "100GB", "spare": "global"}],
       "arrays": [{"level": "RAID1", "disks": [1, 2], "virtualDisks": [{"size": "1GiB", "linkedDisk": 7}]},
                  {"level": "RAID1", "disks": [3, 4], "spares": [5], "virtualDisks": [{"size": "1GiB", "linkedDisk": 6}]}]},
      {"type": "LD-based", "disks": [{"count": 6, "size": "100GB"}, {"size": "100GB", "spare": "global"}],
       "virtualDisks": [{"level": "RAID1", "disks": [1, 2], "size": "1GiB"},
                        {"level": "RAID1", "disks": [3, 4], "size": "1GiB"}]}]})");
    succeed({migrateLd(PLAIN, 0, KT_RAID5, {1, 2, 5})});
    for (const KT_U8 adapter : {ARRAYS, PLAIN}) {
        succeed({pull(0, adapter), KT_Flash_Erase(adapter, KT_PAGE_PD_FORCE), advance(HOUR)});
        const auto both = [&] { return look(adapter, 0) + "; " + look(adapter, 1); };
        const std::string whole = adapter == PLAIN ? "online 0 1 4; online 2 3" : "online 0 1; online 2 3";
        EXPECT_EQ(both(), whole);
        EXPECT_EQ(pdConfig(adapter, 2).HDID, 2);
        for (const KT_U16 lost : Ids{1, 2}) { // a member of each comes home after a spare has stood in
            succeed({pull(lost, adapter)});
            EXPECT_NE(both().find(", 1/1 0"), std::string::npos);
            succeed({advance(HOUR), insert(lost, adapter), advance(HOUR)});
        }
        EXPECT_EQ(both(), whole);
    }
    for (const KT_U16 id : Ids{0, 1}) {
        KT_U16 linked = 0;
        succeed({KT_VDHDD_GetLink(ARRAYS, id, &linked)});
        const _DG_Info array = dgInfo(ARRAYS, id);
        EXPECT_EQ((Ids{linked, array.PDIDs[0], array.PDIDs[1], array.SparePDIDs[0]}),
                  (id == 0 ? Ids{6, 0, 1, KT_NO_ID} : Ids{5, 2, 3, 4}));
    }
}

// Its members are all that an array without virtual disks has; there is nothing on them to rebuild.
TEST_F(Raid, AnEmptyArrayIsItsDisks) {
    succeed({createDg(KT_RAID5, {0, 1, 2}), KT_PD_SetHDStatus(ARRAYS, 0, 0)});
    EXPECT_EQ(KT_PD_SetHDStatus(ARRAYS, 1, 0), KT_ERR_PD_CANNOT_SET_DOWN);
    EXPECT_EQ(roleOf(ARRAYS, 1), KT_PD_MEMBER);
    EXPECT_EQ(LOG_OF(ARRAYS, KT_PD_FreeHD2DGSpare(ARRAYS, 3, 0)), "2/9:3 2/59:3(3)");
    const _DG_Info array = dgInfo(ARRAYS, 0);
    EXPECT_EQ((Ids{array.PDIDs[0], array.PDIDs[1], array.PDIDs[2], array.PDCount, array.BgaState}),
              (Ids{3, 1, 2, 3, 0}));
}

TEST_F(Raid, WipingTakesAMemberAway) {
    succeed({createLd(KT_RAID1, {0, 1}, 4000 * MB), advance(60)});
    EXPECT_EQ(KT_PD_WipeHDMDD(PLAIN, 0, 0), KT_ERR_PD_ASSIGNED);
    EXPECT_EQ(KT_PD_WipeHDMDD(ARRAYS, 10, 1), KT_ERR_PD_HAS_OS);
    succeed({KT_PD_StartMediaPatrol(PLAIN, 0)});
    EXPECT_EQ(LOG_OF(PLAIN, KT_PD_WipeHDMDD(PLAIN, 0, 1)), "2/24:0 2/54:0 1/4:0");
    EXPECT_EQ(look(PLAIN, 0, {}), "degraded - 1");
    EXPECT_EQ(roleOf(PLAIN, 0), 0);
}
