#include "frame.h"
#include "outside.h"

// Disks 0 to 7 are alike, 8 is half as large, 9 has other sectors, 10 carries the system; adapters 1 and 2 have no
// arrays, 2 lets virtual disks share disks.
static const char LAB[] = R"({"adapters": [
  {"type": "array-based", "enclosures": [{}], "disks": [
     {"count": 8, "type": "SAS", "size": "100GB"}, {"type": "SAS", "size": "50GB"},
     {"type": "SAS", "size": "100GB", "sector": 4096}, {"type": "SAS", "size": "100GB", "os": true}]},
  {"type": "LD-based", "disks": [
     {"count": 6, "type": "SATA", "size": "100GB"}, {"type": "SATA", "size": "50GB"},
     {"count": 2, "type": "SATA SSD", "size": "50GB"}]},
  {"type": "LD-based", "DevID": 17920, "MaxParityDisks": 0, "disks": [{"count": 4, "type": "SATA", "size": "100GB"}]}]})";
static const KT_U8 ARRAYS = 0;
static const KT_U8 PLAIN = 1;
static const KT_U8 OLD = 2;
static const uint64_t HOUR = 3600;
static const KT_U64 MB = 1024;

struct Raid : LabTest<LAB> {
    static void disk(KT_U8 adapter, KT_U8 (*act)(KT_U8, KT_U16), KT_U16 pd) { EXPECT_EQ(act(adapter, pd), KT_OK); }
    static void replace(KT_U8 adapter, KT_U16 pd) { EXPECT_EQ(outside::replaceDisk(adapter, pd), KT_OK); }
};

static KT_U8 createLd(KT_U8 level, const Ids& disks, KT_U64 size = 0, KT_U8 adapter = PLAIN) {
    _Create_LD_Param param = ldParam(level, disks, size);
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
    ASSERT_EQ(createDg(level, disks), KT_OK);
    for (const KT_U64 size : sizes) {
        _CreateOrModify_VD_Param param = vdParam(level, size);
        param.DGID = id;
        param.InitializationOption = KT_INIT_QUICK;
        ASSERT_EQ(KT_CreateOrModify_VD(ARRAYS, &param), KT_OK);
    }
    ContractTest::advance(60);
}

// "activity/state percent" of a virtual disk.
static std::string activity(KT_U8 adapter, KT_U16 vd) {
    _LD_STATUS status = {};
    EXPECT_EQ(readItem(KT_LD_GetStatus, adapter, vd, &_LD_Status_Request::ldStatus, status), KT_OK);
    return std::to_string(status.Bga) + "/" + std::to_string(status.BgaState) + " " +
           std::to_string(status.BgaPercentage);
}

static Ids members(KT_U8 adapter, KT_U16 vd) {
    const _LD_Info info = vdInfo(adapter, vd);
    Ids disks;
    for (int i = 0; i < info.HDCount; ++i) {
        _Block_Info block = {};
        const bool there = info.BlockIDs[i] != KT_NO_ID;
        if (there) readItem(KT_BLK_GetInfo, adapter, info.BlockIDs[i], &_BLK_Info_Request::blkInfo, block);
        disks.push_back(there ? block.HDID : KT_U16{KT_NO_ID});
    }
    return disks;
}

TEST_F(Raid, SizesFollowTheLevel) {
    _HD_FreeSpaceInfo room = {};
    ASSERT_EQ(KT_PD_GetFreeSpaceInfo(PLAIN, 0, &room), KT_OK);
    const KT_U64 share = room.FreeSize / 64 * 64;
    const struct {
        KT_U8 level;
        Ids disks;
        KT_U64 halves;
    } cases[] = {{KT_RAID0, {0, 1, 2}, 6},  {KT_RAID1, {0, 1}, 2},       {KT_RAID10, {0, 1, 2, 3}, 4},
                 {KT_RAID1E, {0, 1, 2}, 3}, {KT_RAID5, {0, 1, 2, 3}, 6}, {KT_RAID6, {0, 1, 2, 3}, 4},
                 {KT_JBOD, {0}, 2}};
    for (const auto& each : cases) {
        _Create_LD_Param param = ldParam(each.level, each.disks);
        ASSERT_EQ(KT_LD_GetMaxSize(PLAIN, &param), KT_OK) << int(each.level);
        EXPECT_EQ(param.Size, share * each.halves / 2) << int(each.level);
    }
    _Create_LD_Param rounded = ldParam(KT_RAID0, {0, 1});
    rounded.RoundingScheme = KT_ROUND_10GB;
    ASSERT_EQ(KT_LD_GetMaxSize(PLAIN, &rounded), KT_OK);
    EXPECT_EQ(rounded.Size % (10000 * MB), 0U);
    EXPECT_GT(rounded.Size + 10000 * MB, share * 2);
    _Create_LD_Param uneven = ldParam(KT_RAID0, {0, 6});
    ASSERT_EQ(KT_LD_GetMaxSize(PLAIN, &uneven), KT_OK);
    EXPECT_LT(uneven.Size, share * 3 / 2);
}

