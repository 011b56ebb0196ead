// create in the array-based set: what is refused before anything is sent, the records, the calls' order, and what
// follows from each status.
#include "Functions/create/createV2.h"
#include "tests/seam/creation.h"

TEST_F(Creation, OfArraysAndTheirDisksRefusesOptionsBeforeAnyCall) {
    arrayBasedRaid = true;
    const std::string many = "-d " + tooManyDisks();
    const std::string manyPrinted = "-d : invalid PD IDs '" + tooManyDisks() + "'\n";
    expectRefused(doCreateV2, "create",
                  {{"", "create: option -a is required\n"},
                   {"-o array", "create: option -r is required\ncreate: option -d is required\n"},
                   {"-o disk", "-o : invalid object 'disk'\n"},
                   {"-a 65536", "-a : invalid array id '65536'\n"},
                   {"-n 12345678901234567", "-n : length of name should be no more than 16 characters\n"},
                   {"-n \"1234 678901234567\"", "-n : length of name should be no more than 16 characters\n"},
                   {"-d ,", "-d : invalid PD IDs ','\n"},
                   {many.c_str(), manyPrinted.c_str()},
                   {"-b 24", "-b : invalid stripe block size '24'. Please refer to info -o hba command to get detail "
                             "stripe size support information.\n"},
                   {"-s 0", "-s : invalid size '0'.\n"},
                   {"-s 18446744073709551616", "-s : invalid size '18446744073709551616'.\n"},
                   {"-c auto", "'auto' cache mode is not supported\n"},
                   {"-w AUTO", "'auto' cache mode is not supported\n"},
                   {"-i background", "-i : initialization mode 'background' is not supported\n"},
                   {"-t on", "-t : invalid create type 'on'\n"},
                   {"-o auto -n a.b", "-n, name must be numeric, character, space or underline. Now is a.b\n"},
                   {"-o array -r 5 -d 1,2,3 -a 0", "-a option is not used for creating array\n"},
                   {"-a 0 -r 5", "-r, -d and -q option are not allowed in creating VD\n"},
                   {"-o array -r 6 -d 0,1,2,3 -q 3 -n x",
                    "Number of parity disks for RAID6 can not exceed half of total disks\n"}});
    adapter.AdvancedFeatures = KT_ADV_NO_ROUNDING;
    expectRefused(doCreateV2, "create", {{"-g 1", "giga byte rounding scheme is not support\n"}});
    expectRefused(doCreateV2, "create",
                  {{"-o array -d 1 -r 0 -q 1", "RAID mode RAID0 don't support the setting of parity disks.\n"}},
                  KT_ERR_NOT_SUPPORTED);
    EXPECT_EQ("Auto create successfully.\n", run(doCreateV2, "create -o auto -r 5").printed);
    seam.statuses["KT_LD_DG_QuickCreate"] = 4;
    EXPECT_EQ("Auto create error,Resource not available\n", run(doCreateV2, "create -o AUTO -t ENABLE").printed);
    EXPECT_EQ((Calls{"KT_LD_DG_QuickCreate 0", "KT_LD_DG_QuickCreate 1"}), seam.calls);
}

TEST_F(Creation, OfArraysSendsRecordAndSettings) {
    arrayBasedRaid = true;
    _CreateOrModify_DG_Param sent = {};
    sent.DGID = KT_NO_ID;
    fillText(sent.Name, "DG_R6_2");
    sent.RaidMode = KT_RAID6;
    sent.NumParityDisk = 2;
    sent.StripeBlockSize = 64;
    sent.BlockSize = 512;
    sent.PDCount = 4;
    fill(sent.PDIDs, {9, 1, 2, 3});
    EXPECT_EQ("Create array 7 successfully.\n", run(doCreateV2, "create -o array -r 6 -d 9,1,2,9,3").printed);
    EXPECT_EQ(bytesOf(sent), seam.sent["KT_CreateOrModify_DG"]);
    Calls first = {"KT_DG_GetInfo",           "KT_PD_GetHDInfo_Ext 9", "KT_PD_GetHDInfo_Ext 9",
                   "KT_PD_GetHDRaidStatus 9", "KT_PD_GetHDInfo_Ext 1", "KT_PD_GetHDRaidStatus 1"};
    EXPECT_EQ(first, Calls(seam.calls.begin(), seam.calls.begin() + 6));
    Calls last = {"KT_PD_GetMBRInfo", "KT_CreateOrModify_DG 0", "KT_DG_GetConfig 7", "KT_DG_SetConfig 7"};
    EXPECT_EQ(last, Calls(seam.calls.end() - 4, seam.calls.end()));
    _DG_CONFIG config = {7, 1, 0, "DG_R6_2", "untouched"};
    EXPECT_EQ(bytesOf(config), seam.sent["KT_DG_SetConfig"]);

    fillText(sent.Name, "sixteen letters_");
    sent.NumParityDisk = 0;
    sent.RaidMode = KT_RAID10;
    sent.Size = 5000000000;
    sent.InitializationOption = KT_INIT_FOREGROUND;
    seam.statuses["KT_DG_SetConfig"] = 1;
    expect(run(doCreateV2, "create -o array -r 10 -d 9,1,2,3 -n \"sixteen letters_\" -s 5000000000 "
                           "-i foreground --cacheoff"),
           "Create array 7 successfully.\nSet Array cache on failed!\n");
    EXPECT_EQ(bytesOf(sent), seam.sent["KT_CreateOrModify_DG"]);
    memcpy(config.Name, sent.Name, sizeof config.Name);
    config.WriteCacheOn = 0;
    EXPECT_EQ(bytesOf(config), seam.sent["KT_DG_SetConfig"]);
    seam.statuses["KT_DG_GetConfig"] = 1;
    EXPECT_EQ("Create array 7 successfully.\n", run(doCreateV2, "create -o array -r 1 -d 1,2").printed);
}

