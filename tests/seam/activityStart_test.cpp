// What stands before a start: the object, the target disks and the question.
#include "tests/seam/activity.h"

namespace {

using Start = Activity;

TEST_F(Start, Raid0IsNeitherInitializedNorChecked) {
    vd().RaidMode = KT_RAID0;
    expect("init -l 2", "Full initialization for RAID 0 is not supported.\n", 19);
    expect("cc -l 2 -t check", "Consistency check for RAID 0 is not supported.\n", 19);
    EXPECT_EQ(reads(), (Calls{"KT_LD_GetInfo 2", "KT_LD_GetInfo 2"}));
    expect("init -a stop -l 2", "\nVD 2 is not initializing.\n");
}

TEST_F(Start, RebuildTakesOneDiskOutsideTheVirtualDisk) {
    // Disk 3 holds a block of virtual disk 2, so on this controller it is not even free.
    expect("rebuild -l 2 -d 3", "PD 3 is not a free disk and can not be used to rebuild VD.\n", 1);
    gAdapterInfo[0].DevID = 0x4700;
    expect("rebuild -l 2 -d 3", "\nPD 3 is member disk of VD 2 and can not use to rebuild\n", 1);
    EXPECT_TRUE(changes().empty());
    // The slot of a disk that is gone is empty and is not asked for.
    vd().BlockIDs[1] = KT_NO_ID;
    seam.calls.clear();
    expect("rebuild -l 2 -d 9,9", "Start rebuild successfully\n");
    EXPECT_EQ(changes(), Calls{"KT_LD_StartRebuild 2 9"});
    EXPECT_EQ(reads(), (Calls{"KT_LD_GetStatus 2", "KT_LD_GetInfo 2", "KT_PD_GetFreeSpaceInfo 9", "KT_BLK_GetInfo 11",
                              "KT_BLK_GetInfo 13"}));
}

TEST_F(Start, ArrayIsRebuiltOnFreeDisksAndItsOwnSpares) {
    arrayBasedRaid = true;
    array().SmallestAvailablePDSize = seam.freeSpace;
    disk(8) = {8, 2, KT_PD_DEDICATED_SPARE, {}};
    seam.statuses["KT_PD_GetHDInfo_Ext"] = KT_ERR_NOT_SUPPORTED; // the older call answers instead
    expect("rebuild -l 2 -d 9,8", "Start rebuild successfully\n");
    EXPECT_EQ(changes(), Calls{"KT_LD_DG_StartRebuild 2 2 9 8"});
    seam.calls.clear();

    auto refused = [&](const char* text) { expect("rebuild -l 2 -d 9,8", text, 1); };
    disk(8).DGID = 5;
    refused("PD 8 is dedicated for array 5.\n");
    for (KT_U8 role : {KT_PD_MEMBER, KT_PD_GLOBAL_SPARE, KT_PD_OFFLINE, KT_PD_FOREIGN}) {
        disk(8) = {8, 2, role, {}};
        refused("PD 8 is not a free disk.\n");
    }
    disk(8) = {8, KT_NO_ID, 0, {}};
    seam.hds[9].BlockSize = 4096;
    refused("Block size of PD 9 (4096) doesn't match block size of array 2 (512).\n");
    ++array().SmallestAvailablePDSize;
    refused("PD 9 doesn't have enough space for rebuild.\n");
    EXPECT_TRUE(changes().empty());
}

TEST_F(Start, MediaPatrolRunsOnSparesAndAssignedDisks) {
    seam.hdActivities[0].HDID = 9;
    for (KT_U8 role : std::initializer_list<KT_U8>{0, KT_PD_MEMBER, KT_PD_GLOBAL_SPARE, KT_PD_DEDICATED_SPARE,
                                                   KT_PD_OFFLINE, KT_PD_FOREIGN}) {
        seam.calls.clear();
        disk(9).Status = role;
        const bool runs = role == KT_PD_MEMBER || role == KT_PD_GLOBAL_SPARE || role == KT_PD_DEDICATED_SPARE;
        expect("mp -d 9", runs ? "Start media patrol successfully\n" : "\nPD 9 is not a spare or assigned disk.\n");
        EXPECT_EQ(changes(), runs ? Calls{"KT_PD_StartMediaPatrol 9"} : Calls{});
    }
}

TEST_F(Start, QuestionIsAskedOnlyWhileMediaPatrolRuns) {
    const struct {
        const char *line, *object, *call, *done;
        bool arrays = false;
    } cases[] = {
        {"init -l 2", "Init VD", "KT_LD_StartINIT 2 2", "Start initialization successfully\n"},
        {"cc -l 2", "Fix VD", "KT_LD_StartConsistencyCheck 2 1", "Start consistency check\n"},
        {"cc -l 2 -t check", "Check VD", "KT_LD_StartConsistencyCheck 2 0", "Start consistency check\n"},
        {"rebuild -l 2 -d 9", "Rebuild VD", "KT_LD_StartRebuild 2 9", "Start rebuild successfully\n"},
        {"rebuild -l 2 -d 9", "Rebuild Array", "KT_LD_DG_StartRebuild 2 1 9", "Start rebuild successfully\n", true},
        {"migrate -l 2 -d 1,2,3", "Migrate VD", "KT_LD_StartMigration 2 5 0", "Start migration successfully\n"},
        {"migrate -l 2 -d 1,2,3", "Migrate Array", "KT_DG_StartMigration 0 2 5 0", "Start migrate successfully\n",
         true},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.object);
        layOut();
        arrayBasedRaid = row.arrays;
        vdStatus().BgaExt = 0xFD;
        expect(row.line, row.done);
        vdStatus().BgaExt = KT_BGAEXT_MEDIA_PATROL;
        array().PDBgaRunning = 1;
        const std::string question =
            row.object + std::string(" will stop Media patrol on PD. Do you want to continue?(y or n)\n");
        expect(run(row.line, "maybe\nYes\n"), question + "Please input y or n.\n" + row.done);
        for (const char* no : {"n\n", "No\n", ""})
            expect(run(row.line, no), question);
        EXPECT_EQ(changes(), (Calls{row.call, row.call}));
    }
}

} // namespace