TEST_F(Raid, SizesAreMegabytesFromPeopleAndKibFromFiles) {
    _Create_LD_Param param = ldParam(KT_RAID1, {0, 1}, 3000 * MB);
    ASSERT_EQ(KT_LD_Create(PLAIN, &param), KT_OK);
    EXPECT_EQ(vdInfo(PLAIN, 0).Size, 3000 * MB);
    EXPECT_EQ(createLd(KT_RAID1, {1, 2}, 3000 * MB), KT_ERR_PD_ASSIGNED) << "no second one on a disk";
    for (const KT_U16 pd : Ids{1, 5}) {
        _HD_Block_Info blocks = {};
        ASSERT_EQ(KT_BLK_GetHDBlock(PLAIN, pd, &blocks), KT_OK);
        EXPECT_EQ(blocks.HDID, pd);
        EXPECT_EQ(blocks.BlkCount, pd == 1 ? 1 : 0);
    }
    param = ldParam(KT_RAID1, {2, 3}, 3000);
    param.ReservedForApp = 1;
    ASSERT_EQ(KT_LD_Create(PLAIN, &param), KT_OK);
    EXPECT_EQ(vdInfo(PLAIN, 1).Size, 3000 * MB);
    param = ldParam(KT_HYBRID, {7, 2}, 3000);
    param.TandemWaterMark = 90;
    ASSERT_EQ(KT_LD_Create(PLAIN, &param), KT_OK) << "beside another one";
    EXPECT_EQ(vdInfo(PLAIN, 2).Size, 3000 * MB);
    EXPECT_EQ(newEvents(PLAIN), (Events{"1/2 of 0", "1/40 of 0", "1/2 of 1", "1/40 of 1", "1/2 of 2", "1/40 of 2"}));
    ASSERT_EQ(createLd(KT_RAID1, {0, 1}, 4096, OLD), KT_OK);
    EXPECT_EQ(vdInfo(OLD, 0).Size, 4096 * MB) << "what a person asks for";
    ASSERT_EQ(createLd(KT_RAID1, {0, 1}, 4096 * MB, OLD), KT_OK);
    EXPECT_EQ(vdInfo(OLD, 1).Size, 4096 * MB) << "what a file restores";
    EXPECT_EQ(createLd(KT_RAID1, {0, 1}, 4000 * MB, OLD), KT_ERR_NO_RESOURCE) << "a file would ask for rounding";
}

TEST_F(Raid, CreationSaysWhatIsWrong) {
    EXPECT_EQ(createLd(0x77, {0, 1}), KT_ERR_INVALID_RAID_MODE);
    EXPECT_EQ(createLd(KT_RAID5, {0, 1}), KT_ERR_PD_COUNT_FOR_LEVEL);
    EXPECT_EQ(createLd(KT_RAID10, {0, 1, 2, 3, 4}), KT_ERR_PD_COUNT_FOR_LEVEL);
    EXPECT_EQ(createLd(KT_RAID0, {}), KT_ERR_PD_COUNT);
    EXPECT_EQ(createLd(KT_RAID0, {1, 1}), KT_ERR_PD_COUNT);
    EXPECT_EQ(createLd(KT_RAID0, {0, 77}), KT_ERR_PD_MISSING);
    EXPECT_EQ(createLd(KT_RAID0, {0, 10}), KT_ERR_OTHER_ADAPTER);
    EXPECT_EQ(createLd(KT_RAID0, {0, 1}, KT_U64{1} << 40), KT_ERR_NO_RESOURCE);
    EXPECT_EQ(createLd(KT_HYBRID, {0, 1}), KT_ERR_TANDEM_SSD_COUNT);
    EXPECT_EQ(createLd(KT_HYBRID, {7, 8}), KT_ERR_PD_COUNT_FOR_LEVEL);
    _Create_LD_Param param = ldParam(KT_RAID6, {0, 1, 2, 3});
    param.NumParityDisk = 4;
    EXPECT_EQ(KT_LD_Create(PLAIN, &param), KT_ERR_PARITY_COUNT);
    param.NumParityDisk = 3;
    EXPECT_EQ(KT_LD_Create(OLD, &param), KT_ERR_PARITY_COUNT) << "two, where no limit is told";
    param = ldParam(KT_RAID5, {0, 1, 2});
    param.StripeBlockSize = 48;
    EXPECT_EQ(KT_LD_Create(PLAIN, &param), KT_ERR_BLOCK_SIZE);
    param.StripeBlockSize = 64;
    param.Name[0] = 7;
    EXPECT_EQ(KT_LD_Create(PLAIN, &param), KT_ERR_VD_NAME);
    EXPECT_EQ(createDg(KT_RAID1, {0, 9}), KT_ERR_PD_SECTORS_DIFFER);
    EXPECT_EQ(createDg(KT_RAID1, {0, 10}), KT_ERR_PD_HAS_OS);
    EXPECT_EQ(createDg(KT_RAID6, {0, 1, 2}), KT_ERR_PD_COUNT_FOR_LEVEL);
    ASSERT_EQ(KT_PD_FreeHD2GlobalSpare(ARRAYS, 0), KT_OK);
    EXPECT_EQ(createDg(KT_RAID1, {0, 1}), KT_ERR_IS_SPARE);
    ASSERT_EQ(createDg(KT_RAID1, {1, 2}), KT_OK);
    EXPECT_EQ(createDg(KT_RAID1, {2, 3}), KT_ERR_PD_ASSIGNED);
    _CreateOrModify_VD_Param vd = vdParam(KT_RAID1);
    vd.StripeBlockSize = 128;
    EXPECT_EQ(KT_CreateOrModify_VD(ARRAYS, &vd), KT_ERR_STRIPE_MISMATCH);
    EXPECT_TRUE(newEvents(PLAIN).empty());
}

