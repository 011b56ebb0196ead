// What checks, patrols, rebuilds and initialisations find on the disks.
#include "frame.h"

#include <regex>

// VD 0 is a RAID5 on disks 0 to 2, VDs 1 and 2 are RAID6 on 3 to 6; 7 is a spare, 8 is free.
static const char SURFACE_LAB[] = R"({"clock": {"seconds": 1767600000, "stopped": true}, "adapters": [
  {"type": "array-based", "disks": [{"count": 7, "size": "4GB"}, {"size": "4GB", "spare": "global"}, {"size": "4GB"}],
   "arrays": [{"level": "RAID5", "disks": [0, 1, 2], "virtualDisks": [{}]},
              {"level": "RAID6", "disks": [3, 4, 5, 6], "virtualDisks": [{"size": "2GB"}, {"size": "1GB"}]}]}]})";

struct Surface : LabTest<SURFACE_LAB> {
    static KT_U8 spoil(KT_U16 pd, KT_U64 lba, Flaw flaw, KT_U32 count = 1) {
        return spoilSectors(0, pd, flaw, lba, count);
    }
    // What is logged after the calls until everything has ended, but for progress.
    static std::string found(std::initializer_list<KT_U8> calls) {
        succeed(calls);
        advance(HOUR);
        return std::regex_replace(newEvents(), std::regex(" (2/23|1/[0-9]*6):[^ ]+"), "");
    }
};

// How many sectors are reallocated, pending and uncorrectable.
static std::vector<KT_U64> counters(KT_U16 pd) {
    return {attribute(0, pd, 0x05).RawValue, attribute(0, pd, 0xC5).RawValue, attribute(0, pd, 0xC6).RawValue};
}

TEST_F(Surface, ACheckFindsAndAFixRepairs) {
    succeed({spoil(2, 0x2010, WRONG, 2), spoil(0, 0x2010, WRONG), spoil(1, 0x9000, UNREADABLE, 3)});
    for (int i = 0; i < 2; ++i) { // 64 rows of two stripes of 128 sectors come before the first
        EXPECT_EQ(found({KT_LD_StartConsistencyCheck(0, 0, 0)}),
                  "1/20:0 1/100:0(0,16400) 2/36:1(40,3,17) 2/37:1(0,36864,3) 1/25:0");
        EXPECT_EQ(counters(1), (std::vector<KT_U64>{0, 3, 3}));
        EXPECT_NE(show().find("\"f00003000090000a0000000011"), std::string::npos) << "the drive's sense";
    }
    EXPECT_EQ(found({KT_LD_StartConsistencyCheck(0, 0, 1)}),
              "1/30:0 1/100:0(0,16400) 2/36:1(40,3,17) 2/37:1(0,36864,3) 2/38:1(0,36864,3) 1/35:0");
    EXPECT_EQ(counters(1), (std::vector<KT_U64>{3, 0, 0}));
    EXPECT_EQ(found({KT_LD_StartConsistencyCheck(0, 0, 0)}), "1/20:0 1/25:0");
}

TEST_F(Surface, OfTwoFlawsTheWorseStays) {
    const Flaw worse[] = {WRONG, LOST, UNREADABLE};
    for (KT_U64 first = 0; first < 3; ++first) {
        for (KT_U64 second = 0; second < 3; ++second) {
            succeed({spoil(8, 9 * first + second, worse[first])});
            EXPECT_EQ(spoil(8, 9 * first + second, worse[second]), second > first ? KT_OK : KT_ERR_FAILED)
                << first << " then " << second;
        }
    }
}

