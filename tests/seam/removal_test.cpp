// delete, assign and wipe: the questions, what is done for each answer, and what follows from each status.
#include <gtest/gtest.h>

#include "tests/seam/seam.h"

namespace {
struct Removal : SeamTest {
    Removal() {
        gAdapterInfo[0].MaxDiskGroup = 8;
        arrayBasedRaid = true;
        seam.ldStatuses = {{KT_VD_ONLINE, 0, 0, 0, 0, 3}};
        seam.disks = {{5, KT_NO_ID, 0, {}}};
        seam.arrays.resize(1);
    }
};

const char sure[] = "Are you sure you want to delete this virtual disk? (y or n)\n";

// The calls are those behind the first one.
void expectStep(const char* line, const char* answers, const std::string& printed, int result, const Calls& calls) {
    seam.calls.clear();
    expect(run(line, answers), printed, result);
    if (!seam.calls.empty()) seam.calls.erase(seam.calls.begin());
    EXPECT_EQ(calls, seam.calls) << line << " " << answers;
}
} // namespace

TEST_F(Removal, OfVirtualDisksAsksForWhatItStops) {
    const char line[] = "delete -o VD -i 3";
    const char deleted[] = "Delete VD 3 successfully.\n";
    const char patrol[] = "Delete VD will stop Media patrol on PD. Do you want to continue?(y or n)\n";
    _LD_STATUS& vd = seam.ldStatuses[0];
    expectStep(line, "x\n\nY\n", sure + std::string("Please input y or n.\nPlease input y or n.\n") + deleted, 0,
               {"KT_LD_Delete 3 1"});
    for (const char* declined : {"n\n", "NO\n", ""}) {
        expectStep(line, declined, sure, 0, {});
    }
    vd.BgaExt = KT_BGAEXT_MEDIA_PATROL;
    expectStep(line, "y\nn\n", sure + std::string(patrol), 88, {});
    expectStep(line, "y\ny\n", sure + std::string(patrol) + deleted, 0, {"KT_LD_Delete 3 1"});
    gAdapterInfo[0].MaxDiskGroup = 0;
    for (KT_U8 state : {KT_VD_OFFLINE, KT_VD_FOREIGN}) {
        vd = {state, KT_BGA_REBUILD, 0, KT_STATE_RUNNING, KT_BGAEXT_MEDIA_PATROL, 3};
        expectStep(line, "y\n", sure + std::string(deleted), 0, {"KT_LD_Delete 3 0"});
    }
    const std::tuple<KT_U8, const char*> activities[] = {
        {KT_BGA_REBUILD, "\nVD 3 is rebuilding,"},
        {KT_BGA_CHECK_FIX, "\nVD 3 is having consistency check,"},
        {KT_BGA_CHECK, "\nVD 3 is having consistency check,"},
        {KT_BGA_INIT_QUICK, "\nVD 3 is initializing,"},
        {KT_BGA_INIT_FOREGROUND, "\nVD 3 is initializing,"},
        {KT_BGA_MIGRATION, "\nVD 3 is migrating,"},
        {KT_BGA_INIT_BACKGROUND, "\nVD 3 is initializing,"},
        {KT_BGA_COPY_BACK, "\nVD 3 is doing copy back,"},
        {0, "\nVD 3 is having BGA,"},
    };
    Calls stopped = {"KT_LD_BGAControl 3 7", "KT_LD_Delete 3 1"};
    seam.statuses["KT_LD_BGAControl"] = 153; // its failure shows in the deletion
    for (const auto& [activity, named] : activities) {
        vd = {KT_VD_DEGRADED, activity, 0, KT_STATE_PAUSED, 0, 3};
        std::string question = std::string(named) + " do you still want to delete it? (y or n)\n";
        expectStep(line, "y\nn\n", sure + question, 0, {});
        expectStep(line, "y\ny\n", sure + question + deleted, 0, stopped);
    }
    expectStep("delete -o ld -i 3 -f", "y\n", sure + std::string(deleted), 0, stopped);
    expectStep("delete -o vd -i 3 --waiveconfirmation", "", deleted, 0, stopped);
    vd.BgaState = 0x80;
    seam.statuses = {{"KT_LD_Delete", 61}};
    expectStep(line, "y\n",
               sure + std::string("Failed to delete VD 3 (error 61: Virtual disk is currently "
                                  "having BGA).\n"),
               61, {"KT_LD_Delete 3 1"});
}