TEST_F(Raid, ArraysDivideTheirSpaceIntoSlots) {
    _CreateOrModify_DG_Param asked = dgParam(KT_RAID5, {0, 1, 2});
    ASSERT_EQ(KT_CreateOrModify_DG(ARRAYS, &asked, 1), KT_OK);
    EXPECT_EQ(readList(KT_DG_GetInfo, ARRAYS, &_DG_Info_Request::dgInfo).size(), 0U);
    ASSERT_EQ(createDg(KT_RAID5, {0, 1, 2}), KT_OK);
    EXPECT_EQ(dgInfo(ARRAYS, 0).TotalManagedSpace, asked.Size);
    EXPECT_EQ(dgInfo(ARRAYS, 0).RemainingManagedSpace, asked.Size);
    for (int i = 0; i < 3; ++i)
        ASSERT_EQ(createVd(KT_RAID5, 1000), KT_OK);
    ASSERT_EQ(KT_LD_Delete(ARRAYS, 1, 0), KT_OK);
    EXPECT_EQ(dgInfo(ARRAYS, 0).VDSlotCount, 4);
    EXPECT_EQ(createVd(KT_RAID5, 2000, 1), KT_ERR_NO_RESOURCE);
    EXPECT_EQ(createVd(KT_RAID5, 600, 4), KT_ERR_OUT_OF_RANGE);
    _CreateOrModify_VD_Param asFirst = vdParam(KT_RAID5, 600, 1);
    asFirst.SectorCoefficient = 4;
    memcpy(asFirst.Name, "Named", 6);
    ASSERT_EQ(KT_CreateOrModify_VD(ARRAYS, &asFirst), KT_OK);
    EXPECT_EQ(vdInfo(ARRAYS, 1).SectorCoefficient, 4);
    EXPECT_STREQ(reinterpret_cast<const char*>(vdInfo(ARRAYS, 1).Name), "Named");
    const _DG_Info split = dgInfo(ARRAYS, 0);
    EXPECT_EQ(split.VDSlotCount, 5);
    EXPECT_EQ(split.VDSlotSize[1], 600 * MB);
    EXPECT_EQ(split.VDSlotSize[2], 400 * MB);
    EXPECT_EQ(split.RemainingManagedSpace, split.TotalManagedSpace - 2600 * MB);
    for (KT_U16 vd = 0; vd < 3; ++vd)
        ASSERT_EQ(KT_LD_Delete(ARRAYS, vd, 0), KT_OK);
    EXPECT_EQ(dgInfo(ARRAYS, 0).VDSlotCount, 1);
    EXPECT_EQ(dgInfo(ARRAYS, 0).RemainingManagedSpace, asked.Size);
    for (const KT_U64 size : {2000, 1000, 500, 0})
        ASSERT_EQ(createVd(KT_RAID5, size), KT_OK);
    for (const KT_U16 vd : Ids{0, 2})
        ASSERT_EQ(KT_LD_Delete(ARRAYS, vd, 0), KT_OK);
    ASSERT_EQ(createVd(KT_RAID5), KT_OK);
    EXPECT_EQ(vdInfo(ARRAYS, 0).Size, 2000 * MB) << "all of the largest slot";
    EXPECT_EQ(KT_DG_Delete(ARRAYS, 0), KT_ERR_ARRAY_HAS_VD);
    for (const KT_U16 vd : Ids{0, 1, 3})
        ASSERT_EQ(KT_LD_Delete(ARRAYS, vd, 0), KT_OK);
    newEvents(ARRAYS);
    ASSERT_EQ(KT_DG_Delete(ARRAYS, 0), KT_OK);
    EXPECT_EQ(newEvents(ARRAYS), (Events{"13/1 of 0", "2/54 of 0", "2/54 of 1", "2/54 of 2"}));
    EXPECT_EQ(roleOf(ARRAYS, 1), 0);
    EXPECT_EQ(show().find("\"rows\""), std::string::npos) << "nothing of them is remembered";
}

TEST_F(Raid, ASpareStandsInUntilTheDiskIsReplaced) {
    makeArray(KT_RAID5, {0, 1, 2}, {10000});
    EXPECT_EQ(KT_PD_FreeHD2DGSpare(ARRAYS, 8, 0), KT_ERR_SPARE_TOO_SMALL);
    EXPECT_EQ(KT_PD_FreeHD2GlobalSpare(ARRAYS, 8), KT_ERR_SPARE_TOO_SMALL) << "for every array";
    ASSERT_EQ(KT_PD_FreeHD2DGSpare(ARRAYS, 5, 0), KT_OK);
    EXPECT_EQ(KT_PD_FreeHD2GlobalSpare(ARRAYS, 5), KT_ERR_ALREADY_ARRAY_SPARE);
    newEvents(ARRAYS);
    disk(ARRAYS, outside::failDisk, 1);
    EXPECT_EQ(newEvents(ARRAYS), (Events{"2/4 of 1", "2/2 of 1", "1/4 of 0", "2/59 of 5", "1/70 of 0"}));
    EXPECT_EQ(vdInfo(ARRAYS, 0).Status, KT_VD_DEGRADED);
    EXPECT_EQ(activity(ARRAYS, 0), "1/1 0");
    EXPECT_EQ(roleOf(ARRAYS, 5), KT_PD_MEMBER | KT_PD_SPARE_IN_USE | KT_PD_DEDICATED_SPARE);
    EXPECT_EQ(KT_PD_Spare2FreeHD(ARRAYS, 5), KT_ERR_SPARE_IN_USE);
    advance(HOUR);
    EXPECT_EQ(vdInfo(ARRAYS, 0).Status, KT_VD_ONLINE);
    EXPECT_EQ(members(ARRAYS, 0), (Ids{0, 5, 2}));
    newEvents(ARRAYS);
    replace(ARRAYS, 1);
    EXPECT_EQ(newEvents(ARRAYS), (Events{"2/0 of 1", "2/1 of 1", "1/90 of 0"}));
    disk(ARRAYS, outside::failDisk, 0);
    EXPECT_EQ(activity(ARRAYS, 0), "128/1 0") << "it does not read that one";
    replace(ARRAYS, 0);
    advance(HOUR);
    EXPECT_EQ(members(ARRAYS, 0), (Ids{0, 1, 2}));
    EXPECT_EQ(roleOf(ARRAYS, 5), KT_PD_DEDICATED_SPARE);
    ASSERT_EQ(KT_PD_Spare2FreeHD(ARRAYS, 5), KT_OK);
    EXPECT_EQ(dgInfo(ARRAYS, 0).SparePDCount, 0);
    ASSERT_EQ(createVd(KT_RAID5, 30000), KT_OK);
    disk(ARRAYS, outside::pullDisk, 2);
    disk(ARRAYS, outside::insertDisk, 2);
    advance(25);
    newEvents(ARRAYS);
    ASSERT_EQ(KT_LD_Delete(ARRAYS, 1, 1), KT_OK);
    EXPECT_EQ(newEvents(ARRAYS), (Events{"1/74 of 1", "1/3 of 1"}));
    EXPECT_EQ(activity(ARRAYS, 0), "1/1 10");
    advance(57);
    EXPECT_EQ(vdInfo(ARRAYS, 0).Status, KT_VD_ONLINE) << "only 5000 MB are left to fill";
    newEvents(ARRAYS);
    outside::replaceDisk(ARRAYS, 1, 2000000);
    disk(ARRAYS, outside::pullDisk, 6);
    EXPECT_EQ(newEvents(ARRAYS), (Events{"2/0 of 1", "1/4 of 0", "2/1 of 1", "12/20 of 1", "2/0 of 6"}));
    ASSERT_EQ(KT_PD_FreeHD2GlobalSpare(ARRAYS, 5), KT_OK);
    newEvents(ARRAYS);
    disk(ARRAYS, outside::pullDisk, 0);
    EXPECT_EQ(newEvents(ARRAYS), (Events{"2/0 of 0", "1/0 of 0", "1/77 of 0", "2/59 of 5"}));
    disk(ARRAYS, outside::insertDisk, 0);
    EXPECT_EQ(members(ARRAYS, 0), (Ids{0, 5, 2})) << "nothing was written since";
    EXPECT_EQ(activity(ARRAYS, 0), "1/1 0");
}

