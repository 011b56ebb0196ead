// Migration: what is refused, in which order things are asked, and the records that a start sends.
#include <cstring>

#include "Functions/migrate/migrate.h"
#include "Functions/migrate/migrateV2.h"
#include "Public/raidRules.h"
#include "tests/seam/activity.h"

namespace {

struct Migrate : SeamTest {
    Migrate() { layOut(); }
};

// An outcome that both commands share, or each of them has for itself (null: not a case of that command).
struct Row {
    const char* line;
    const char* vd;
    const char* array;
};

void expectRefusals(const Row* rows, size_t count, bool nothingRead) {
    for (size_t i = 0; i < count; ++i) {
        for (bool arrays : {false, true}) {
            const char* text = arrays ? rows[i].array : rows[i].vd;
            if (text == nullptr) continue;
            SCOPED_TRACE(std::string(rows[i].line) + (arrays ? " on an array" : " on a virtual disk"));
            seam.calls.clear();
            expect(run(arrays ? doMigrateV2 : doMigrate, rows[i].line), text, 1);
            EXPECT_TRUE(!nothingRead || reads().empty());
            EXPECT_TRUE(changes().empty());
        }
    }
}

TEST_F(Migrate, ArgumentsAreRefusedBeforeAnythingIsRead) {
    const char* oneOf = "migrate: one of -r or -d option must be specified\n";
    const Row rows[] = {
        {"migrate", "migrate: option -l is required\n", "migrate: option -l is required\n"},
        {"migrate -l 2", oneOf, oneOf},
        {"migrate -l 2 -q 3", oneOf, oneOf},
        {"migrate -l 2 -r 6", nullptr, "No target disk is specified.\n"},
        {"migrate -l x", "-l : invalid VD id 'x'\n", "-l : invalid VD id 'x'\n"},
        {"migrate -a begin -l 2", "-a : invalid action 'begin'\n", "-a : invalid action 'begin'\n"},
        {"migrate -l 2 -r 7", "-r : invalid raid mode 7\n", "-r : invalid raid mode 7\n"},
        {"migrate -l 2 -q x", "-q : invalid number of parity disks 'x'\n", nullptr},
        {"migrate -l 2 -d 1,2,a", "-d : invalid PD ID '1,2,a'\n", "-d : invalid PD ID '1,2,a'\n"},
        // A second use of an option ends the command without a word.
        {"migrate -l 2 -l 2", "", ""},
        {"migrate -a size -a size -l 2", "", ""},
        {"migrate -l 2 -r 5 -r 6", "", ""},
        {"migrate -l 2 -q 2 -q 3", "", ""},
        {"migrate -d 1 -d 2", "", ""},
    };
    expectRefusals(rows, std::size(rows), true);
    gAdapterInfo[0].Features = static_cast<KT_U8>(~KT_FEATURE_MIGRATION);
    const Row unsupported = {"migrate -l 2 -l 2", "This adapter does not support migration.\n",
                             "Migration is not supported on adapter 0.\n"};
    expectRefusals(&unsupported, 1, true);
}

TEST_F(Migrate, LevelAndDiskCountMustFit) {
    const char* parity60 = "RAID60 need at least 4 even number of parity disks.\n";
    const char* fewer = "# of parity disks (6) should be less than # of total disks (6).\n";
    const Row rows[] = {
        {"migrate -l 2 -r 1 -d 1,2,3", "\n Abort migration!!! Redundancy level is degraded from RAID5 to RAID1\n",
         "\n Abort migration!!! Redundancy level is degraded from RAID5 to RAID1.\n"},
        {"migrate -l 2 -d 1,2", "RAID5 needs at least 3 PDs.\n", "RAID5 needs at least 3 PDs.\n"},
        {"migrate -l 2 -r 6", "RAID6 needs least 3 PDs.\n", nullptr},
        {"migrate -l 2 -r 6 -d 1,2", "RAID6 needs least 3 PDs.\n", "RAID6 needs least 4 PDs.\n"},
        {"migrate -l 2 -r 6 -d 1,2,3", nullptr, "RAID6 needs least 4 PDs.\n"},
        {"migrate -l 2 -r 6 -q 4 -d 1,2,3,9", "Number of parity disks should be at least 2 and less than 4.\n",
         "Number of parity disks should be at between 2 and 3.\n"},
        {"migrate -l 2 -r 6 -q 1 -d 1,2,3,9", "Number of parity disks should be at least 2 and less than 4.\n",
         "Number of parity disks should be at between 2 and 3.\n"},
        {"migrate -l 2 -r 50 -d 1,2,3,9,8", "RAID50 needs least 6 or more even number of PDs.\n",
         "RAID50 needs least 6 or more even number of PDs.\n"},
        {"migrate -l 2 -r 60 -d 1,2,3,9", "RAID60 needs least 6 or more even number of PDs.\n", nullptr},
        {"migrate -l 2 -r 60 -d 1,2,3,9,8,7", nullptr, "RAID60 needs least 8 or more even number of PDs.\n"},
        {"migrate -l 2 -r 60 -q 5 -d 1,2,3,9,8,7", parity60, nullptr},
        {"migrate -l 2 -r 60 -q 2 -d 1,2,3,9,8,7,6,5", parity60, parity60},
        {"migrate -l 2 -r 60 -q 6 -d 1,2,3,9,8,7", fewer, nullptr},
    };
    expectRefusals(rows, std::size(rows), false);
    seam.size = 10;
    vd().Size = array().TotalManagedSpace = 11;
    const char* smaller = "\nTarget VD size can not smaller than source VD.\n";
    gAdapterInfo[0].LogicalDriverMode = KT_MODE_RAID5;
    const Row size = {"migrate -l 2 -r 6 -d 1,2,3,9", smaller, smaller};
    expectRefusals(&size, 1, false);
    seam.size = 11;
    const char* level = "Specified RAID mode is not supported.\n";
    const Row mode = {"migrate -l 2 -r 6 -d 1,2", level, level};
    expectRefusals(&mode, 1, false);
}

TEST_F(Migrate, EveryMemberDiskStays) {
    const char* missing = "Target PDs need to include ALL member disks [1 2 3 ].\n";
    const Row rows[] = {{"migrate -l 2 -d 1,3,9", missing, missing}, {"migrate -l 2 -d 7,8,9", missing, missing}};
    expectRefusals(rows, std::size(rows), false);
    // A block that cannot be read is not listed, but the disk behind it is not forgotten.
    seam.statuses["KT_BLK_GetInfo 12"] = KT_ERR_INVALID_BLOCK;
    EXPECT_EQ(run(doMigrate, "migrate -l 2 -d 1,2,3,9").printed,
              "Target PDs need to include ALL member disks [1 3 ].\n");
    // A disk that is gone has no place in the list.
    vd().BlockIDs[1] = array().PDIDs[1] = KT_NO_ID;
    EXPECT_EQ(run(doMigrate, "migrate -l 2 -d 1,3,9").printed, "Start migration successfully\n");
    EXPECT_EQ(run(doMigrateV2, "migrate -l 2 -d 1,3,9").printed, "Start migrate successfully\n");
}

TEST_F(Migrate, NewDisksMustBeUsable) {
    const std::tuple<KT_U8, const char*> roles[] = {
        {KT_PD_OFFLINE | KT_PD_FOREIGN, "Offline disk 9 can not be used as target of a migration.\n"},
        {KT_PD_GLOBAL_SPARE, "Spare disk 9 can not be used as target of a migration.\n"},
        {KT_PD_DEDICATED_SPARE | KT_PD_FOREIGN, "Spare disk 9 can not be used as target of a migration.\n"},
        {KT_PD_FOREIGN, "Foreign disk 9 can not be used as target of a migration.\n"},
        {KT_PD_MEMBER, nullptr}};
    for (const auto& [role, vd] : roles) {
        disk(9).Status = role;
        const Row refusal = {"migrate -l 2 -d 1,2,3,9", vd, "Target PD 9 is not free.\n"};
        expectRefusals(&refusal, 1, false);
    }
    // A disk of another virtual disk is not free on controllers that look at blocks; one of this virtual disk is.
    disk(9) = {9, KT_NO_ID, 0, {}};
    seam.blocks.push_back(seam.blocks[0]);
    seam.blocks.back().HDID = 9;
    seam.blocks.back().LDID = 3;
    const Row taken = {"migrate -l 2 -d 1,2,3,9", "Not free disk 9 can not be used to migration VD.\n", nullptr};
    expectRefusals(&taken, 1, false);
    EXPECT_EQ(reads(), Calls(4, "KT_BLK_GetInfo"));
}

TEST_F(Migrate, RecordsOfAStart) {
    seam.size = 4000;
    vd().Size = array().TotalManagedSpace = 4000;
    EXPECT_EQ(run(doMigrate, "migrate -l 2 -r 6 -d 9,1,2,1,3").printed, "Start migration successfully\n");
    _Create_LD_Param ld = {};
    ld.RaidMode = KT_RAID6;
    ld.HDCount = 4;
    ld.NumParityDisk = 2;
    ld.SectorCoefficient = 8;
    ld.LDID = 2;
    const KT_U16 disks[] = {9, 1, 2, 3};
    memcpy(ld.HDIDs, disks, sizeof disks);
    EXPECT_EQ(bytesOf(ld), seam.sent["KT_LD_StartMigration"]);
    EXPECT_EQ(reads(), (Calls{"KT_BLK_GetInfo", "KT_BLK_GetInfo", "KT_BLK_GetInfo", "KT_BLK_GetInfo", "KT_LD_GetInfo 2",
                              "KT_LD_GetMigratedLdSize 2 6 2", "KT_LD_GetStatus 2", "KT_BLK_GetInfo 11",
                              "KT_BLK_GetInfo 12", "KT_BLK_GetInfo 13", "KT_PD_GetHDRaidStatus 9"}));
    seam.calls.clear();
    EXPECT_EQ(run(doMigrateV2, "migrate -l 2 -r 6 -q 3 -d 9,1,2,3").printed, "Start migrate successfully\n");
    _CreateOrModify_DG_Param dg = {};
    dg.DGID = 2;
    dg.RaidMode = KT_RAID6;
    dg.NumParityDisk = 3;
    dg.PDCount = 4;
    memcpy(dg.PDIDs, disks, sizeof disks);
    EXPECT_EQ(bytesOf(dg), seam.sent["KT_DG_StartMigration"]);
    EXPECT_EQ(reads(), (Calls{"KT_DG_GetInfo 2", "KT_DG_StartMigration size 2 6 3", "KT_PD_GetHDRaidStatus 9",
                              "KT_PD_GetFreeSpaceInfo 9"}));
}

// What an array has of parity disks is not given up unasked; a new level starts with its own number.
TEST_F(Migrate, ArrayKeepsItsParityDisks) {
    const std::tuple<KT_U8, KT_U8, const char*, const char*> cases[] = {
        {KT_RAID6, 3, "", "6 3"},   {KT_RAID6, 3, "-r 6 ", "6 3"},   {KT_RAID6, 3, "-q 2 ", "6 2"},
        {KT_RAID60, 6, "", "96 6"}, {KT_RAID6, 3, "-r 60 ", "96 4"}, {KT_RAID5, 1, "-r 6 ", "6 2"},
        {KT_RAID6, 0, "", "6 2"}, // an array that does not say how many
        {KT_RAID5, 1, "", "5 0"},
    };
    for (const auto& [level, parity, options, asked] : cases) {
        SCOPED_TRACE(std::string(options) + "from level " + std::to_string(level));
        layOut();
        array().RaidMode = level;
        array().NumParityDisk = parity;
        for (const char* action : {"", "-a size "}) {
            run(doMigrateV2, std::string("migrate -l 2 ") + action + options + "-d 1,2,3,9,8,7,6,5");
            _CreateOrModify_DG_Param sent;
            memcpy(&sent, seam.sent["KT_DG_StartMigration size"].data(), sizeof sent);
            EXPECT_EQ(std::to_string(sent.RaidMode) + " " + std::to_string(sent.NumParityDisk), asked);
        }
        EXPECT_EQ(seam.sent["KT_DG_StartMigration"], seam.sent["KT_DG_StartMigration size"]);
    }
}

TEST_F(Migrate, SizesAreToldAndDoneWithout) {
    seam.size = 4000;
    EXPECT_EQ(run(doMigrate, "migrate -a size -l 2").printed, "Migrate VD size = 3 M\n");
    EXPECT_EQ(run(doMigrateV2, "migrate -a size -l 2").printed, "Migrated size will be 3 M\n");
    // Without the new size a start goes on.
    layOut();
    vd().Size = array().TotalManagedSpace = 4000;
    seam.statuses = {{"KT_LD_GetMigratedLdSize", KT_ERR_FAILED}, {"KT_DG_StartMigration size", KT_ERR_FAILED}};
    EXPECT_EQ(run(doMigrate, "migrate -l 2 -d 1,2,3,9").printed,
              "\nUnable to get migrate size of VD 2 (error 1: Failed).\nStart migration successfully\n");
    EXPECT_EQ(run(doMigrateV2, "migrate -l 2 -d 1,2,3,9").printed,
              "\nFailed to get migration size (error 1: Failed).\nStart migrate successfully\n");
}

TEST_F(Migrate, QuestionComesBeforeTheMembersAreCounted) {
    vdStatus().BgaExt = KT_BGAEXT_MEDIA_PATROL;
    array().PDBgaRunning = 1;
    const std::string vd = "Migrate VD will stop Media patrol on PD. Do you want to continue?(y or n)\n";
    const std::string array = "Migrate Array will stop Media patrol on PD. Do you want to continue?(y or n)\n";
    expect(run(doMigrate, "migrate -l 2 -d 1,2,9", "n\n"), vd);
    EXPECT_EQ(run(doMigrateV2, "migrate -l 2 -d 1,2,9", "").result, 0);
    EXPECT_EQ(run(doMigrateV2, "migrate -l 2 -d 1,2,9", "y\n").printed,
              array + "Target PDs need to include ALL member disks [1 2 3 ].\n");
    EXPECT_TRUE(changes().empty());
    EXPECT_EQ(run(doMigrate, "migrate -l 2 -d 1,2,3", "y\n").printed, vd + "Start migration successfully\n");
    EXPECT_EQ(changes().size(), 1U);
}

} // namespace
