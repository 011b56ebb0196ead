// What set hands to the library, and a library that answers and does nothing.
#include "tests/seam/seam.h"

namespace {

struct Set : SeamTest {
    Set() {
        gAdapterInfo[0].AlarmSupport = 1;
        gAdapterInfo[0].Features = KT_FEATURE_REBUILD;
    }
};

TEST_F(Set, SaysWhatTheAdapterDidNotTake) {
    seam.adapterConfig.rawimg_update_disabled = 0x77;
    const Outcome outcome = run("set -o hba --alarm on --rebuildrate 30");
    EXPECT_EQ(outcome.result, 1);
    EXPECT_NE(outcome.printed.npos, outcome.printed.find("\nThe adapter did not take --alarm on.\n"
                                                         "The adapter did not take --rebuildrate 30.\n"));
    const _Adapter_Config_V2 expected = {.RebuildRate = 30, .rawimg_update_disabled = 0x77, .AlarmOn = 1};
    EXPECT_EQ(seam.sent["KT_Adapter_SetConfig"], bytesOf(expected));
}

TEST_F(Set, SaysWhatTheAdapterRefused) {
    arrayBasedRaid = true;
    gAdapterInfo[0].AdvancedFeatures = KT_ADV_BBU;
    addDisks(1);
    seam.battery.status = KT_BBU_PRESENT;
    seam.ldConfigs.resize(2);
    seam.ldConfigs[1].LDID = 1;
    const std::map<std::string, std::string> partly = {{"part", "What was changed before that stays changed."},
                                                       {"e5", "error 5 : Data out of range"}};
    seam.hdConfigs.resize(1);
    seam.hdConfigs[0].Online = 1;
    expectSteps(partly, R"(
set -o vd -i 0 -n other ! KT_LD_SetConfig=5 =5> \nUnable to set configuration of VD 0 (error 5: Data out of range)
set -o pd -i 0 -c on --waiveconfirmation ! KT_PD_SetConfig=5 =5> \nUnable to set configuration of hard disk 0 (error 5 : Data out of range).
set -o array -i 7 -n other ! KT_DG_SetConfig=5 =5> \nUnable to set configuration of array 7 (error 5: Data out of range)
set -o hba --alarm on ! KT_Adapter_SetConfig=5 =5> \nUnable to set configuration info of hba 0 (error 5: Data out of range)
set -o hba --mute ! KT_AdapterMute=5 =5> \nUnable to mute the alarm of hba 0 (error 5: Data out of range)
set -o bbu --power charge ! KT_BBU_ChangePower=5 =5> Unable to set power of BBU. (error 5: Data out of range).
set -o pd -i 0 --waiveconfirmation --status offline ! KT_PD_SetHDStatus=5 =5> \nUnable to set hard disk 0 offline (error 5 : Data out of range).
set -o pd -i 0 -c on --status offline --waiveconfirmation ! KT_PD_SetHDStatus=5 =5> \nUnable to set hard disk 0 offline ($e5).\n$part
)");
    seam.hdConfigs[0].Online = 0;
    seam.disks[0].Status = KT_PD_OFFLINE;
    expectSteps(partly, R"(
set -o pd -i 0 --smart on --status online ! KT_PD_SetConfig=5 =5> \nUnable to set configuration of hard disk 0 (error 5 : Data out of range).\n$part
set -o pd -i 0 --smart on --status online ! KT_PD_SetHDStatus=5 =5> \nUnable to set hard disk 0 online (error 5 : Data out of range).
)");
    expectSteps({{"on", "goes on writing to its cache without a battery."},
                 {"ask", "Do you still want to change the settings? (y or n)"}},
                R"(
set -o bbu --power discharge => VD 0 () $on\nVD 1 () $on\n$ask
set -o bbu --power discharge ! KT_LD_GetConfig=5 => What writes to its cache cannot be read (error 5: Data out of range).\n$ask
)");
    seam.disks[0].Status = KT_PD_MEMBER;
    seam.hdConfigs[0].Online = 1;
    seam.statuses = {{"KT_BLK_GetHDBlock", 20}};
    expect("set -o pd -i 0 --status offline",
           "PD 0 is a member.\nWhat PD 0 is needed for cannot be read (error 20: Link time out).\n"
           "Do you still want to change the settings? (y or n)\n");
    seam.hds.clear();
    expect("set -o pd -i 0 --speed 3", "Unable to get info of PD 0 (error 1 : Failed)\n", 1);
    addDisks(1);
    expect("set -o pd -i 0 --speed 12", "PD 0 does not support 12 Gb/s\n", 1);
    seam.battery.status = 0;
    expect("set -o bbu --power charge", "No BBU is found.\n", 16);
    gAdapterInfo[0].Features = 0xFF;
    seam.adapterConfig.AutoRebuildOn = 255;
    expect("set -o hba --mprate 10 --autorebuild on", "--autorebuild is not supported on adapter 0.\n", 1);
    EXPECT_FALSE(seam.sent.contains("KT_Adapter_SetConfig"));
}

} // namespace
