// What set hands to the library, and a library that answers and does nothing.
#include <gtest/gtest.h>

#include "tests/seam/commands.h"
#include "tests/seam/seam.h"

extern "C" {
KT_U8 KT_Adapter_SetConfig(KT_U8, const _Adapter_Config_V2* config) {
    if (seam.keepsSettings) seam.adapterConfig = *config;
    return take("KT_Adapter_SetConfig", "", *config);
}
KT_U8 KT_LD_SetConfig(KT_U8, KT_U16 vd, const _LD_Config*) {
    return answer("KT_LD_SetConfig", text(vd));
}
KT_U8 KT_PD_SetConfig(KT_U8, KT_U16 pd, const _HD_CONFIG*) {
    return answer("KT_PD_SetConfig", text(pd));
}
NOTES2(KT_PD_SetHDStatus, KT_U16, KT_U8)
KT_U8 KT_AdapterMute(KT_U8) {
    return answer("KT_AdapterMute", "");
}
NOTES1(KT_BBU_ChangePower, KT_U8)
KT_U8 KT_SSD_SmartReadData(KT_U8, KT_U16 pd, _SSD_Smart_Data*) {
    return note("KT_SSD_SmartReadData", pd);
}
KT_U8 KT_SSD_Diagnostic(KT_U8, KT_U16 pd, _SSD_Diagnostic*) {
    return note("KT_SSD_Diagnostic", pd);
}
KT_U8 KT_Download_SSD_Microcode(KT_U8, KT_U16 pd, KT_U8 mode, _Flash_Data*) {
    return note("KT_Download_SSD_Microcode", pd, mode);
}
}

