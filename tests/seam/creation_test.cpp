// create on disks, the question both create commands ask, and maxcreatesize: what is refused before anything is sent,
// the records, the calls' order, and what follows from each status.
#include "tests/seam/commands.h"
#include "tests/seam/creation.h"

namespace {
_Create_LD_Param ldParam(KT_U8 level, std::initializer_list<KT_U16> ids, const std::string& name) {
    _Create_LD_Param param = {};
    param.RaidMode = level;
    param.HDCount = static_cast<KT_U8>(ids.size());
    param.StripeBlockSize = 64;
    param.SectorCoefficient = 1;
    param.CachePolicy = KT_CACHE_OFF;
    fill(param.HDIDs, ids);
    fillText(param.Name, name);
    return param;
}
} // namespace

TEST_F(Creation, OnDisksRefusesOptionsBeforeAnyCall) {
    adapter.StripeSizeSupported = 3;
    const std::string many = "-r 0 -d " + tooManyDisks();
    const std::string manyPrinted = "-d : invalid PD ID '" + tooManyDisks() + "'\n";
    expectRefused(
        doCreate, "create",
        {{"-r 5", "create: option -d is required\n"},
         {"-b 1x", "-b : invalid stripe block size '1x'.\n"},
         {"-b 65552", "-b : invalid stripe block size '65552'.Please refer to info -o hba command to get detail stripe "
                      "size support information.\n"},
         {"-b 24", "-b : invalid stripe block size '24'.Please refer to info -o hba command to get detail stripe "
                   "size support information.\n"},
         {"-c auto", "-c : invalid cache mode 'auto'\n"},
         {"-w auto", "-w : invalid write policy 'auto'\n"},
         {"-p on", "-p : invalid read policy 'on'\n"},
         {"-d 1,65536", "-d : invalid PD ID '1,65536'\n"},
         {many.c_str(), manyPrinted.c_str()},
         {"-g 2", "-g : invalid giga byte rounding scheme '2'\n"},
         {"-g 256", "-g : invalid giga byte rounding scheme '256'\n"},
         {"-i foreground", "-i : invalid initialization mode 'foreground'\n"},
         {"-i Background", "-i : initialization mode 'Background' is not supported\n"},
         {"-n 12345678901", "-n : length of name should be no more than 10 characters\n"},
         {"-n \"123 5678901\"", "-n : length of name should be no more than 10 characters\n"},
         {"-o ARRAY", "-o : array is not supported on this adapter\n"},
         {"-r 7", "-r : invalid raid mode 7\n"},
         {"-s 4294967296", "-s : invalid size '4294967296'.\n"},
         {"-r 0 -d 1,2 -n My-VD", "-n, name must be numeric, character, space or underline. Now is My-VD\n"},
         {"-r 0 -d 3,3", "RAID0 needs at least 2 PD.\n"}});
    adapter.AdvancedFeatures = KT_ADV_NO_WRITE_CACHE | KT_ADV_NO_READ_CACHE | KT_ADV_NO_ROUNDING;
    expectRefused(doCreate, "create",
                  {{"-c on", "VD cache is not supported on adapter 0.\n"},
                   {"-w wb", "VD write cache is not supported on adapter 0.\n"},
                   {"-p none", "VD read cache is not supported on adapter 0.\n"},
                   {"-g 0", "Gigabyte rounding scheme is not supported\n"}});
    expectRefused(doCreate, "create",
                  {{"-q 3 -r 5 -d 1", "RAID mode RAID5 don't support the setting of parity disks.\n"}},
                  KT_ERR_NOT_SUPPORTED);
    adapter.LogicalDriverMode = KT_MODE_RAID0;
    expectRefused(doCreate, "create", {{"-r 1 -d 1", "Specified RAID mode is not supported.\n"}});
}