// What it had filled is of no use to what begins now; its disk is free for the next one.
TEST_F(Raid, AStoppedCopyBackGivesWay) {
    makeArray(KT_RAID5, {0, 1, 2}, {10000});
    ASSERT_EQ(KT_PD_FreeHD2DGSpare(ARRAYS, 5, 0), KT_OK);
    disk(ARRAYS, outside::failDisk, 1);
    advance(HOUR);
    replace(ARRAYS, 1);
    for (const bool migrates : {false, true}) {
        ASSERT_EQ(activity(ARRAYS, 0), "128/1 0");
        ASSERT_EQ(KT_DG_BGAControl(ARRAYS, 0, KT_CONTROL_STOP), KT_OK);
        EXPECT_EQ(roleOf(ARRAYS, 1), KT_PD_MEMBER);
        if (!migrates) disk(ARRAYS, outside::failDisk, 2);
        ASSERT_EQ(migrates ? migrateDg(ARRAYS, 0, KT_RAID6, {0, 5, 4, 3})
                           : KT_LD_DG_StartRebuild(ARRAYS, 0, 1, Ids{4}.data()),
                  KT_OK);
        EXPECT_EQ(roleOf(ARRAYS, 1), 0);
        advance(63); // the rebuild is done, and the copy back has begun again
    }
    advance(HOUR);
    EXPECT_EQ(members(ARRAYS, 0), (Ids{0, 1, 4, 3}));
}

TEST_F(Raid, ASecondLossTakesItOfflineAndItsReturnBringsItBack) {
    ASSERT_EQ(createLd(KT_RAID5, {0, 1, 2}, 5000, OLD), KT_OK);
    ASSERT_EQ(createLd(KT_RAID6, {0, 1, 2, 3}, 5000, OLD), KT_OK);
    advance(60);
    newEvents(OLD);
    disk(OLD, outside::pullDisk, 0);
    EXPECT_EQ(newEvents(OLD), (Events{"2/0 of 0", "1/4 of 0", "1/5 of 1"}));
    EXPECT_EQ(KT_PD_SetHDStatus(OLD, 1, 0), KT_ERR_PD_CANNOT_SET_DOWN);
    disk(OLD, outside::pullDisk, 1);
    EXPECT_EQ(newEvents(OLD), (Events{"2/0 of 1", "1/0 of 0", "1/4 of 1"}));
    EXPECT_EQ(KT_LD_StartConsistencyCheck(OLD, 0, 1), KT_ERR_VD_NOT_READY);
    disk(OLD, outside::insertDisk, 1);
    // What was offline takes the disk back as it was; what went on without it is rebuilt onto it.
    EXPECT_EQ(vdInfo(OLD, 0).Status, KT_VD_DEGRADED);
    EXPECT_EQ(activity(OLD, 0), "0/0 0");
    EXPECT_EQ(activity(OLD, 1), "1/1 0");
    advance(HOUR);
    EXPECT_EQ(vdInfo(OLD, 1).Status, KT_VD_PARTIALLY_OPTIMAL);
    disk(OLD, outside::pullDisk, 1);
    disk(OLD, outside::insertDisk, 0);
    EXPECT_EQ(vdInfo(OLD, 0).Status, KT_VD_OFFLINE) << "the disk missed what was written in that hour";
}