namespace {

struct Set : SeamTest {
    Set() {
        gAdapterInfo[0].AlarmSupport = 1;
        gAdapterInfo[0].Features = KT_FEATURE_REBUILD;
    }
};

TEST_F(Set, RefusesOptionsBeforeAnyCall) {
    arrayBasedRaid = true;
    const char badObject[] = "', should be VD, PD, Array, HBA or BBU\n";
    const std::string disk = std::string("-o : invalid object 'disk") + badObject;
    const std::string driver = std::string("-o : invalid object 'driver") + badObject;
    expectRefused(doSetV2, "set",
                  {{"", "set: option -o is required\n"},
                   {"-o disk", disk.c_str()},
                   {"-o driver", driver.c_str()},
                   {"-o vd -c on", "set: option -i is required\n"},
                   {"-o hba -i 0 --alarm on", "set: option -i does not belong to -o hba\n"},
                   {"-o vd -i 65536 -c on", "-i : id is not a number\n"},
                   {"-o pd -i x -c on", "-i : id is not a number\n"},
                   {"-o vd -c on -i \t", "-i : id is not a number\n"},
                   {"-o pd -i 3", "set: nothing to set is given for -o pd\n"},
                   {"-o pd -i 3 -n name", "set: option -n does not belong to -o pd\n"},
                   {"-o hba --smart on", "set: option --smart does not belong to -o hba\n"},
                   {"-o pd -i 3 --smart on --smart on", ErrorDuplicate},
                   {"-o vd -i 3 -c on -w wt", "-c on and -w wt contradict each other\n"},
                   {"-o vd -i 3 -n a-b", "-n, name must be numeric, character, space or underline. Now is a-b\n"},
                   {"-o vd -i 3 -n 12345678901234567", "-n : length of name should be no more than 16 characters\n"},
                   {"-o vd -i 3 -n \"\"", "-n : the name is empty\n"},
                   {"-o vd -i 3 -c maybe", "-c : invalid cache mode 'maybe'\n"},
                   {"-o vd -i 3 -w auto", "-w : invalid write policy 'auto'\n"},
                   {"-o vd -i 3 -p on", "-p : invalid read policy 'on'\n"},
                   {"-o vd -i 3 --restore on", "--restore is not supported on adapter 0.\n"},
                   {"-o array -i 0 -c auto", "-c : invalid value 'auto', should be on or off\n"},
                   {"-o pd -i 3 --speed 5", "--speed : invalid value '5', should be 1.5, 3, 6 or 12\n"},
                   {"-o pd -i 3 --status up", "--status : invalid value 'up', should be online or offline\n"},
                   {"-o hba --mprate 101", "--mprate : invalid value '101', should be 0 to 100\n"},
                   {"-o hba --mprate \t", "--mprate : invalid value '', should be 0 to 100\n"},
                   {"-o hba --mprate 4294967297", "--mprate : invalid value '4294967297', should be 0 to 100\n"},
                   {"-o hba --copyback 1", "--copyback : invalid value '1', should be on or off\n"},
                   {"-o bbu --power on", "--power : invalid value 'on', should be charge, discharge or stop\n"},
                   {"-o bbu --power stop", "--power is not supported on adapter 0.\n"}});
    arrayBasedRaid = false;
    expectRefused(doSet, "set",
                  {{"-o bbu -i 3", "-o : invalid object 'bbu', should be VD, PD, HBA or Driver\n"},
                   {"-o array -i 0 -c on", "-o : array is not supported on this adapter\n"},
                   {"-o vd -i 3 -n 12345678901", "-n : length of name should be no more than 10 characters\n"}});
    gAdapterInfo[0].AlarmSupport = gAdapterInfo[0].Features = 0;
    gAdapterInfo[0].AdvancedFeatures = KT_ADV_NO_SMART | KT_ADV_NO_WRITE_CACHE | KT_ADV_NO_READ_CACHE;
    for (const char* option : {"--alarm", "--copyback", "--pollsmart", "--consolidation"}) {
        const std::string words = std::string("-o hba ") + option + " on";
        const std::string printed = std::string(option) + " is not supported on adapter 0.\n";
        expectRefused(doSet, "set", {{words.c_str(), printed.c_str()}});
    }
    expectRefused(doSet, "set",
                  {{"-o hba --mute", "--mute is not supported on adapter 0.\n"},
                   {"-o hba --mprate 1", "--mprate is not supported on adapter 0.\n"},
                   {"-o hba --bgarate 1", "--bgarate is not supported on adapter 0.\n"},
                   {"-o pd -i 0 --smart on", "--smart is not supported on adapter 0.\n"},
                   {"-o vd -i 0 -c on", "VD cache is not supported on adapter 0.\n"},
                   {"-o vd -i 0 -w wb", "VD write cache is not supported on adapter 0.\n"},
                   {"-o vd -i 0 -p ra", "VD read cache is not supported on adapter 0.\n"}});
}

// No disk is asked about before its options are right, for none of the commands for solid-state disks.
TEST_F(Set, SolidStateDisksAreNotAskedWithWrongOptions) {
    expectRefused(doSsdDiagnostic, "ssd",
                  {{"-d x", "-d : invalid PD ID 'x'\n"},
                   {"-d 65536", "-d : invalid PD ID '65536'\n"},
                   {"-d \t", "-d : invalid PD ID ''\n"},
                   {"-d 11 -a run", "-a : invalid action 'run'.\n"},
                   {"-d 11 -a start -t full", "-t : invalid test 'full'.\n"},
                   {"-d 11 -t long", "ssd: option -t belongs to -a start only\n"},
                   {"-a start", "ssd: option -d is required\n"},
                   {"-d 11 -d 11", ErrorDuplicate}});
    expectRefused(doSsdOp, "ssdop",
                  {{"-f now.bin", "ssdop: option -d is required\n"},
                   {"-d 11", "ssdop: option -f is required\n"},
                   {"-d 11 -a version -f now.bin", "ssdop: option -f does not belong to -a version\n"},
                   {"-d 11 -a version -m now", "ssdop: option -m does not belong to -a version\n"},
                   {"-d 11 -a erase", "-a : invalid action 'erase'.\n"},
                   {"-d 11 -f now.bin -m soon", "-m : invalid mode 'soon', should be now or later\n"},
                   {"-f now.bin -d \t", "-d : invalid PD ID ''\n"}});
}

TEST_F(Set, SaysWhatTheAdapterDidNotTake) {
    seam.rawDisabled = 0x77;
    Outcome outcome = run(doSet, "set -o hba --alarm on --rebuildrate 30");
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
        Outcome outcome = run(doSet, words + (rate ? " 100" : " on"));
        EXPECT_EQ(0, outcome.result);
        EXPECT_NE(std::string::npos, outcome.printed.find(std::string(row.line) + (rate ? "100 %\n" : "on\n")));
        std::string sent(sizeof(_Adapter_Config_V2), '\0');
        sent[row.at] = rate ? 100 : 1;
        EXPECT_EQ(sent, seam.sent["KT_Adapter_SetConfig"]) << row.option;
        EXPECT_EQ(0, run(doSet, words + (rate ? " 0" : " off")).result);
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
        expect(run(doSetV2, std::string("set --waiveconfirmation -o ") + row.words), row.printed, 5);
    }
    seam.disks[0].Status = KT_PD_MEMBER;
    seam.hdConfigs[0].Online = 1;
    seam.statuses = {{"KT_BLK_GetHDBlock", 20}};
    expect(run(doSetV2, "set -o pd -i 0 --status offline"),
           "PD 0 is a member.\nWhat PD 0 is needed for cannot be read (error 20: Link time out).\n"
           "Do you still want to change the settings? (y or n)\n");
    seam.hds.clear();
    expect(run(doSetV2, "set -o pd -i 0 --speed 3"), "Unable to get info of PD 0 (error 1 : Failed)\n", 1);
    addDisks(1);
    expect(run(doSetV2, "set -o pd -i 0 --speed 12"), "PD 0 does not support 12 Gb/s\n", 1);
    seam.battery.status = 0;
    expect(run(doSetV2, "set -o bbu --power charge"), "No BBU is found.\n", 16);
}

} // namespace
