// What set hands to the library, and a library that answers and does nothing.
#include "tests/seam/seam.h"

extern "C" {
KT_U8 KT_Adapter_SetConfig(KT_U8, const _Adapter_Config_V2* config) {
    if (seam.keepsSettings) seam.adapterConfig = *config;
    return take("KT_Adapter_SetConfig", "KT_Adapter_SetConfig", *config);
}
CALL(KT_AdapterMute, (KT_U8), note(name))
CALL(KT_BBU_ChangePower, (KT_U8, KT_U8 power), note(name, power))
CALL(KT_SSD_SmartReadData, (KT_U8, KT_U16 pd, _SSD_Smart_Data*), note(name, pd))
CALL(KT_SSD_Diagnostic, (KT_U8, KT_U16 pd, _SSD_Diagnostic*), note(name, pd))
CALL(KT_Download_SSD_Microcode, (KT_U8, KT_U16 pd, KT_U8 mode, _Flash_Data*), note(name, pd, mode))
}

namespace {

struct Set : SeamTest {
    Set() {
        gAdapterInfo[0].AlarmSupport = 1;
        gAdapterInfo[0].Features = KT_FEATURE_REBUILD;
    }
};

TEST_F(Set, SaysWhatTheAdapterDidNotTake) {
    seam.rawDisabled = 0x77;
    Outcome outcome = run("set -o hba --alarm on --rebuildrate 30");
    EXPECT_EQ(outcome.result, 1);
    EXPECT_NE(outcome.printed.find("\nThe adapter did not take --alarm on.\n"
                                   "The adapter did not take --rebuildrate 30.\n"),
              std::string::npos)
        << outcome.printed;
    _Adapter_Config_V2 expected = {};
    expected.AlarmOn = 1;
    expected.RebuildRate = 30;
    expected.rawimg_update_disabled = 0x77;
    EXPECT_EQ(seam.sent["KT_Adapter_SetConfig"], bytesOf(expected));
}

TEST_F(Set, EachSettingOfAnAdapterHasItsPlaceAndItsLine) {
    seam.keepsSettings = true;
    const struct {
        const char* option;
        size_t at; // in the record
        const char* line;
    } rows[] = {
        {"autorebuild", 0, "Auto Rebuild:            "},   {"efficiency", 1, "Optimize CPU efficiency: "},
        {"bgarate", 2, "BGA Rate:                "},       {"syncrate", 3, "Syncronization Rate:     "},
        {"initrate", 4, "Initialization Rate:     "},      {"rebuildrate", 5, "Rebuild Rate:            "},
        {"migrationrate", 6, "Migration Rate:          "}, {"copybackrate", 7, "Copyback Rate:           "},
        {"mprate", 8, "Media Patrol Rate:       "},        {"pollsmart", 9, "Poll SMART Status:       "},
        {"copyback", 10, "Copy Back:               "},     {"consolidation", 11, "Module Consolidation:    "},
        {"alarm", 13, "Alarm:                   "},
    };
    gAdapterInfo[0].Features = 0xFF;
    gAdapterInfo[0].AdvancedFeatures = KT_ADV_CPU_EFFICIENCY | KT_ADV_MODULE_CONSOLIDATE;
    for (const auto& row : rows) {
        const bool rate = strstr(row.option, "rate") != nullptr;
        const std::string words = std::string("set -o hba --") + row.option;
        Outcome outcome = run(words + (rate ? " 100" : " on"));
        EXPECT_EQ(0, outcome.result);
        EXPECT_NE(std::string::npos, outcome.printed.find(std::string(row.line) + (rate ? "100 %\n" : "on\n")));
        std::string sent(sizeof(_Adapter_Config_V2), '\0');
        sent[row.at] = rate ? 100 : 1;
        EXPECT_EQ(sent, seam.sent["KT_Adapter_SetConfig"]) << row.option;
        EXPECT_EQ(0, run(words + (rate ? " 0" : " off")).result);
        EXPECT_EQ(std::string(sent.size(), '\0'), seam.sent["KT_Adapter_SetConfig"]) << row.option;
    }
}

TEST_F(Set, SaysWhatTheAdapterRefused) {
    arrayBasedRaid = true;
    gAdapterInfo[0].AdvancedFeatures = KT_ADV_BBU;
    addDisks(1);
    seam.battery.status = KT_BBU_PRESENT;
    seam.ldConfigs.resize(1);
    const struct {
        const char *words, *call, *printed;
        bool online = true; // the disk
    } rows[] = {
        {"vd -i 0 -n other", "KT_LD_SetConfig", "\nUnable to set configuration of VD 0 (error 5: Data out of range)\n"},
        {"pd -i 0 -c on", "KT_PD_SetConfig",
         "\nUnable to set configuration of hard disk 0 (error 5 : Data out of range).\n"},
        {"array -i 7 -n other", "KT_DG_SetConfig",
         "\nUnable to set configuration of array 7 (error 5: Data out of range)\n"},
        {"hba --alarm on", "KT_Adapter_SetConfig",
         "\nUnable to set configuration info of hba 0 (error 5: Data out of range)\n"},
        {"hba --mute", "KT_AdapterMute", "\nUnable to mute the alarm of hba 0 (error 5: Data out of range)\n"},
        {"bbu --power charge", "KT_BBU_ChangePower", "Unable to set power of BBU. (error 5: Data out of range).\n"},
        {"pd -i 0 --status offline", "KT_PD_SetHDStatus",
         "\nUnable to set hard disk 0 offline (error 5 : Data out of range).\n"},
        {"pd -i 0 -c on --status offline", "KT_PD_SetHDStatus",
         "\nUnable to set hard disk 0 offline (error 5 : Data out of range).\n"
         "What was changed before that stays changed.\n"},
        {"pd -i 0 --smart on --status online", "KT_PD_SetConfig",
         "\nUnable to set configuration of hard disk 0 (error 5 : Data out of range).\n"
         "What was changed before that stays changed.\n",
         false},
        {"pd -i 0 --smart on --status online", "KT_PD_SetHDStatus",
         "\nUnable to set hard disk 0 online (error 5 : Data out of range).\n", false},
    };
    for (const auto& row : rows) {
        seam.statuses = {{row.call, 5}};
        seam.hdConfigs = {{}};
        seam.hdConfigs[0].Online = row.online;
        seam.disks[0].Status = row.online ? 0 : KT_PD_OFFLINE;
        expect(run(std::string("set --waiveconfirmation -o ") + row.words), row.printed, 5);
    }
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
}

} // namespace
