// delete, assign and wipe: the questions, what is done for each answer, and what follows from each status.
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
} // namespace

TEST_F(Removal, OfVirtualDisksAsksForWhatItStops) {
    std::map<std::string, std::string> texts = {
        {"sure", "Are you sure you want to delete this virtual disk? (y or n)"},
        {"patrol", "Delete VD will stop Media patrol on PD. Do you want to continue?(y or n)"},
        {"done", "Delete VD 3 successfully."},
        {"again", "Please input y or n."},
        {"busy", "Virtual disk is currently having BGA"}};
    _LD_STATUS& vd = seam.ldStatuses[0];
    expectSteps(texts, R"(
delete -o VD -i 3 < x,,Y => $sure\n$again\n$again\n$done | KT_LD_GetStatus 3; KT_LD_Delete 3 1
delete -o VD -i 3 < {n|NO} => $sure | KT_LD_GetStatus 3
delete -o VD -i 3 => $sure | KT_LD_GetStatus 3
)");
    vd.BgaExt = KT_BGAEXT_MEDIA_PATROL;
    expectSteps(texts, R"(
delete -o VD -i 3 < y,n =88> $sure\n$patrol | KT_LD_GetStatus 3
delete -o VD -i 3 < y,y => $sure\n$patrol\n$done | KT_LD_GetStatus 3; KT_LD_Delete 3 1
)");
    gAdapterInfo[0].MaxDiskGroup = 0;
    for (KT_U8 state : {KT_VD_OFFLINE, KT_VD_FOREIGN}) {
        vd = {state, KT_BGA_REBUILD, 0, KT_STATE_RUNNING, KT_BGAEXT_MEDIA_PATROL, 3};
        expectSteps(texts, "delete -o vd -i 3 < y => $sure\\n$done | KT_LD_GetStatus 3; KT_LD_Delete 3 0");
    }
    const std::tuple<KT_U8, const char*> activities[] = {
        {KT_BGA_REBUILD, "rebuilding"},
        {KT_BGA_CHECK_FIX, "having consistency check"},
        {KT_BGA_CHECK, "having consistency check"},
        {KT_BGA_INIT_QUICK, "initializing"},
        {KT_BGA_INIT_FOREGROUND, "initializing"},
        {KT_BGA_MIGRATION, "migrating"},
        {KT_BGA_INIT_BACKGROUND, "initializing"},
        {KT_BGA_COPY_BACK, "doing copy back"},
        {0, "having BGA"},
    };
    texts["stopped"] = "KT_LD_GetStatus 3; KT_LD_BGAControl 3 7; KT_LD_Delete 3 1";
    for (const auto& [activity, named] : activities) {
        vd = {KT_VD_DEGRADED, activity, 0, KT_STATE_PAUSED, 0, 3};
        texts["doing"] = "\\nVD 3 is " + std::string(named) + ", do you still want to delete it? (y or n)";
        // That an activity cannot be stopped shows in the deletion.
        expectSteps(texts, R"(
delete -o VD -i 3 ! KT_LD_BGAControl=153 < y,n => $sure\n$doing | KT_LD_GetStatus 3
delete -o VD -i 3 ! KT_LD_BGAControl=153 < y,y => $sure\n$doing\n$done | $stopped
delete -o ld -i 3 -f ! KT_LD_BGAControl=153 < y => $sure\n$done | $stopped
delete -o vd -i 3 --waiveconfirmation ! KT_LD_BGAControl=153 => $done | $stopped
)");
    }
    vd.BgaState = 0x80;
    expectSteps(texts, R"(
delete -o VD -i 3 ! KT_LD_Delete=61 < y =61> $sure\nFailed to delete VD 3 (error 61: $busy). | KT_LD_GetStatus 3; KT_LD_Delete 3 1
)");
}

