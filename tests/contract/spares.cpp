// Which disk takes a lost one's place, and which never does.
#include "frame.h"

// A RAID5 on disks 0 to 2, whose own spare 3 is larger than the spares of the adapter: 4 is large, 5 as large as the
// members, 6 too small. 7 runs the system, 8 is optical, 9 has a partition table and is free.
static const char SPARES_LAB[] = R"({"adapters": [{"type": "array-based", "config": {"CopyBackOn": 0}, "disks": [
  {"count": 3, "size": "100GB"}, {"size": "4TB"}, {"size": "2TB", "spare": "global"},
  {"size": "100GB", "spare": "global"}, {"size": "50GB", "spare": "global"}, {"size": "100GB", "os": true},
  {"type": "ATAPI"}, {"size": "100GB", "mbr": true}],
  "arrays": [{"level": "RAID5", "disks": [0, 1, 2], "spares": [3], "virtualDisks": [{"size": "1GB"}]}]}]})";

struct Spares : LabTest<SPARES_LAB> {};

static bool hasMbr(KT_U16 pd) {
    _HD_MBR_Info info = {};
    info.HDCount = 1;
    info.HDIDs[0] = pd;
    succeed({KT_PD_GetMBRInfo(0, &info)});
    return info.hasMBR[0] != 0;
}

TEST_F(Spares, TheArraysOwnComesFirstThenTheSmallestThatFits) {
    EXPECT_EQ(look(0, 0, {failDisk(0, 0)}), "degraded 3 1 2, 1/1 0");
    EXPECT_EQ(look(0, 0, {advance(HOUR), failDisk(0, 1)}), "degraded 3 5 2, 1/1 0");
    EXPECT_EQ(look(0, 0, {advance(HOUR), failDisk(0, 2)}), "degraded 3 5 4, 1/1 0");
    advance(HOUR);
    EXPECT_EQ(LOG_OF(0, failDisk(0, 3)), "2/4:3 2/2:3 1/4:0 12/20:6");
    EXPECT_EQ(look(0, 0), "degraded 3 5 4") << "the one that is left is too small";
}

TEST_F(Spares, AreWhatTheyWereWhenTheyComeBack) {
    for (const KT_U16 pd : Ids{3, 5}) {
        const KT_U8 role = roleOf(0, pd);
        EXPECT_EQ(role, pd == 3 ? KT_PD_DEDICATED_SPARE : KT_PD_GLOBAL_SPARE);
        succeed({pullDisk(0, pd)});
        EXPECT_EQ(dgInfo(0, 0).SparePDCount, pd == 3 ? 0 : 1);
        succeed({insertDisk(0, pd)});
        EXPECT_EQ((Ints{roleOf(0, pd), pdConfig(0, pd).Online}), (Ints{role, 1}));
    }
    succeed({failDisk(0, 0), configure(0, &Config::AutoRebuildOn, 0), configure(0, &Config::CopyBackOn, 1)});
    EXPECT_EQ(look(0, 0, {advance(HOUR), pullDisk(0, 1), pullDisk(0, 3)}), "offline - - 2");
    EXPECT_EQ(look(0, 0, {insertDisk(0, 3)}), "degraded 3 - 2") << "it left last, though in another one's place";
    EXPECT_EQ(roleOf(0, 3), KT_PD_MEMBER | KT_PD_DEDICATED_SPARE | KT_PD_SPARE_IN_USE);
}

TEST_F(Spares, NoRebuildGoesOntoTheSystemOrOntoAnOpticalDrive) {
    succeed({configure(0, &Config::AutoRebuildOn, 0), failDisk(0, 0)});
    const auto rebuildOn = [](KT_U16 pd) { return KT_LD_DG_StartRebuild(0, 0, 1, &pd); };
    EXPECT_EQ(rebuildOn(7), KT_ERR_PD_HAS_OS);
    EXPECT_EQ(rebuildOn(8), KT_ERR_ATAPI);
    EXPECT_EQ(rebuildOn(9), KT_OK);
    EXPECT_FALSE(hasMbr(9)) << "the array's data took its place";
}

// A partition table says that somebody uses the disk.
TEST_F(Spares, ADiskIsRebuiltInItsOldPlaceUnlessItHasAPartitionTable) {
    start(R"({"adapters": [{"disks": [{"mbr": true}, {"count": 3}], "arrays": [
      {"level": "RAID1", "disks": [0, 1], "virtualDisks": [{"size": "1GB"}]},
      {"level": "RAID1", "disks": [2, 3], "virtualDisks": [{"size": "1GB"}]}]}]})");
    succeed({pullDisk(0, 0), insertDisk(0, 0), pullDisk(0, 2), insertDisk(0, 2)});
    EXPECT_EQ((Ints{roleOf(0, 0), roleOf(0, 2)}), (Ints{0, KT_PD_MEMBER}));
}

TEST_F(Spares, WhatIsWipedOrReleasedIsAFreeDisk) {
    EXPECT_TRUE(hasMbr(9));
    succeed({KT_PD_WipeHDMDD(0, 9, 0)});
    EXPECT_FALSE(hasMbr(9));
    EXPECT_EQ(LOG_OF(0, KT_PD_Spare2FreeHD(0, 5)), "2/10:5 2/54:5");
    EXPECT_EQ(roleOf(0, 5), 0);
}