TEST_F(Raid, RebuildsAreStartedByHandWhenAutoRebuildIsOff) {
    rebuildByHand(PLAIN);
    ASSERT_EQ(createLd(KT_RAID1, {0, 1}, 20000 * MB), KT_OK);
    ASSERT_EQ(createLd(KT_RAID0, {2, 3}, 80000 * MB), KT_OK);
    advance(60);
    EXPECT_EQ(KT_LD_StartRebuild(PLAIN, 0, 4), KT_ERR_VD_FUNCTIONAL);
    EXPECT_EQ(KT_LD_StartRebuild(PLAIN, 1, 4), KT_ERR_NOT_REDUNDANT);
    disk(PLAIN, outside::failDisk, 1);
    EXPECT_EQ(activity(PLAIN, 0), "0/0 0");
    EXPECT_EQ(KT_LD_StartRebuild(PLAIN, 0, 0), KT_ERR_TARGET_IS_MEMBER);
    EXPECT_EQ(KT_LD_StartRebuild(PLAIN, 0, 2), KT_ERR_PD_ASSIGNED);
    EXPECT_EQ(KT_LD_StartRebuild(PLAIN, 0, 1), KT_ERR_PD_MISSING);
    ASSERT_EQ(KT_LD_StartRebuild(PLAIN, 0, 4), KT_OK);
    EXPECT_EQ(KT_LD_StartRebuild(PLAIN, 0, 5), KT_ERR_VD_BUSY);
    advance(128); // half of 20000 MB at half of 160 MiB/s
    EXPECT_EQ(activity(PLAIN, 0), "1/1 51");
    ASSERT_EQ(KT_LD_BGAControl(PLAIN, 0, KT_CONTROL_PAUSE), KT_OK);
    advance(HOUR);
    EXPECT_EQ(activity(PLAIN, 0), "1/3 51");
    EXPECT_EQ(KT_LD_BGAControl(PLAIN, 0, KT_CONTROL_RESTART), KT_ERR_BGA_ACTION);
    ASSERT_EQ(KT_LD_BGAControl(PLAIN, 0, KT_CONTROL_RESUME), KT_OK);
    ASSERT_EQ(KT_LD_BGAControl(PLAIN, 0, KT_CONTROL_STOP), KT_OK);
    ASSERT_EQ(KT_LD_BGAControl(PLAIN, 0, KT_CONTROL_RESTART), KT_OK);
    EXPECT_EQ(activity(PLAIN, 0), "1/1 0") << "what was filled has missed what was written meanwhile";
    ASSERT_EQ(KT_LD_BGAControl(PLAIN, 0, KT_CONTROL_STOP), KT_OK);
    newEvents(PLAIN);
    disk(PLAIN, outside::pullDisk, 4);
    EXPECT_EQ(newEvents(PLAIN), Events({"2/0 of 4"})) << "what was stopped does not fail";
    EXPECT_EQ(activity(PLAIN, 0), "0/0 0");
    EXPECT_EQ(vdInfo(PLAIN, 0).Status, KT_VD_DEGRADED);
    makeArray(KT_RAID6, {0, 1, 2, 3}, {4000});
    disk(ARRAYS, outside::failDisk, 0);
    disk(ARRAYS, outside::failDisk, 1);
    EXPECT_EQ(createVd(KT_RAID6, 4000), KT_ERR_ARRAY_DISK_MISSING);
    for (const Ids& targets : {Ids{6, 7}, Ids{4, 5}}) { // both that a stopped rebuild left half filled give way
        ASSERT_EQ(KT_LD_DG_StartRebuild(ARRAYS, 0, 2, targets.data()), KT_OK);
        ASSERT_EQ(KT_DG_BGAControl(ARRAYS, 0, KT_CONTROL_STOP), KT_OK);
    }
    _CreateOrModify_DG_Param to = dgParam(KT_RAID6, {4, 5, 2, 3, 6});
    to.DGID = 0;
    EXPECT_EQ(KT_DG_StartMigration(ARRAYS, &to, 0), KT_ERR_VD_NOT_READY) << "half filled members are no source";
    ASSERT_EQ(KT_DG_BGAControl(ARRAYS, 0, KT_CONTROL_RESTART), KT_OK);
    disk(ARRAYS, outside::failDisk, 4);
    EXPECT_EQ(activity(ARRAYS, 0), "1/1 0") << "the other one is filled all the same";
    EXPECT_EQ(roleOf(ARRAYS, 4), KT_PD_OFFLINE);
    disk(ARRAYS, outside::failDisk, 5);
    EXPECT_EQ(activity(ARRAYS, 0), "0/0 0");
}

TEST_F(Raid, NothingGoesOnWithAnOfflineArray) {
    makeArray(KT_RAID5, {0, 1, 2}, {4000});
    ASSERT_EQ(createLd(KT_RAID5, {2, 1, 0}, 1000 * MB, ARRAYS), KT_OK);
    EXPECT_EQ(dgInfo(ARRAYS, 0).VDIDs[1], 1) << "the array on these disks takes it in";
    disk(ARRAYS, outside::failDisk, 0);
    ASSERT_EQ(KT_LD_DG_StartRebuild(ARRAYS, 0, 1, Ids{3}.data()), KT_OK);
    ASSERT_EQ(KT_DG_BGAControl(ARRAYS, 0, KT_CONTROL_STOP), KT_OK);
    disk(ARRAYS, outside::failDisk, 1);
    ASSERT_EQ(vdInfo(ARRAYS, 0).Status, KT_VD_OFFLINE);
    EXPECT_EQ(KT_DG_BGAControl(ARRAYS, 0, KT_CONTROL_RESTART), KT_ERR_VD_NOT_READY);
}

TEST_F(Raid, WithoutAWriteCacheNothingIsCached) {
    start((R"({"adapters": [{"type": "LD-based", "AdvancedFeatures": )" + std::to_string(KT_ADV_NO_WRITE_CACHE) +
           R"(, "disks": [{"count": 2, "type": "SATA", "size": "100GB"}]}]})")
              .c_str());
    ASSERT_EQ(createLd(KT_RAID1, {0, 1}, 2000 * MB, 0), KT_OK);
    EXPECT_EQ(vdInfo(0, 0).CacheMode & KT_CACHE_OFF, KT_CACHE_OFF);
    _LD_Config config = {};
    ASSERT_EQ(KT_LD_SetConfig(0, 0, &config), KT_OK);
    EXPECT_EQ(vdInfo(0, 0).CacheMode & KT_CACHE_OFF, KT_CACHE_OFF);
    newEvents(0);
    config.CachePolicy = KT_CACHE_OFF | KT_CACHE_RESTORE;
    ASSERT_EQ(KT_LD_SetConfig(0, 0, &config), KT_OK);
    EXPECT_EQ(newEvents(0), std::vector<std::string>()) << "its cache is as before";
    config.CachePolicy |= KT_CACHE_READ_AHEAD;
    ASSERT_EQ(KT_LD_SetConfig(0, 0, &config), KT_OK);
    EXPECT_EQ(newEvents(0), std::vector<std::string>({"1/6 of 0"}));
}