// Two bad sectors: stripe 1 of disk `second`, and stripe 2 of the disk after it.
TEST_F(Surface, ACheckNamesTheSectorOfTheVirtualDisk) {
    const auto check = [&](const std::string& array, KT_U16 second) {
        start(R"({"adapters": [{"type": "array-based", "disks": [{"count": 6, "size": "4GB"}], "arrays": [{)" + array +
              R"(, "virtualDisks": [{"size": "1GB"}]}]}]})");
        return found({spoil(second, 128 + 0x10, WRONG), spoil(static_cast<KT_U16>(second + 1), 2 * 128 + 0x10, WRONG),
                      KT_LD_StartConsistencyCheck(0, 0, 0)});
    };
    // Every row of stripes is written twice, the second time one disk further on.
    EXPECT_EQ(check(R"("level": "RAID1E", "disks": [0, 1, 2])", 1), "1/20:0 1/100:0(0,16) 1/100:0(0,656) 1/25:0");
    // Four stripes of data a row, the first two in the first half of the disks.
    EXPECT_EQ(check(R"("level": "RAID50", "parts": 2, "disks": [0, 1, 2, 3, 4, 5])", 2),
              "1/20:0 1/100:0(0,528) 1/100:0(0,1296) 1/25:0");
}

// On an adapter whose virtual disks share disks; the second one's blocks begin at LBA 0x200000.
TEST_F(Surface, ANewVirtualDiskHoldsNoneOfTheWrongDataBeforeIt) {
    start(
        R"({"adapters": [{"type": "LD-based", "DevID": 17920, "AdvancedFeatures": 0, "disks": [{"count": 2, "size": "4GB"}], "virtualDisks": [
      {"level": "RAID1", "disks": [0, 1], "size": "1GiB"}, {"level": "RAID1", "disks": [0, 1], "size": "1GiB"}]}]})");
    succeed({spoil(1, 0x80010, WRONG), spoil(1, 0x280010, WRONG), spoil(0, 256, UNREADABLE), KT_LD_Delete(0, 1, 0)});
    _Create_LD_Param param = ldParam(KT_RAID1, {0, 1}, 1024);
    param.InitializationOption = KT_INIT_NONE;
    found({KT_LD_Create(0, &param)});
    EXPECT_EQ(found({KT_LD_StartConsistencyCheck(0, 1, 1)}), "1/30:1 1/35:1");
    EXPECT_EQ(found({KT_LD_StartConsistencyCheck(0, 0, 0)}), "1/20:0 2/37:0(0,256,1) 1/100:0(0,524304) 1/25:0");
}

TEST_F(Surface, APatrolRepairsOnlyWhatTheOthersHold) {
    EXPECT_EQ(found({spoil(0, 100, UNREADABLE), spoil(0, 200, WRONG), KT_PD_StartMediaPatrol(0, 0)}),
              "2/17:0 2/36:0(47,3,17) 2/37:0(0,100,1) 2/38:0(0,100,1) 2/22:0");
    EXPECT_EQ(found({spoil(0, 100, UNREADABLE, 2), spoil(1, 101, UNREADABLE), KT_PD_StartMediaPatrol(0, 0)}),
              "2/17:0 2/36:0(47,3,17) 2/37:0(0,100,1) 2/38:0(0,100,1) 2/37:0(0,101,1) 2/22:0");
    succeed({spoil(7, 100, UNREADABLE)});
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(found({KT_PD_StartMediaPatrol(0, 7)}), "2/17:7 2/36:7(47,3,17) 2/37:7(0,100,1) 2/22:7");
}

TEST_F(Surface, ASectorBeyondTwoTebibytesTakesTwoNumbers) {
    start(R"({"adapters": [{"type": "array-based", "disks": [{"size": "4TB", "spare": "global"}]}]})");
    EXPECT_EQ(found({spoil(0, 0x110000005, UNREADABLE), KT_PD_StartMediaPatrol(0, 0), advance(DAY)}),
              "2/17:0 2/36:0(143,3,17) 2/37:0(1,268435461,1) 2/22:0");
}

TEST_F(Surface, ARebuildMarksWhatIsLostUntilItIsWrittenAgain) {
    EXPECT_EQ(found({spoil(0, 5000, UNREADABLE, 8), failDisk(0, 1)}),
              "2/4:1 2/2:1 1/4:0 2/59:7(7) 1/70:0 2/36:0(40,3,17) 2/37:0(0,5000,8) 2/37:7(0,5000,8,1) 1/75:0 1/1:0");
    EXPECT_EQ(found({KT_PD_StartMediaPatrol(0, 7)}), "2/17:7 2/37:7(0,5000,8,1) 2/22:7");
    EXPECT_EQ(found({KT_LD_StartINIT(0, 0, KT_INIT_QUICK)}), "1/40:0 2/15:0 1/45:0");
    EXPECT_EQ(counters(0), (std::vector<KT_U64>{8, 0, 0}));
    found({spoil(2, 5000, UNREADABLE, 3), KT_LD_StartINIT(0, 0, KT_INIT_QUICK)});
    EXPECT_EQ(counters(2), (std::vector<KT_U64>{3, 0, 0})) << "nobody had read them before";
    EXPECT_EQ(found({KT_LD_StartConsistencyCheck(0, 0, 0)}), "1/20:0 1/25:0");
}