TEST_F(Removal, OfArraysAndSparesAsksForWhatItStops) {
    const std::map<std::string, std::string> texts = {
        {"sure", "Are you sure you want to delete this array? (y or n)"},
        {"full", "At least one virtual disk is on the specified array"},
        {"done", "Delete the spare disk 5 successfully."},
        {"patrol", "Uset spare disk will stop Media patrol on PD 5. Do you want to continue?(y or n)"},
        {"none", "Specified physical disk is not a spare drive"},
        {"made", "KT_PD_GetHDRaidStatus 5; KT_PD_Spare2FreeHD 5"}};
    KT_U8& role = seam.disks[0].Status;
    expectSteps(texts, R"(
delete -o array -i 0 < n => $sure | KT_DG_GetInfo 0
delete -o array -i 0 < y => $sure\nDelete array 0 successfully. | KT_DG_GetInfo 0; KT_DG_Delete 0
delete -o array -i 0 ! KT_DG_Delete=76 < y =76> $sure\nFailed to delete array 0 (error 76: $full).
)");
    expectSteps("delete -o spare -i {5|6} => PD {} is not spare disk. | KT_PD_GetHDRaidStatus {}");
    role = KT_PD_GLOBAL_SPARE;
    expectSteps(texts, "delete -o spare -i 5 => $done | $made");
    role = KT_PD_DEDICATED_SPARE | KT_PD_MEDIA_PATROL;
    expectSteps(texts, R"(
delete -o spare -i 5 < n =88> $patrol | KT_PD_GetHDRaidStatus 5
delete -o spare -i 5 < y => $patrol\n$done | $made
delete -o spare -i 5 --waiveconfirmation ! KT_PD_Spare2FreeHD=53 =53> Failed to delete spare disk 5 (error 53: $none). | $made
)");
    role |= KT_PD_SPARE_IN_USE;
    expectSteps(R"(
delete -o spare -i 5 =82> Unable to delete spare disk 5  (error 89: target spare disk is using) | KT_PD_GetHDRaidStatus 5
delete -o spare -i 5 ! KT_PD_GetHDRaidStatus=9 =9> \nUnable to get info of spare 5 (error 9: Invalid physical disk id) | KT_PD_GetHDRaidStatus 5
)");
}

TEST_F(Removal, AssignsSparesAndWipes) {
    expect("assign -d 5", "\nSucceeded to assign the disk as a global spare disk.\n");
    EXPECT_EQ((Calls{"KT_PD_GetMBRInfo", "KT_PD_FreeHD2GlobalSpare 5"}), seam.calls);
    EXPECT_EQ(bytesOf(_HD_MBR_Info{.HDCount = 1, .HDIDs = {5}}), seam.sent["KT_PD_GetMBRInfo"]);
    seam.disksWithFileSystem = {5};
    expectSteps({{"asked", "PD 5 has file system on it. Data may get lost if it is assigned as spare disk.\\n"
                           "Are you sure you want to assign it as spare disk? (y or n)"},
                 {"small", "Disk space is too small to be assigned as spare drive"}},
                R"(
assign -o HBA -d 5 < {n|N} => $asked | KT_PD_GetMBRInfo
assign -o HBA -d 5 => $asked | KT_PD_GetMBRInfo
assign -o array -d 5 -a 300 < x => $asked\n\nSucceeded to assign the disk as a dedicated spare disk. | KT_PD_GetMBRInfo; KT_PD_FreeHD2DGSpare 5 300
assign -d 5 --waiveconfirmation ! KT_PD_FreeHD2GlobalSpare=77 =77> \nFailed to assign disk 5 as global spare disk (error 77: $small).
assign -o array -a 1 -d 5 ! KT_PD_FreeHD2DGSpare=17 < y =17> $asked\n\nFailed to assign disk 5 as a spare disk to array 1 (error 17: Invalid array id).
assign -d 5 --waiveconfirmation ! KT_PD_GetMBRInfo=9 =1> \nFailed to assign spare disk (error 9: Invalid physical disk id). | KT_PD_GetMBRInfo
wipe -d 254 => \nWipe PD 254 is returned successfully. | KT_PD_WipeHDMDD 254 0
wipe -d 4 -f => \nWipe PD 4 is returned successfully. | KT_PD_WipeHDMDD 4 1
)");
}