// A quick one clears the ends of the members, however large they are.
TEST_F(Raid, AQuickInitialisationIsBrief) {
    ASSERT_EQ(createLd(KT_RAID1, {0, 1}, 2000 * MB), KT_OK);
    ASSERT_EQ(createLd(KT_RAID1, {2, 3}, 80000 * MB), KT_OK);
    advance(60);
    ASSERT_EQ(KT_LD_StartINIT(PLAIN, 0, KT_INIT_QUICK), KT_OK);
    ASSERT_EQ(KT_LD_StartINIT(PLAIN, 1, KT_INIT_QUICK), KT_OK);
    advance(3);
    const std::string brief = activity(PLAIN, 0);
    EXPECT_EQ(brief, "8/1 46");
    EXPECT_EQ(activity(PLAIN, 1), brief);
}

TEST_F(Raid, GreaterActivitiesGoFirst) {
    ASSERT_EQ(createDg(KT_RAID5, {0, 1, 2}), KT_OK);
    ASSERT_EQ(createVd(KT_RAID5, 20000), KT_OK);
    ASSERT_EQ(createVd(KT_RAID5, 20000), KT_OK);
    EXPECT_EQ(KT_LD_StartConsistencyCheck(ARRAYS, 0, 0), KT_ERR_VD_NOT_INITIALIZED);
    ASSERT_EQ(KT_PD_StartMediaPatrol(ARRAYS, 0), KT_OK);
    EXPECT_EQ(KT_PD_StartMediaPatrol(ARRAYS, 1), KT_ERR_ONE_MEDIA_PATROL);
    EXPECT_EQ(KT_PD_StartMediaPatrol(ARRAYS, 4), KT_ERR_NOT_SPARE);
    newEvents(ARRAYS);
    ASSERT_EQ(KT_LD_StartConsistencyCheck(ARRAYS, 0, 1), KT_OK);
    ASSERT_EQ(KT_LD_StartINIT(ARRAYS, 1, KT_INIT_BACKGROUND), KT_OK);
    EXPECT_EQ(KT_LD_StartINIT(ARRAYS, 1, KT_INIT_BACKGROUND), KT_ERR_VD_BUSY);
    EXPECT_EQ(newEvents(ARRAYS), (Events{"1/30 of 0", "2/25 of 0", "1/50 of 1", "1/38 of 0"}))
        << "the check waits under its own codes";
    ASSERT_EQ(KT_LD_BGAControl(ARRAYS, 0, KT_CONTROL_STOP), KT_OK);
    ASSERT_EQ(KT_LD_StartINIT(ARRAYS, 0, KT_INIT_BACKGROUND), KT_OK);
    advance(125);
    EXPECT_EQ(activity(ARRAYS, 0), "64/1 50") << "alone it would be done";
    newEvents(ARRAYS);
    ASSERT_EQ(KT_LD_PauseAll(ARRAYS), KT_OK);
    EXPECT_EQ(newEvents(ARRAYS), (Events{"1/52 of 0", "1/52 of 1", "2/19 of 0"}));
    for (const Ids& pair : {Ids{0, 1}, Ids{1, 2}}) // they share a disk
        ASSERT_EQ(createLd(KT_RAID1, pair, 4000, OLD), KT_OK);
    advance(60);
    ASSERT_EQ(KT_LD_StartINIT(OLD, 0, KT_INIT_BACKGROUND), KT_OK);
    ASSERT_EQ(KT_LD_StartConsistencyCheck(OLD, 1, 0), KT_OK);
    newEvents(OLD);
    disk(OLD, outside::failDisk, 0);
    EXPECT_EQ(newEvents(OLD), (Events{"2/4 of 0", "2/2 of 0", "1/57 of 0", "1/4 of 0", "1/29 of 1"}))
        << "goes on at once";
    _Create_LD_Param busy = ldParam(KT_RAID1, {2, 3}, 4000);
    for (const KT_U8 option : {KT_INIT_BACKGROUND, KT_INIT_INTELLIGENT}) {
        busy.InitializationOption = option;
        ASSERT_EQ(KT_LD_Create(OLD, &busy), KT_OK);
        EXPECT_EQ(activity(OLD, option == KT_INIT_BACKGROUND ? 2 : 3), "64/1 0");
    }
}