TEST_F(Creation, OnDisksSendsTheRecord) {
    struct Case {
        const char* line;
        _Create_LD_Param sent;
        KT_U16 devId = 0x4700;
    };
    std::vector<Case> cases = {
        {"create -o vd -r 5 -d 4,2,4,0", ldParam(KT_RAID5, {4, 2, 0}, "VD_R5_3")},
        {"create -r 6 -d 1,2,3,4 -n \"My VD_0123\" -s 4294967295 -b 48 -g 10 -i intelligent -c on",
         ldParam(KT_RAID6, {1, 2, 3, 4}, "My VD_0123")},
        {"create -r 60 -q 6 -d 1,2,3,4,5,6,7,8 -p ra -c OFF -w wb -i none --forcesize -s 5",
         ldParam(KT_RAID60, {1, 2, 3, 4, 5, 6, 7, 8}, "VD_R60_3"), 0x4701},
        {"create -r 0 -d 1,2 -c on -p ra -w wt -s 5 -g 1 -n \"\"", ldParam(KT_RAID0, {1, 2}, ""), 0x4701},
        {"create -r hc -d 1 -s 5", ldParam(KT_TANDEM_CAPACITY, {1}, "Tandemix_c_3"), 0x4701},
        {"create -r hybrid -d 1", ldParam(KT_HYBRID, {1}, "Hybrid_3")},
    };
    cases[1].sent.NumParityDisk = 2;
    cases[1].sent.Size = 4294967295;
    cases[1].sent.StripeBlockSize = 48;
    cases[1].sent.RoundingScheme = KT_ROUND_10GB;
    cases[1].sent.InitializationOption = KT_INIT_INTELLIGENT;
    cases[1].sent.CachePolicy = 0;
    cases[2].sent.NumParityDisk = 6;
    cases[2].sent.InitializationOption = KT_INIT_NONE;
    cases[2].sent.ReservedForApp = 1;
    cases[2].sent.Size = 5;
    cases[3].sent.CachePolicy = KT_CACHE_OFF | KT_CACHE_READ_AHEAD;
    cases[3].sent.RoundingScheme = KT_ROUND_1GB;
    cases[4].sent.TandemWaterMark = 90;
    cases[4].sent.Size = 5;
    cases[5].sent.TandemWaterMark = 90;
    cases[5].sent.CachePolicy = 0;
    seam.lds.resize(2);
    adapter.AdvancedFeatures = KT_ADV_HYBRID_SWITCH;
    for (const Case& row : cases) {
        adapter.DevID = row.devId;
        expect(run(doCreate, row.line), "");
        EXPECT_EQ(bytesOf(row.sent), seam.sent["KT_LD_Create"]) << row.line;
    }
}

TEST_F(Creation, OnDisksAsksForTheBatteryOnlyWithoutACacheMode) {
    adapter.AdvancedFeatures = KT_ADV_BBU;
    const std::tuple<const char*, KT_U8, KT_U8, KT_U8> cases[] = {
        {"", 1, 0, 0}, {"", 0, 0, 1}, {"", 1, 16, 1}, {" -c on", 0, 0, 0}};
    for (const auto& [mode, battery, status, cache] : cases) {
        seam.calls.clear();
        seam.battery.status = battery;
        seam.statuses["KT_BBU_GetInfo"] = status;
        run(doCreate, "create -r 1 -d 8,9" + std::string(mode));
        _Create_LD_Param sent = ldParam(KT_RAID1, {8, 9}, "VD_R1_1");
        sent.CachePolicy = cache;
        EXPECT_EQ(bytesOf(sent), seam.sent["KT_LD_Create"]);
        Calls expected = {"KT_PD_GetHDRaidStatus 8", "KT_PD_GetHDRaidStatus 9", "KT_PD_GetMBRInfo",
                          "KT_BBU_GetInfo",          "KT_LD_GetInfo",           "KT_LD_Create"};
        if (*mode != '\0') expected.erase(expected.begin() + 3);
        EXPECT_EQ(expected, seam.calls);
    }
}

TEST_F(Creation, OnDisksSaysWhichDiskOrCallStandsInTheWay) {
    const std::tuple<KT_U8, const char*> roles[] = {
        {KT_PD_OFFLINE | KT_PD_GLOBAL_SPARE, "Offline disk 8 can not be used to create VD.\n"},
        {KT_PD_GLOBAL_SPARE | KT_PD_FOREIGN, "Spare disk 8 can not be used to create VD.\n"},
        {KT_PD_DEDICATED_SPARE, "Spare disk 8 can not be used to create VD.\n"},
        {KT_PD_FOREIGN, "Foreign disk 8 can not be used to create VD.\n"},
    };
    for (const auto& [role, printed] : roles) {
        seam.disks[8].Status = role;
        EXPECT_EQ(printed, run(doCreate, "create -r 1 -d 8,9").printed);
    }
    seam.disks[8].Status = KT_PD_MEMBER;
    const struct {
        const char* call;
        KT_U8 status;
        const char* printed;
        int result;
    } failures[] = {
        {"KT_PD_GetHDRaidStatus", 9, "Failed to get status for PD 8 (error 9: Invalid physical disk id)\n", 1},
        {"KT_PD_GetMBRInfo", 1, "\nFailed to create virtual disk (error 1: Failed).\n", 1},
        {"KT_BLK_GetInfo", 12, "Can not get disk 8 information(error 12: Invalid block disk id).\n", 12},
        {"KT_LD_GetInfo", 5, "", 0},
        {"KT_LD_Create", 73, "\nFailed to create virtual disk (error 73: Physical disks are not of the same type.).\n",
         73},
    };
    adapter.DevID = 0x4701;
    for (const auto& row : failures) {
        seam.statuses = {{row.call, row.status}};
        expect(run(doCreate, "create -r 1 -d 8,9"), row.printed, row.result);
    }
    seam.statuses.clear();
    seam.blocks = {{1, 9, 0, 3, 0, 0, 0, 0, 0, 0}};
    EXPECT_EQ("Non-free disk 9 can not be used to create VD.\n", run(doCreate, "create -r 1 -d 8,9").printed);
    EXPECT_EQ("", run(doCreate, "create -r hs -d 8,9").printed);
}

