// Migration: what is refused, in which order things are asked, and the records that a start sends.
#include "tests/seam/activity.h"

namespace {

using Migrate = Activity;

// What both commands print, the first for a virtual disk, the second for an array.
void expectBoth(const std::string& line, const std::string& vd, const std::string& array, int result = 0) {
    for (bool arrays : {false, true}) {
        arrayBasedRaid = arrays;
        expect(line, arrays ? array : vd, result);
    }
}

TEST_F(Migrate, LevelAndDiskCountMustFit) {
    const std::string ofBoth = R"(
migrate -l 2 -d 1,2 => RAID5 needs at least 3 PDs.
migrate -l 2 -r 50 -d 1,2,3,9,8 => RAID50 needs least 6 or more even number of PDs.
migrate -l 2 {-d 1,2,3,9|-a size -r 6 -d 1,2,3,9} -q 300 => -q : invalid number of parity disks '300'
migrate -l 2 -d {1,3,9|7,8,9} => Target PDs need to include ALL member disks [1 2 3 ].
)";
    expectRows(changes, ofBoth + R"(
migrate -l 2 -r 1 -d 1,2,3 => \n Abort migration!!! Redundancy level is degraded from RAID5 to RAID1
migrate -l 2 -r 6{| -d 1,2} => RAID6 needs least 3 PDs.
migrate -l 2 -r 6 -d 1,2,3,9 -q {1|4|300} => Number of parity disks should be at least 2 and less than 4.
migrate -l 2 -r 60 -d 1,2,3,9 => RAID60 needs least 6 or more even number of PDs.
)");
    arrayBasedRaid = true;
    expectRows(changes, ofBoth + R"(
migrate -l 2 -r 1 -d 1,2,3 => \n Abort migration!!! Redundancy level is degraded from RAID5 to RAID1.
migrate -l 2 -r 6 -d {1,2|1,2,3} => RAID6 needs least 4 PDs.
migrate -l 2 -r 6 -d 1,2,3,9 -q {1|4|300} => Number of parity disks should be at between 2 and 3.
migrate -l 2 -r 60 -d 1,2,3,9,8,7 => RAID60 needs least 8 or more even number of PDs.
)");
    seam.size = 10;
    vd().Size = array().TotalManagedSpace = 11;
    gAdapterInfo[0].LogicalDriverMode = KT_MODE_RAID5;
    const std::string smaller = "\nTarget VD size can not smaller than source VD.\n";
    expectBoth("migrate -l 2 -r 6 -d 1,2,3,9", smaller, smaller, 1);
    seam.size = 11;
    const std::string level = "Specified RAID mode is not supported.\n";
    expectBoth("migrate -l 2 -r 6 -d 1,2", level, level, 1);
    EXPECT_TRUE(changes().empty());
}

TEST_F(Migrate, EveryMemberDiskStays) {
    // A block that cannot be read is not listed, but the disk behind it is not forgotten.
    seam.statuses["KT_BLK_GetInfo 12"] = KT_ERR_INVALID_BLOCK;
    expect("migrate -l 2 -d 1,2,3,9", "Target PDs need to include ALL member disks [1 3 ].\n", 1);
    // A disk that is gone has no place in the list.
    vd().BlockIDs[1] = array().PDIDs[1] = KT_NO_ID;
    expectBoth("migrate -l 2 -d 1,3,9", "Start migration successfully\n", "Start migrate successfully\n");
}

TEST_F(Migrate, NewDisksMustBeUsable) {
    const std::tuple<KT_U8, const char*> roles[] = {{KT_PD_OFFLINE | KT_PD_FOREIGN, "Offline"},
                                                    {KT_PD_GLOBAL_SPARE, "Spare"},
                                                    {KT_PD_DEDICATED_SPARE | KT_PD_FOREIGN, "Spare"},
                                                    {KT_PD_FOREIGN, "Foreign"}};
    for (const auto& [role, named] : roles) {
        disk(9).Status = role;
        expectBoth("migrate -l 2 -d 1,2,3,9",
                   std::string(named) + " disk 9 can not be used as target of a migration.\n",
                   "Target PD 9 is not free.\n", 1);
    }
    disk(9).Status = KT_PD_MEMBER;
    expect("migrate -l 2 -d 1,2,3,9", "Target PD 9 is not free.\n", 1);
    // A disk of another virtual disk is not free on controllers that look at blocks; one of this virtual disk is.
    arrayBasedRaid = false;
    disk(9) = {9, KT_NO_ID, 0, {}};
    seam.blocks.push_back(seam.blocks[0]);
    seam.blocks.back().HDID = 9;
    seam.blocks.back().LDID = 3;
    EXPECT_TRUE(changes().empty());
    seam.calls.clear();
    expect("migrate -l 2 -d 1,2,3,9", "Not free disk 9 can not be used to migration VD.\n", 1);
    EXPECT_EQ(seam.calls, Calls(4, "KT_BLK_GetInfo"));
}