TEST_F(Creation, OfArraysSaysWhatStandsInTheWay) {
    arrayBasedRaid = true;
    const char line[] = "create -o array -r 1 -d 8,9";
    const std::tuple<const char*, KT_U8, const char*, const char*, int> failures[] = {
        {"KT_PD_GetHDInfo_Ext", 1, "", "Create array 7 successfully.\n", 0},
        {"KT_PD_GetHDRaidStatus", 9, "", "Unable to get info of PD 8, (error 9 : Invalid physical disk id)\n", 1},
        {"KT_PD_GetMBRInfo", 1, "", "\nFailed to create virtual disk (error 1: Failed).\n", 1},
        {"KT_CreateOrModify_DG", 4, "", "\nNo resources. Max available size is 4886718 M\n", 4},
        {"KT_CreateOrModify_DG", 57, "",
         "\nFailed to create array (error 57: Number of physical disks doesn't fit the specified RAID level).\n", 57},
        {"", 0, " --sizeonly", "\nArry of size 0x0004a90be M can be created by the given parameters\n", 0},
        {"KT_CreateOrModify_DG", 1, " --sizeonly",
         "\nFailed to calculate array size by the given parameters(error 1: Failed).\n", 1},
    };
    seam.size = 0x12A42FA34;
    for (const auto& [call, status, more, printed, result] : failures) {
        seam.statuses = {{call, status}};
        expect(run(doCreateV2, line + std::string(more)), printed, result);
    }
    EXPECT_EQ("KT_CreateOrModify_DG 1", seam.calls.back());
    seam.statuses = {{"KT_PD_GetHDInfo_Ext", 1}, {"KT_PD_GetHDInfo", 9}};
    EXPECT_EQ("Unable to get info of PD 8 (error 9 : Invalid physical disk id)\n", run(doCreateV2, line).printed);
    seam.statuses.clear();
    EXPECT_EQ("Unable to get info of PD 77, (error 0 : No error)\n",
              run(doCreateV2, "create -o array -r 1 -d 8,77").printed);
    seam.hds[9].BlockSize = 4096;
    EXPECT_EQ("All PDs should have the same sector size, PD 9 has sector size 4096\n", run(doCreateV2, line).printed);
    seam.disks[8].Status = KT_PD_FOREIGN;
    EXPECT_EQ("Foreign disk 8 can not be used to create array.\n", run(doCreateV2, line).printed);
    seam.disks[8].Status |= KT_PD_DEDICATED_SPARE;
    EXPECT_EQ("Spare disk 8 can not be used to create array.\n", run(doCreateV2, line).printed);
    seam.disks[8].Status |= KT_PD_OFFLINE;
    EXPECT_EQ("Offline disk 8 can not be used to create arrray.\n", run(doCreateV2, line).printed);
    seam.disks.resize(8); // the library knows the disk, but no role of it
    EXPECT_EQ("Unable to get info of PD 8, (error 0 : No error)\n", run(doCreateV2, line).printed);
}