TEST_F(Surface, DoubleParityRepairsDuringARebuild) {
    EXPECT_EQ(found({spoil(4, 5000, UNREADABLE), spoil(5, 2000000000 / 512, WRONG), failDisk(0, 3)}),
              "2/4:3 2/2:3 1/5:1 1/5:2 2/59:7(7,1) 1/70:1 1/70:2 2/36:4(40,3,17) 2/37:4(0,5000,1) "
              "2/38:4(0,5000,1) 1/75:1 1/75:2 1/1:1 1/1:2");
}

TEST_F(Surface, AMigrationMarksWhatIsLostOnEveryMember) {
    succeed({spoil(0, 300, UNREADABLE, 2), spoil(1, 301, UNREADABLE)});
    EXPECT_EQ(found({migrateDg(0, 0, KT_RAID6, {0, 1, 2, 8})}),
              "1/80:0 2/36:0(40,3,17) 2/37:0(0,300,1) 2/38:0(0,300,1) 2/37:0(0,301,1) 2/36:1(40,3,17) 2/37:1(0,301,1) "
              "2/37:2(0,301,1,1) 2/37:8(0,301,1,1) 1/85:0");
    EXPECT_EQ(found({KT_PD_StartMediaPatrol(0, 8)}), "2/17:8 2/37:8(0,301,1,1) 2/22:8");
    EXPECT_EQ((Ints{vdInfo(0, 0).NumParityDisk, dgInfo(0, 0).NumParityDisk, dgInfo(0, 1).NumParityDisk}),
              (Ints{2, 2, 2}));
}

// It reads the members from their start to their end while the progress goes from 0 to 100.
TEST_F(Surface, AMigrationMeetsASectorWhenItGetsThere) {
    const _Block_Info block = blockInfo(0, 0);
    succeed({spoil(0, block.StartLBA + block.Size / 2, UNREADABLE), migrateDg(0, 0, KT_RAID6, {0, 1, 2, 8})});
    int at = 0;
    for (newEvents(); newEvents().find("2/37:0") == std::string::npos && at < 100; advance(1))
        at = vdStatus(0, 0).BgaPercentage;
    EXPECT_NEAR(at, 50, 4);
}

TEST_F(Surface, KeepsOnlySoManySectorsOfADisk) {
    EXPECT_EQ(scratch(0, 8, UNREADABLE, 10), 10U);
    succeed({ageDisk(0, 8, "pending", 4), ageDisk(0, 8, "reallocated", 3)});
    EXPECT_EQ(scratch(0, 8, UNREADABLE, 5000), 986U) << "what is pending is unreadable";
    EXPECT_EQ(scratch(0, 8, UNREADABLE, 1), 0U);
    EXPECT_EQ(spoil(8, 1, UNREADABLE), KT_ERR_FAILED);
}

TEST_F(Surface, OneLeapOfTheClockIsManySteps) {
    const auto story = [&](uint64_t step) {
        start(SURFACE_LAB);
        scratch(0, 0, UNREADABLE, 700);
        scratch(0, 1, WRONG, 100);
        scratch(0, 4, UNREADABLE, 30);
        succeed({KT_LD_StartConsistencyCheck(0, 0, 1), KT_PD_StartMediaPatrol(0, 4), failDisk(0, 5)});
        for (uint64_t at = 0; at < 120; at += step)
            LOG_OF(0, advance(step));
        return show();
    };
    const std::string leap = story(120);
    EXPECT_NE(leap.find("\"Code\":38"), leap.npos);
    EXPECT_TRUE(story(1) == leap);
    EXPECT_TRUE(story(8) == leap);
}