TEST_F(Migrate, RecordsOfAStart) {
    seam.size = vd().Size = array().TotalManagedSpace = 4000;
    expect("migrate -l 2 -r 6 -d 9,1,2,1,3", "Start migration successfully\n");
    // clang-format off
    const _Create_LD_Param ld = {.RaidMode = KT_RAID6, .HDCount = 4, .NumParityDisk = 2, .SectorCoefficient = 8,
                                 .LDID = 2, .HDIDs = {9, 1, 2, 3}};
    // clang-format on
    EXPECT_EQ(bytesOf(ld), seam.sent["KT_LD_StartMigration"]);
    EXPECT_EQ(reads(), (Calls{"KT_BLK_GetInfo", "KT_BLK_GetInfo", "KT_BLK_GetInfo", "KT_BLK_GetInfo", "KT_LD_GetInfo 2",
                              "KT_LD_GetMigratedLdSize 2 6 2", "KT_LD_GetStatus 2", "KT_BLK_GetInfo 11",
                              "KT_BLK_GetInfo 12", "KT_BLK_GetInfo 13", "KT_PD_GetHDRaidStatus 9"}));
    seam.calls.clear();
    arrayBasedRaid = true;
    expect("migrate -l 2 -r 6 -q 3 -d 9,1,2,3", "Start migrate successfully\n");
    const _CreateOrModify_DG_Param dg = {
        .DGID = 2, .RaidMode = KT_RAID6, .NumParityDisk = 3, .PDCount = 4, .PDIDs = {9, 1, 2, 3}};
    EXPECT_EQ(bytesOf(dg), seam.sent["KT_DG_StartMigration"]);
    EXPECT_EQ(reads(), (Calls{"KT_DG_GetInfo 2", "KT_DG_StartMigration 1 2 6 3", "KT_PD_GetHDRaidStatus 9",
                              "KT_PD_GetFreeSpaceInfo 9"}));
}

// What an array has of parity disks is not given up unasked; a new level starts with its own number.
TEST_F(Migrate, ArrayKeepsItsParityDisks) {
    const std::tuple<KT_U8, KT_U8, const char*, const char*> cases[] = {
        {KT_RAID6, 3, "", " 6 3"},   {KT_RAID6, 3, "-r 6 ", " 6 3"},   {KT_RAID6, 3, "-q 2 ", " 6 2"},
        {KT_RAID60, 6, "", " 96 6"}, {KT_RAID6, 3, "-r 60 ", " 96 4"}, {KT_RAID5, 1, "-r 6 ", " 6 2"},
        {KT_RAID6, 0, "", " 6 2"}, // an array that does not say how many
        {KT_RAID5, 1, "", " 5 0"},
    };
    for (const auto& [level, parity, options, asked] : cases) {
        SCOPED_TRACE(std::string(options) + "from level " + std::to_string(level));
        layOut();
        arrayBasedRaid = true;
        array().RaidMode = level;
        array().NumParityDisk = parity;
        std::string sent[2];
        for (bool start : {false, true}) {
            seam.calls.clear();
            run(std::string("migrate -l 2 ") + (start ? "" : "-a size ") + options + "-d 1,2,3,9,8,7,6,5");
            EXPECT_EQ(seam.calls[1], std::string("KT_DG_StartMigration 1 2") + asked);
            sent[start] = seam.sent["KT_DG_StartMigration"];
        }
        EXPECT_EQ(sent[false], sent[true]);
    }
}

TEST_F(Migrate, SizesAreToldAndDoneWithout) {
    seam.size = 4000;
    expectBoth("migrate -a size -l 2", "Migrate VD size = 3 M\n", "Migrated size will be 3 M\n");
    // Without the new size a start goes on.
    seam.size = 0;
    vd().Size = array().TotalManagedSpace = 4000;
    seam.statuses = {{"KT_LD_GetMigratedLdSize", KT_ERR_FAILED}, {"KT_DG_StartMigration 1", KT_ERR_FAILED}};
    expectBoth("migrate -l 2 -d 1,2,3,9",
               "\nUnable to get migrate size of VD 2 (error 1: Failed).\nStart migration successfully\n",
               "\nFailed to get migration size (error 1: Failed).\nStart migrate successfully\n");
}

TEST_F(Migrate, QuestionComesBeforeTheMembersAreCounted) {
    vdStatus().BgaExt = KT_BGAEXT_MEDIA_PATROL;
    array().PDBgaRunning = 1;
    const std::string question = " will stop Media patrol on PD. Do you want to continue?(y or n)\n"
                                 "Target PDs need to include ALL member disks [1 2 3 ].\n";
    expect(run("migrate -l 2 -d 1,2,9", "y\n"), "Migrate VD" + question, 1);
    arrayBasedRaid = true;
    expect(run("migrate -l 2 -d 1,2,9", "y\n"), "Migrate Array" + question, 1);
}

} // namespace