TEST_F(Raid, MigrationKeepsMembersAndTheSizeThatWasStated) {
    ASSERT_EQ(createLd(KT_RAID1, {0, 1}, 4000 * MB), KT_OK);
    ASSERT_EQ(createLd(KT_RAID1, {4, 5}, 4000 * MB), KT_OK);
    advance(60);
    EXPECT_EQ(migrateLd(PLAIN, 0, KT_RAID5, {0, 2, 3}), KT_ERR_ARRAY_DISK_MISSING);
    EXPECT_EQ(migrateLd(PLAIN, 0, KT_RAID0, {0, 1, 2}), KT_ERR_MIGRATION_UNSUPPORTED);
    EXPECT_EQ(migrateLd(PLAIN, 0, KT_RAID1, {0, 1}), KT_ERR_MIGRATION_UNNECESSARY);
    _Create_LD_Param to = ldParam(KT_RAID5, {0, 1, 2});
    ASSERT_EQ(KT_LD_GetMigratedLdSize(PLAIN, &to), KT_OK);
    EXPECT_EQ(to.Size, 4000 * MB);
    ASSERT_EQ(KT_LD_StartConsistencyCheck(PLAIN, 0, 0), KT_OK);
    ASSERT_EQ(KT_LD_BGAControl(PLAIN, 0, KT_CONTROL_STOP), KT_OK);
    ASSERT_EQ(KT_LD_StartMigration(PLAIN, &to), KT_OK);
    EXPECT_EQ(migrateLd(PLAIN, 1, KT_RAID5, {3, 4, 5}), KT_ERR_ONE_VD_MIGRATION);
    newEvents(PLAIN);
    advance(30); // a quarter is announced, and not once more after a new start
    for (const KT_U8 action : {KT_CONTROL_PAUSE, KT_CONTROL_RESUME, KT_CONTROL_STOP, KT_CONTROL_RESTART})
        ASSERT_EQ(KT_LD_BGAControl(PLAIN, 0, action), KT_OK);
    EXPECT_EQ(activity(PLAIN, 0), "32/1 30");
    _LD_Info target = {};
    ASSERT_EQ(KT_LD_GetTargetLDInfo(PLAIN, 0, &target), KT_OK);
    EXPECT_EQ(target.RaidMode, KT_RAID5);
    EXPECT_EQ(target.BGAStatus, KT_STATE_NONE);
    EXPECT_EQ(vdInfo(PLAIN, 0).RaidMode, KT_RAID1);
    advance(HOUR);
    EXPECT_EQ(newEvents(PLAIN), (Events{"1/86 of 0", "1/82 of 0", "1/83 of 0", "1/84 of 0", "1/81 of 0", "1/86 of 0",
                                        "1/86 of 0", "1/85 of 0"}));
    EXPECT_EQ(members(PLAIN, 0), (Ids{0, 1, 2}));
    _Block_Info block = {};
    ASSERT_EQ(readItem(KT_BLK_GetInfo, PLAIN, vdInfo(PLAIN, 0).BlockIDs[2], &_BLK_Info_Request::blkInfo, block), KT_OK);
    EXPECT_EQ(block.Size, 2000 * 2 * MB) << "the rest of the disks is free";
    EXPECT_EQ(vdInfo(PLAIN, 0).Size, 4000 * MB);
    EXPECT_EQ(KT_LD_GetTargetLDInfo(PLAIN, 0, &target), KT_ERR_VD_STATUS);
}

TEST_F(Raid, WhatWasMadeOfAllThereWasGrows) {
    ASSERT_EQ(createLd(KT_RAID1, {0, 1}), KT_OK);
    const KT_U64 all = vdInfo(PLAIN, 0).Size;
    advance(60);
    _Create_LD_Param to = ldParam(KT_RAID5, {0, 1, 2});
    ASSERT_EQ(KT_LD_GetMigratedLdSize(PLAIN, &to), KT_OK);
    EXPECT_EQ(to.Size, 2 * all);
    ASSERT_EQ(KT_LD_StartMigration(PLAIN, &to), KT_OK);
    advance(30 * HOUR);
    EXPECT_EQ(vdInfo(PLAIN, 0).Size, 2 * all);
}

TEST_F(Raid, PartsAreCounted) {
    makeArray(KT_RAID50, {0, 1, 2, 3, 4, 5}, {4000});
    EXPECT_EQ(dgInfo(ARRAYS, 0).SubVDCount, 2);
    EXPECT_EQ(vdInfo(ARRAYS, 0).SubLDCount, 2);
    ASSERT_EQ(KT_LD_Delete(ARRAYS, 0, 1), KT_OK);
    ASSERT_EQ(KT_DG_Delete(ARRAYS, 0), KT_OK);
    makeArray(KT_RAID5, {0, 1, 2}, {4000});
    EXPECT_EQ(dgInfo(ARRAYS, 0).SubVDCount, 0);
    EXPECT_EQ(vdInfo(ARRAYS, 0).SubLDCount, 0);
    _CreateOrModify_DG_Param to = dgParam(KT_RAID50, {0, 1, 2, 3, 4, 5});
    to.DGID = 0;
    ASSERT_EQ(KT_DG_StartMigration(ARRAYS, &to, 1), KT_OK);
    EXPECT_EQ(to.Size, 2 * dgInfo(ARRAYS, 0).TotalManagedSpace);
    EXPECT_EQ(activity(ARRAYS, 0), "0/0 0") << "only its size was asked for";
    ASSERT_EQ(KT_DG_StartMigration(ARRAYS, &to, 0), KT_OK);
    _LD_Info target = {};
    ASSERT_EQ(KT_LD_GetTargetLDInfo(ARRAYS, 0, &target), KT_OK);
    EXPECT_EQ(target.SubLDCount, 2);
    advance(HOUR);
    EXPECT_EQ(dgInfo(ARRAYS, 0).SubVDCount, 2);
    EXPECT_EQ(vdInfo(ARRAYS, 0).SubLDCount, 2);
}

// Two of stated sizes with a gap between them, and one of what is left.
TEST_F(Raid, AnArrayGrowsWhereNoSizeWasStated) {
    makeArray(KT_RAID5, {0, 1, 2}, {6000, 4000, 2000, 0});
    ASSERT_EQ(KT_LD_Delete(ARRAYS, 1, 0), KT_OK);
    const KT_U64 rest = vdInfo(ARRAYS, 3).Size;
    ASSERT_EQ(migrateDg(ARRAYS, 0, KT_RAID5, {0, 1, 2, 3, 4}), KT_OK);
    advance(90 * HOUR);
    EXPECT_EQ(vdInfo(ARRAYS, 0).Size, 6000 * MB);
    EXPECT_EQ(vdInfo(ARRAYS, 2).Size, 2000 * MB);
    EXPECT_EQ(vdInfo(ARRAYS, 3).Size, 2 * rest);
    const _DG_Info array = dgInfo(ARRAYS, 0);
    const std::vector<KT_U16> vds(array.VDIDs, array.VDIDs + array.VDSlotCount);
    EXPECT_EQ(vds, (std::vector<KT_U16>{0, KT_NO_ID, 2, KT_NO_ID, 3}));
    const std::vector<KT_U64> sizes(array.VDSlotSize, array.VDSlotSize + 4);
    EXPECT_EQ(sizes, (std::vector<KT_U64>{6000 * MB, 14000 * MB, 2000 * MB, 2000 * MB})) << "the gap took up its half";
    ASSERT_EQ(createVd(KT_RAID5, 14000), KT_OK);
}

