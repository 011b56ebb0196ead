// Which disk takes a lost one's place, and which never does.
#include "frame.h"
#include "outside.h"

// A RAID5 on disks 0 to 2, whose own spare 3 is larger than the spares of the adapter: 4 is large, 5 as large as the
// members, 6 too small. 7 runs the system, 8 is optical, 9 has a partition table and is free.
static const char LAB[] = R"({"adapters": [{"type": "array-based", "config": {"CopyBackOn": 0}, "disks": [
  {"count": 3, "size": "100GB"}, {"size": "4TB"}, {"size": "2TB", "spare": "global"},
  {"size": "100GB", "spare": "global"}, {"size": "50GB", "spare": "global"}, {"size": "100GB", "os": true},
  {"type": "ATAPI"}, {"size": "100GB", "mbr": true}],
  "arrays": [{"level": "RAID5", "disks": [0, 1, 2], "spares": [3], "virtualDisks": [{"size": "1GB"}]}]}]})";
static const uint64_t HOUR = 3600;

struct Spares : LabTest<LAB> {
    void fail(KT_U16 pd) const { EXPECT_EQ(outside::failDisk(0, pd), KT_OK); }
    void pull(KT_U16 pd) const { EXPECT_EQ(outside::pullDisk(0, pd), KT_OK); }
    void insert(KT_U16 pd) const { EXPECT_EQ(outside::insertDisk(0, pd), KT_OK); }
};

static Ids members() {
    const _DG_Info info = dgInfo(0, 0);
    return Ids(info.PDIDs, info.PDIDs + info.PDCount);
}

static bool hasMbr(KT_U16 pd) {
    _HD_MBR_Info info = {};
    info.HDCount = 1;
    info.HDIDs[0] = pd;
    EXPECT_EQ(KT_PD_GetMBRInfo(0, &info), KT_OK);
    return info.hasMBR[0] != 0;
}

TEST_F(Spares, TheArraysOwnComesFirstThenTheSmallestThatFits) {
    fail(0);
    EXPECT_EQ(members(), (Ids{3, 1, 2}));
    advance(HOUR);
    fail(1);
    EXPECT_EQ(members(), (Ids{3, 5, 2}));
    advance(HOUR);
    fail(2);
    EXPECT_EQ(members(), (Ids{3, 5, 4}));
    advance(HOUR);
    newEvents();
    fail(3);
    EXPECT_EQ(members(), (Ids{3, 5, 4})) << "the one that is left is too small";
    EXPECT_EQ(newEvents(), (Events{"2/4 of 3", "2/2 of 3", "1/4 of 0", "12/20 of 6"}));
}

TEST_F(Spares, AreWhatTheyWereWhenTheyComeBack) {
    for (const KT_U16 pd : Ids{3, 5}) {
        const KT_U8 role = roleOf(0, pd);
        EXPECT_EQ(role, pd == 3 ? KT_PD_DEDICATED_SPARE : KT_PD_GLOBAL_SPARE);
        pull(pd);
        EXPECT_EQ(dgInfo(0, 0).SparePDCount, pd == 3 ? 0 : 1);
        insert(pd);
        EXPECT_EQ(roleOf(0, pd), role);
        EXPECT_EQ(pdConfig(0, pd).Online, 1);
    }
    fail(0);
    EXPECT_EQ(members(), (Ids{3, 1, 2}));
    rebuildByHand(0);
    _Adapter_Config_V2 config = {};
    ASSERT_EQ(KT_Adapter_GetConfig(0, &config), KT_OK);
    config.CopyBackOn = 1;
    ASSERT_EQ(KT_Adapter_SetConfig(0, &config), KT_OK);
    advance(HOUR);
    pull(1);
    pull(3);
    ASSERT_EQ(vdInfo(0, 0).Status, KT_VD_OFFLINE);
    insert(3);
    EXPECT_EQ(vdInfo(0, 0).Status, KT_VD_DEGRADED) << "the member that left last, though in another one's place";
    EXPECT_EQ(roleOf(0, 3), KT_PD_MEMBER | KT_PD_DEDICATED_SPARE | KT_PD_SPARE_IN_USE);
}

TEST_F(Spares, NoRebuildGoesOntoTheSystemOrOntoAnOpticalDrive) {
    rebuildByHand(0);
    fail(0);
    const auto rebuildOn = [](KT_U16 pd) { return KT_LD_DG_StartRebuild(0, 0, 1, &pd); };
    EXPECT_EQ(rebuildOn(7), KT_ERR_PD_HAS_OS);
    EXPECT_EQ(rebuildOn(8), KT_ERR_ATAPI);
    EXPECT_EQ(rebuildOn(9), KT_OK);
    EXPECT_FALSE(hasMbr(9)) << "the array's data took its place";
}

// A partition table says that somebody uses the disk.
TEST_F(Spares, ADiskIsRebuiltInItsOldPlaceUnlessItHasAPartitionTable) {
    for (const bool mbr : {false, true}) {
        const std::string disk = mbr ? R"({"size": "100GB", "mbr": true})" : R"({"size": "100GB"})";
        start((R"({"adapters": [{"type": "array-based", "disks": [)" + disk + R"(, {"size": "100GB"}], "arrays": [
          {"level": "RAID1", "disks": [0, 1], "virtualDisks": [{"size": "1GB"}]}]}]})")
                  .c_str());
        pull(0);
        insert(0);
        EXPECT_EQ(roleOf(0, 0), mbr ? 0 : KT_PD_MEMBER);
    }
}

TEST_F(Spares, WipingTakesThePartitionTableAway) {
    ASSERT_TRUE(hasMbr(9));
    ASSERT_EQ(KT_PD_WipeHDMDD(0, 9, 0), KT_OK);
    EXPECT_FALSE(hasMbr(9));
}

TEST_F(Spares, ASpareThatIsReleasedIsAFreeDisk) {
    ASSERT_EQ(KT_PD_Spare2FreeHD(0, 5), KT_OK);
    EXPECT_EQ(newEvents(), (Events{"2/10 of 5", "2/54 of 5"}));
    EXPECT_EQ(roleOf(0, 5), 0);
    ASSERT_EQ(KT_PD_Spare2FreeHD(0, 3), KT_OK);
    EXPECT_EQ(dgInfo(0, 0).SparePDIDs[0], KT_NO_ID) << "the array has it no longer";
}