TEST_F(Creation, InAnArraySendsTheRecord) {
    arrayBasedRaid = true;
    adapter.AdvancedFeatures = KT_ADV_BBU;
    _CreateOrModify_VD_Param sent = {};
    sent.VDID = KT_NO_ID;
    sent.DGID = 3;
    fillText(sent.Name, "VD_R6_1");
    sent.RaidMode = KT_RAID6;
    sent.SubVDCount = 1;
    sent.NumParityDisk = 2;
    sent.DGSlotNum = 255;
    sent.StripeBlockSize = 128;
    sent.SectorCoefficient = 1;
    sent.BlockSize = 4096;
    EXPECT_EQ("Create VD 7 successfully.\n", run(doCreateV2, "create -a 3 -w auto").printed);
    EXPECT_EQ(bytesOf(sent), seam.sent["KT_CreateOrModify_VD"]);
    EXPECT_EQ((Calls{"KT_DG_GetInfo 3", "KT_BBU_GetInfo", "KT_CreateOrModify_VD"}), seam.calls);

    fillText(sent.Name, "sixteen letters_");
    sent.DGSlotNum = 1;
    sent.StripeBlockSize = 16;
    sent.Size = 5000000000;
    sent.RoundingScheme = KT_ROUND_10GB;
    sent.CachePolicy = KT_CACHE_OFF | KT_CACHE_READ_AHEAD | KT_CACHE_AUTO;
    sent.InitializationOption = KT_INIT_FOREGROUND;
    run(doCreateV2, "create -a 3 -l 1 -n \"sixteen letters_\" -b 16 -s 5000000000 -g 10 -c off -w auto -p ra "
                    "-i foreground");
    EXPECT_EQ(bytesOf(sent), seam.sent["KT_CreateOrModify_VD"]);
    adapter.AdvancedFeatures = KT_ADV_NO_WRITE_CACHE;
    run(doCreateV2, "create -a 3 -l 1 -n \"sixteen letters_\" -b 16 -s 5000000000 -g 10 -p ra -i foreground");
    sent.CachePolicy = KT_CACHE_OFF | KT_CACHE_READ_AHEAD;
    EXPECT_EQ(bytesOf(sent), seam.sent["KT_CreateOrModify_VD"]);
}

TEST_F(Creation, InAnArraySaysWhatStandsInTheWay) {
    arrayBasedRaid = true;
    const std::tuple<KT_U8, const char*, const char*> cases[] = {
        {KT_RAID5, " -l 2", "Invalid slot number.  Total slot is 2\n"},
        {KT_RAID5, " -l 0", "Slot number 0 has already occupied by VD 11\n"},
        {KT_RAID0, " -i foreground", "Invalid initialization mode. RAID0 only support none and quick initialize.\n"},
        {KT_RAID5, " -s 999 -g 1", "VD size is too small for the specified rounding scheme.\n"},
        {KT_RAID5, " -s 9999 -g 10", "VD size is too small for the specified rounding scheme.\n"},
        {KT_RAID5, " -s 99", "VD size should be at least 100 MB.\n"},
        {KT_RAID5, " -s 1000 -g 1", "Create VD 7 successfully.\n"},
        {2, "", "Specified RAID mode is not supported.\n"},
    };
    for (const auto& [level, options, printed] : cases) {
        seam.arrays[0].RaidMode = level;
        expect(run(doCreateV2, "create -a 3" + std::string(options)), printed, printed[0] == 'C' ? 0 : 1);
    }
    seam.arrays[0].RaidMode = KT_HYBRID;
    adapter.LogicalDriverMode = 0;
    seam.statuses = {{"KT_CreateOrModify_VD", 4}};
    expect(run(doCreateV2, "create -a 3"), "\nNo resources. Max available size is 2 M\n", 4);
    seam.statuses = {{"KT_CreateOrModify_VD", 64}};
    EXPECT_EQ("\nFailed to create virtual disk (error 64: Internal error, no virtual disk id available).\n",
              run(doCreateV2, "create -a 3").printed);
    EXPECT_EQ("Unable to get info for array 4  (error 0: No error)\n", run(doCreateV2, "create -a 4").printed);
    seam.statuses = {{"KT_DG_GetInfo", 17}};
    EXPECT_EQ(17, run(doCreateV2, "create -a 4").result);
    seam.statuses.clear();
    seam.arrays[0].VDSlotCount = 255; // more than the record holds
    EXPECT_EQ("Invalid slot number.  Total slot is 255\n", run(doCreateV2, "create -a 3 -l 32").printed);
    EXPECT_EQ("Total slots has reached its max number (8), VD will use up all specified slot space, '-s' is not "
              "allowed.\n",
              run(doCreateV2, "create -a 3 -s 500").printed);
}