TEST_F(Raid, AMigrationStopsWithoutItsTarget) {
    makeArray(KT_RAID1, {0, 1}, {4000});
    makeArray(KT_RAID1, {4, 5}, {4000}, 1);
    ASSERT_EQ(migrateDg(ARRAYS, 0, KT_RAID5, {0, 1, 2, 3}), KT_OK);
    EXPECT_EQ(migrateDg(ARRAYS, 1, KT_RAID5, {4, 5, 6}), KT_ERR_ONE_ARRAY_MIGRATION);
    newEvents(ARRAYS);
    ASSERT_EQ(KT_PD_StartMediaPatrol(ARRAYS, 2), KT_OK);
    EXPECT_EQ(newEvents(ARRAYS), (Events{"2/17 of 2", "2/25 of 2"})) << "waits on new disks too";
    advance(30);
    ASSERT_EQ(KT_DG_BGAControl(ARRAYS, 0, KT_CONTROL_STOP), KT_OK);
    ASSERT_EQ(KT_DG_BGAControl(ARRAYS, 0, KT_CONTROL_RESTART), KT_OK);
    EXPECT_EQ(activity(ARRAYS, 0), "32/1 30") << "what has moved stays moved";
    disk(ARRAYS, outside::pullDisk, 2);
    disk(ARRAYS, outside::pullDisk, 3);
    newEvents(ARRAYS);
    advance(HOUR);
    EXPECT_EQ(newEvents(ARRAYS), std::vector<std::string>());
    EXPECT_EQ(vdInfo(ARRAYS, 0).Status, KT_VD_OFFLINE);
    EXPECT_EQ(dgInfo(ARRAYS, 0).RaidMode, KT_RAID1);
    EXPECT_EQ(activity(ARRAYS, 0), "32/5 30");
    EXPECT_EQ(KT_DG_BGAControl(ARRAYS, 0, KT_CONTROL_RESTART), KT_ERR_VD_NOT_READY);
    disk(ARRAYS, outside::insertDisk, 3);
    EXPECT_EQ(vdInfo(ARRAYS, 0).Status, KT_VD_DEGRADED) << "one of RAID5's disks may be missing";
    EXPECT_EQ(activity(ARRAYS, 0), "32/1 30");
    advance(HOUR);
    disk(ARRAYS, outside::insertDisk, 2);
    EXPECT_EQ(activity(ARRAYS, 0), "1/1 0") << "it has kept its place";
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
    ASSERT_EQ(migrateLd(PLAIN, 0, KT_RAID5, {1, 2, 5}), KT_OK);
    for (const KT_U8 adapter : {ARRAYS, PLAIN}) {
        disk(adapter, outside::pullDisk, 0);
        ASSERT_EQ(KT_Flash_Erase(adapter, KT_PAGE_PD_FORCE), KT_OK);
        advance(HOUR);
        const Ids firsts = members(adapter, 0);
        EXPECT_EQ(firsts, (adapter == PLAIN ? Ids{0, 1, 4} : Ids{0, 1}));
        EXPECT_EQ(members(adapter, 1), (Ids{2, 3}));
        for (const KT_U16 lost : Ids{1, 2}) { // a member of each comes home after a spare has stood in
            disk(adapter, outside::pullDisk, lost);
            EXPECT_EQ(activity(adapter, lost == 1 ? 0 : 1), "1/1 0");
            advance(HOUR);
            disk(adapter, outside::insertDisk, lost);
            advance(HOUR);
        }
        EXPECT_EQ(members(adapter, 0), firsts);
        EXPECT_EQ(members(adapter, 1), (Ids{2, 3}));
    }
    for (const KT_U16 id : Ids{0, 1}) {
        KT_U16 linked = 0;
        ASSERT_EQ(KT_VDHDD_GetLink(ARRAYS, id, &linked), KT_OK);
        EXPECT_EQ(linked, id == 0 ? 6 : 5);
        const _DG_Info array = dgInfo(ARRAYS, id);
        EXPECT_EQ(Ids(array.PDIDs, array.PDIDs + 2), members(ARRAYS, id));
        EXPECT_EQ(array.SparePDIDs[0], id == 0 ? KT_NO_ID : 4);
    }
}

// Its members are all that an array without virtual disks has.
TEST_F(Raid, AnArrayIsNotSetDownWithItsDisks) {
    ASSERT_EQ(createDg(KT_RAID5, {0, 1, 2}), KT_OK);
    EXPECT_EQ(KT_PD_SetHDStatus(ARRAYS, 0, 0), KT_OK);
    EXPECT_EQ(KT_PD_SetHDStatus(ARRAYS, 1, 0), KT_ERR_PD_CANNOT_SET_DOWN);
    EXPECT_EQ(roleOf(ARRAYS, 1), KT_PD_MEMBER);
}

TEST_F(Raid, WipingTakesAMemberAway) {
    ASSERT_EQ(createLd(KT_RAID1, {0, 1}, 4000 * MB), KT_OK);
    advance(60);
    EXPECT_EQ(KT_PD_WipeHDMDD(PLAIN, 0, 0), KT_ERR_PD_ASSIGNED);
    EXPECT_EQ(KT_PD_WipeHDMDD(ARRAYS, 10, 1), KT_ERR_PD_HAS_OS);
    ASSERT_EQ(KT_PD_WipeHDMDD(PLAIN, 0, 1), KT_OK);
    EXPECT_EQ(roleOf(PLAIN, 0), 0);
    EXPECT_EQ(members(PLAIN, 0), (Ids{KT_NO_ID, 1}));
    EXPECT_EQ(vdInfo(PLAIN, 0).Status, KT_VD_DEGRADED);
    EXPECT_EQ(activity(PLAIN, 0), "0/0 0");
}