TEST_F(Creation, AsksBeforeItOverwritesFileSystems) {
    arrayBasedRaid = true;
    const char question[] = "Do you still want to create the VD? (y or n)\n";
    const std::tuple<CommandHandler, const char*, const char*, const char*, const char*> cases[] = {
        {doCreate, "create -r 1 -d 8,9", "KT_LD_Create",
         "PD 9 has file system on it. Data will be lost if it is used to create VD.\n",
         "PD 8 9 have file system on them. Data will be lost if they are used to create VD.\n"},
        {doCreateV2, "create -o array -r 1 -d 8,9", "KT_CreateOrModify_DG",
         "PD 9 has file system on it. Data will be lost if it is used to create array.\n",
         "PD 8 9 have file system on them. Data will be lost if they are used to create array.\n"},
    };
    for (const auto& [handler, line, call, one, two] : cases) {
        for (const char* declined : {"n\n", "No\n", ""}) {
            seam.sent.clear();
            seam.disksWithFileSystem = {9};
            EXPECT_EQ(std::string(one) + question, run(handler, line, declined).printed);
            EXPECT_FALSE(seam.sent.contains(call)) << declined;
        }
        for (const char* accepted : {"y\n", "x\n", "\n"}) {
            seam.sent.clear();
            seam.disksWithFileSystem = {9, 8};
            EXPECT_EQ(0u, run(handler, line, accepted).printed.find(std::string(two) + question));
            EXPECT_TRUE(seam.sent.contains(call)) << accepted;
        }
        seam.sent.clear();
        EXPECT_EQ(0, run(handler, std::string(line) + " --waiveconfirmation").result);
        EXPECT_TRUE(seam.sent.contains(call));
        EXPECT_FALSE(seam.sent.contains("KT_PD_GetMBRInfo"));
    }
}

TEST_F(Creation, SizeQueryReadsDisksLeniently) {
    _Create_LD_Param sent = ldParam(KT_RAID0, {0, 0, 5, 0}, "");
    sent.SectorCoefficient = 0;
    sent.CachePolicy = 0;
    sent.RoundingScheme = KT_ROUND_10GB;
    seam.size = 0xFFFFFFFFFFFFFFFF;
    EXPECT_EQ("\nThe maxsize that VD can create with is:   18446744073709551615 K\n",
              run(doGetMaxsize, "maxcreatesize -r 0 -d 0,0,5,x -g 10").printed);
    EXPECT_EQ(bytesOf(sent), seam.sent["KT_LD_GetMaxSize"]);
    sent.RoundingScheme = 0;
    for (KT_U8 level : {KT_TANDEM_SAFE, KT_HYBRID}) {
        sent.RaidMode = level;
        sent.TandemWaterMark = level == KT_TANDEM_SAFE ? 90 : 0;
        run(doGetMaxsize, "maxcreatesize -d 0,0,5,0 -r " + std::string(level == KT_HYBRID ? "hybrid" : "hs"));
        EXPECT_EQ(bytesOf(sent), seam.sent["KT_LD_GetMaxSize"]);
    }
    // A role beside another one is let pass, and so is a foreign disk.
    seam.disks[1].Status = KT_PD_OFFLINE | KT_PD_MEMBER;
    seam.disks[2].Status = KT_PD_FOREIGN;
    EXPECT_EQ(0, run(doGetMaxsize, "maxcreatesize -r 1 -d 1,2").result);
    seam.disks[2].Status = KT_PD_OFFLINE;
    EXPECT_EQ("Offline disk 2 can not be used to create VD.\n", run(doGetMaxsize, "maxcreatesize -r 1 -d 1,2").printed);
    seam.disks[2].Status = KT_PD_DEDICATED_SPARE;
    EXPECT_EQ("Spare disk 2 can not be used to create VD.\n", run(doGetMaxsize, "maxcreatesize -r 1 -d 1,2").printed);
    seam.calls.clear();
    expectRefused(doGetMaxsize, "maxcreatesize",
                  {{"-d 1,65536 -r 0", "-d : invalid PD ID '1,65536'\n"},
                   {"-g 3", "-g : invalid giga byte rounding scheme '3'\n"},
                   {"-r 1 -d 0,1,2", "RAID1 needs exactly 2 PDs.\n"}});
    expectRefused(doGetMaxsize, "maxcreatesize", {{"-n x", "\nlong help\n"}, {"-h", "\nlong help\n"}}, 0);
}