TEST_F(Removal, OfArraysAndSparesAsksForWhatItStops) {
    const char array[] = "delete -o array -i 0";
    const char sureArray[] = "Are you sure you want to delete this array? (y or n)\n";
    expectStep(array, "n\n", sureArray, 0, {});
    expectStep(array, "y\n", sureArray + std::string("Delete array 0 successfully.\n"), 0, {"KT_DG_Delete 0"});
    seam.statuses = {{"KT_DG_Delete", 76}};
    expectStep("delete -o array -i 0 --waiveconfirmation", "",
               "Failed to delete array 0 (error 76: At least one virtual disk is on the specified array).\n", 76,
               {"KT_DG_Delete 0"});

    const char spare[] = "delete -o spare -i 5";
    const char released[] = "Delete the spare disk 5 successfully.\n";
    const char patrol[] = "Uset spare disk will stop Media patrol on PD 5. Do you want to continue?(y or n)\n";
    KT_U8& role = seam.disks[0].Status;
    Calls release = {"KT_PD_Spare2FreeHD 5"};
    expectStep(spare, "", "PD 5 is not spare disk.\n", 0, {});
    expectStep("delete -o spare -i 6", "", "PD 6 is not spare disk.\n", 0, {});
    role = KT_PD_GLOBAL_SPARE;
    expectStep(spare, "", released, 0, release);
    role = KT_PD_DEDICATED_SPARE | KT_PD_MEDIA_PATROL;
    expectStep(spare, "n\n", patrol, 88, {});
    expectStep(spare, "y\n", patrol + std::string(released), 0, release);
    seam.statuses = {{"KT_PD_Spare2FreeHD", 53}};
    expectStep("delete -o spare -i 5 --waiveconfirmation", "",
               "Failed to delete spare disk 5 (error 53: Specified physical disk is not a spare drive).\n", 53,
               release);
    role |= KT_PD_SPARE_IN_USE;
    expectStep(spare, "", "Unable to delete spare disk 5  (error 89: target spare disk is using)\n", 82, {});
    seam.statuses = {{"KT_PD_GetHDRaidStatus", 9}};
    expectStep(spare, "", "\nUnable to get info of spare 5 (error 9: Invalid physical disk id)\n", 9, {});
}

TEST_F(Removal, AssignsSparesAndWipes) {
    const char question[] = "PD 5 has file system on it. Data may get lost if it is assigned as spare disk.\n"
                            "Are you sure you want to assign it as spare disk? (y or n)\n";
    const char global[] = "\nSucceeded to assign the disk as a global spare disk.\n";
    const char dedicated[] = "\nSucceeded to assign the disk as a dedicated spare disk.\n";
    expectStep("assign -d 5", "", global, 0, {"KT_PD_FreeHD2GlobalSpare 5"});
    _HD_MBR_Info asked = {};
    asked.HDCount = 1;
    asked.HDIDs[0] = 5;
    EXPECT_EQ(bytesOf(asked), seam.sent["KT_PD_GetMBRInfo"]);
    seam.disksWithFileSystem = {5};
    for (const char* declined : {"n\n", "N\n", ""}) {
        expectStep("assign -o HBA -d 5", declined, question, 0, {});
    }
    expectStep("assign -o array -d 5 -a 300", "x\n", question + std::string(dedicated), 0,
               {"KT_PD_FreeHD2DGSpare 5 300"});
    seam.statuses = {{"KT_PD_FreeHD2GlobalSpare", 77}, {"KT_PD_FreeHD2DGSpare", 17}};
    expectStep("assign -d 5 --waiveconfirmation", "",
               "\nFailed to assign disk 5 as global spare disk (error 77: Disk space is too small to be "
               "assigned as spare drive).\n",
               77, {"KT_PD_FreeHD2GlobalSpare 5"});
    expectStep("assign -o array -a 1 -d 5 --waiveconfirmation", "",
               "\nFailed to assign disk 5 as a spare disk to array 1 (error 17: Invalid array id).\n", 17,
               {"KT_PD_FreeHD2DGSpare 5 1"});
    seam.statuses = {{"KT_PD_GetMBRInfo", 9}};
    expectStep("assign -d 5 --waiveconfirmation", "",
               "\nFailed to assign spare disk (error 9: Invalid physical disk id).\n", 1, {});

    seam.statuses.clear();
    expect("wipe -d 254", "\nWipe PD 254 is returned successfully.\n");
    EXPECT_EQ("KT_PD_WipeHDMDD 254 0", seam.calls.back());
    expect("wipe -d 4 -f", "\nWipe PD 4 is returned successfully.\n");
    EXPECT_EQ("KT_PD_WipeHDMDD 4 1", seam.calls.back());
}
