// What stands before a start: options, what the adapter supports, the object, the target disks and the question.
#include "tests/seam/activity.h"
#include "tests/seam/commands.h"

namespace {

struct Start : SeamTest {
    Start() { layOut(); }
};

TEST_F(Start, ArgumentsAreRefusedBeforeAnythingIsRead) {
    const char* help = "Description:short\nlong help\n";
    expectRefused({
        {doInit, "init -o pd -l 2", "-o : invalid object 'pd'\n"},
        {doInit, "init -a halt -l 2", "-a : invalid action 'halt'\n"},
        {doInit, "init -a Stop -l 2", "-a : invalid action 'Stop'\n"},
        {doInit, "init -l 65538", "-l : VD id should be a number\n"},
        {doInit, "init -l 2 -t 1", help, 0},
        {doInit, "init -h", help, 0},
        {doCC, "cc -o array -l 2", "-o : invalid object 'array', should be VD\n"},
        {doCC, "cc -l two", "-l : invalid vd 'two'\n"},
        {doCC, "cc -l 2 -t fix", "-t : invalid argument 'fix'\n"},
        {doRebuild, "rebuild -l 2", "At least one target PD is required\n"},
        {doRebuild, "rebuild -l 2 -d 8,9", "-d: Only One PD is needed for rebuilding!\n"},
        {doRebuild, "rebuild -l 2 -d 65545", "-d:invalid PD IDs 65545\n"},
        {doRebuildV2, "rebuild -l a2 -d 9", "-l : Array id should be a number\n"},
        {doRebuildV2, "rebuild -l 2", "At least one target PD is required\n"},
        {doRebuildV2, "rebuild -l 2 -d ,9,y", "-d:invalid PD IDs ,9,y\n"},
        {doMP, "mp -d 1,2", "-d : invalid pd id\n"},
        {doCopyBack, "copyback -l x", "-l : Array id should be a number\n"},
        {doCopyBack, "copyback -l 2 -d 9", help, 0},
        {doPause, "pause -c 256", "-c : id should be a number\n"},
    });
    gAdapterInfo[0].Features = static_cast<KT_U8>(~(KT_FEATURE_REBUILD | KT_FEATURE_MEDIA_PATROL));
    expectRefused({{doRebuild, "rebuild -a stop -l 2", "Rebuilding is not supported by this HBA!\n"},
                   {doRebuildV2, "rebuild -l 2 -d 9", "Rebuilding is not supported by this HBA!\n"},
                   {doMP, "mp -d 2", "Media patrol is not supported.\n"}});
}

TEST_F(Start, Raid0IsNeitherInitializedNorChecked) {
    vd().RaidMode = KT_RAID0;
    expect(run(doInit, "init -l 2"), "Full initialization for RAID 0 is not supported.\n", 19);
    expect(run(doCC, "cc -l 2 -t check"), "Consistency check for RAID 0 is not supported.\n", 19);
    EXPECT_EQ(reads(), (Calls{"KT_LD_GetInfo 2", "KT_LD_GetInfo 2"}));
    expect(run(doInit, "init -a stop -l 2"), "\nVD 2 is not initializing.\n");
}

TEST_F(Start, RebuildTakesOneDiskOutsideTheVirtualDisk) {
    // Disk 3 holds a block of virtual disk 2, so on this controller it is not even free.
    expect(run(doRebuild, "rebuild -l 2 -d 3"), "PD 3 is not a free disk and can not be used to rebuild VD.\n", 1);
    gAdapterInfo[0].DevID = 0x4700;
    expect(run(doRebuild, "rebuild -l 2 -d 3"), "\nPD 3 is member disk of VD 2 and can not use to rebuild\n", 1);
    EXPECT_TRUE(changes().empty());
    // The slot of a disk that is gone is empty and is not asked for.
    vd().BlockIDs[1] = KT_NO_ID;
    seam.calls.clear();
    expect(run(doRebuild, "rebuild -l 2 -d 9,9"), "Start rebuild successfully\n");
    EXPECT_EQ(changes(), Calls{"KT_LD_StartRebuild 2 9"});
    EXPECT_EQ(reads(), (Calls{"KT_LD_GetStatus 2", "KT_LD_GetInfo 2", "KT_PD_GetFreeSpaceInfo 9", "KT_BLK_GetInfo 11",
                              "KT_BLK_GetInfo 13"}));
}

TEST_F(Start, ArrayIsRebuiltOnFreeDisksAndItsOwnSpares) {
    array().SmallestAvailablePDSize = seam.freeSpace;
    disk(8) = {8, 2, KT_PD_DEDICATED_SPARE, {}};
    seam.statuses["KT_PD_GetHDInfo_Ext"] = KT_ERR_NOT_SUPPORTED; // the older call answers instead
    expect(run(doRebuildV2, "rebuild -l 2 -d 9,8"), "Start rebuild successfully\n");
    EXPECT_EQ(changes(), Calls{"KT_LD_DG_StartRebuild 2 2 9 8"});
    seam.calls.clear();

    auto refused = [&](const char* text) { expect(run(doRebuildV2, "rebuild -l 2 -d 9,8"), text, 1); };
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
    seam.statuses["KT_PD_GetHDInfo"] = KT_ERR_PD_MISSING;
    --array().SmallestAvailablePDSize;
    EXPECT_EQ(run(doRebuildV2, "rebuild -l 2 -d 9").printed,
              "Unable to get size of PD 9 (error 55: Specified physical disk doesn't exist).\n");
    EXPECT_TRUE(changes().empty());
}

TEST_F(Start, MediaPatrolRunsOnSparesAndAssignedDisks) {
    seam.hdActivities[0].HDID = 9;
    for (KT_U8 role : {KT_PD_MEMBER, KT_PD_GLOBAL_SPARE, KT_PD_DEDICATED_SPARE}) {
        disk(9).Status = role;
        EXPECT_EQ(run(doMP, "mp -d 9").printed, "Start media patrol successfully\n");
    }
    EXPECT_EQ(changes(), (Calls{"KT_PD_StartMediaPatrol 9", "KT_PD_StartMediaPatrol 9", "KT_PD_StartMediaPatrol 9"}));
    for (KT_U8 role : {KT_U8{0}, KT_U8{KT_PD_OFFLINE}, KT_U8{KT_PD_FOREIGN}}) {
        disk(9).Status = role;
        expect(run(doMP, "mp -d 9"), "\nPD 9 is not a spare or assigned disk.\n", 0);
    }
    EXPECT_EQ(changes().size(), 3U);
}

TEST_F(Start, QuestionIsAskedOnlyWhileMediaPatrolRuns) {
    const std::tuple<CommandHandler, const char*, const char*, const char*, const char*> cases[] = {
        {doInit, "init -l 2", "Init VD will stop Media patrol on PD. Do you want to continue?(y or n)\n",
         "KT_LD_StartINIT 2 2", "Start initialization successfully\n"},
        {doCC, "cc -l 2", "Fix VD will stop Media patrol on PD. Do you want to continue?(y or n)\n",
         "KT_LD_StartConsistencyCheck 2 1", "Start consistency check\n"},
        {doCC, "cc -l 2 -t check", "Check VD will stop Media patrol on PD. Do you want to continue?(y or n)\n",
         "KT_LD_StartConsistencyCheck 2 0", "Start consistency check\n"},
        {doRebuild, "rebuild -l 2 -d 9", "Rebuild VD will stop Media patrol on PD. Do you want to continue?(y or n)\n",
         "KT_LD_StartRebuild 2 9", "Start rebuild successfully\n"},
        {doRebuildV2, "rebuild -l 2 -d 9",
         "Rebuild Array will stop Media patrol on PD. Do you want to continue?(y or n)\n",
         "KT_LD_DG_StartRebuild 2 1 9", "Start rebuild successfully\n"},
    };
    for (const auto& [handler, line, question, call, done] : cases) {
        SCOPED_TRACE(line);
        layOut();
        vdStatus().BgaExt = 0xFD;
        EXPECT_EQ(run(handler, line).printed, done);
        vdStatus().BgaExt = KT_BGAEXT_MEDIA_PATROL;
        array().PDBgaRunning = 1;
        expect(run(handler, line, "maybe\nYes\n"), std::string(question) + "Please input y or n.\n" + done);
        EXPECT_EQ(changes(), (Calls{call, call}));
        for (const char* no : {"n\n", "No\n", ""}) {
            expect(run(handler, line, no), question);
        }
        EXPECT_EQ(changes().size(), 2U);
    }
}

TEST_F(Start, PausesAllOfAnAdapterOrSaysWhyNot) {
    expect(run(doPause, "pause -c 3"), "");
    EXPECT_EQ(seam.calls, Calls{"KT_LD_PauseAll 3"});
    seam.statuses["KT_LD_PauseAll"] = KT_ERR_VD_MISSING;
    expect(run(doPause, "pause -c 3"), "\nExecutes  fail (error 59: Specified virtual disk doesn't exist).\n",
           KT_ERR_VD_MISSING);
}

} // namespace
