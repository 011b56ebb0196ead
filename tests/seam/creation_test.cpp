// create, the question both of its forms ask, and maxcreatesize: the records, the calls' order, and what follows from
// each status.
#include "tests/seam/seam.h"

// The formatter would give each field of a record a line of its own.
// clang-format off

namespace {

// An adapter with ten free disks and one array.
struct Creation : SeamTest {
    Creation() {
        gAdapterInfo[0] = {.DevID = 0x4600, .MaxVDPerDG = 8, .MaxParityDisks = 3, .LogicalDriverMode = 0x0FFF};
        addDisks(10);
        seam.arrays = {{.DGID = 3, .RaidMode = KT_RAID6, .SubVDCount = 1, .NumParityDisk = 2, .StripeBlockSize = 128,
                        .BlockSize = 4096, .RemainingManagedSpace = 2048, .VDSlotCount = 2, .VDIDs = {11, KT_NO_ID}}};
    }
};
struct ArrayCreation : Creation {
    ArrayCreation() { arrayBasedRaid = true; }
};

const std::string SIXTEEN = "sixteen letters_"; // fills a name's field to its end
template <class Record>
Record named16(Record record) {
    memcpy(record.Name, SIXTEEN.data(), 16);
    return record;
}

// What a call was handed last.
template <class Record>
void expectSent(const char* call, const Record& record) {
    EXPECT_EQ(bytesOf(record), seam.sent[call]) << call;
}
} // namespace

TEST_F(Creation, OnDisksSendsTheRecord) {
    const std::tuple<const char*, KT_U16, _Create_LD_Param> cases[] = {
        {"create -o vd -r 5 -d 4,2,4,0", 0x4700,
         {.RaidMode = KT_RAID5, .HDCount = 3, .StripeBlockSize = 64, .CachePolicy = KT_CACHE_OFF,
          .SectorCoefficient = 1, .HDIDs = {4, 2, 0}, .Name = "VD_R5_3"}},
        {"create -r 6 -d 1,2,3,4 -n \"My VD_0123\" -s 4294967295 -b 48 -g 10 -i intelligent -c on", 0x4700,
         {.RaidMode = KT_RAID6, .HDCount = 4, .RoundingScheme = KT_ROUND_10GB, .StripeBlockSize = 48,
          .NumParityDisk = 2, .InitializationOption = KT_INIT_INTELLIGENT, .SectorCoefficient = 1,
          .HDIDs = {1, 2, 3, 4}, .Name = "My VD_0123", .Size = 4294967295}},
        {"create -r 60 -q 6 -d 1,2,3,4,5,6,7,8 -p ra -c OFF -w wb -i none --forcesize -s 5", 0x4701,
         {.RaidMode = KT_RAID60, .HDCount = 8, .StripeBlockSize = 64, .NumParityDisk = 6, .CachePolicy = KT_CACHE_OFF,
          .InitializationOption = KT_INIT_NONE, .SectorCoefficient = 1, .ReservedForApp = 1,
          .HDIDs = {1, 2, 3, 4, 5, 6, 7, 8}, .Name = "VD_R60_3", .Size = 5}},
        {"create -r 0 -d 1,2 -c on -p ra -w wt -s 5 -g 1 -n \"\"", 0x4701,
         {.RaidMode = KT_RAID0, .HDCount = 2, .RoundingScheme = KT_ROUND_1GB, .StripeBlockSize = 64,
          .CachePolicy = KT_CACHE_OFF | KT_CACHE_READ_AHEAD, .SectorCoefficient = 1, .HDIDs = {1, 2}}},
        {"create -r hc -d 1 -s 5", 0x4701,
         {.RaidMode = KT_TANDEM_CAPACITY, .HDCount = 1, .StripeBlockSize = 64, .CachePolicy = KT_CACHE_OFF,
          .SectorCoefficient = 1, .TandemWaterMark = 90, .HDIDs = {1}, .Name = "Tandemix_c_3", .Size = 5}},
        {"create -r hybrid -d 1", 0x4700,
         {.RaidMode = KT_HYBRID, .HDCount = 1, .StripeBlockSize = 64, .SectorCoefficient = 1, .TandemWaterMark = 90,
          .HDIDs = {1}, .Name = "Hybrid_3"}},
    };
    seam.lds.resize(2);
    gAdapterInfo[0].AdvancedFeatures = KT_ADV_HYBRID_SWITCH;
    for (const auto& [line, devId, sent] : cases) {
        gAdapterInfo[0].DevID = devId;
        expect(line, "");
        expectSent("KT_LD_Create", sent);
    }
}

TEST_F(Creation, AsksBeforeItOverwritesFileSystems) {
    std::map<std::string, std::string> texts = {{"ask", "\\nDo you still want to create the VD? (y or n)"},
                                                {"one", "PD 9 has file system on it. Data will be lost if it is used"},
                                                {"two", "PD 8 9 have file system on them. Data will be lost if they are used"}};
    for (bool arrays : {false, true}) {
        arrayBasedRaid = arrays;
        texts["line"] = arrays ? "create -o array -r 1 -d 8,9" : "create -r 1 -d 8,9";
        texts["call"] = arrays ? "KT_CreateOrModify_DG" : "KT_LD_Create";
        texts["object"] = arrays ? "array." : "VD.";
        seam.disksWithFileSystem = {9};
        // What is not made is not refused by the library.
        expectSteps(texts, "$line ! $call=73 < {n|No} => $one to create $object$ask\n"
                           "$line ! $call=73 => $one to create $object$ask");
        seam.statuses.clear();
        seam.disksWithFileSystem = {9, 8};
        for (const char* accepted : {"y\n", "x\n", "\n"}) {
            seam.sent.clear();
            const std::string two = texts["two"] + " to create " + texts["object"] + "\nDo you still want";
            EXPECT_TRUE(printed(texts["line"], accepted).starts_with(two));
            EXPECT_TRUE(seam.sent.contains(texts["call"])) << accepted;
        }
        seam.sent.clear();
        EXPECT_EQ(0, run(texts["line"] + " --waiveconfirmation").result);
        EXPECT_TRUE(seam.sent.contains(texts["call"]));
        EXPECT_FALSE(seam.sent.contains("KT_PD_GetMBRInfo"));
    }
}

TEST_F(ArrayCreation, SendsRecordAndSettings) {
    _CreateOrModify_DG_Param sent = {.DGID = KT_NO_ID, .Name = "DG_R6_2", .RaidMode = KT_RAID6, .NumParityDisk = 2,
                                     .StripeBlockSize = 64, .BlockSize = 512, .PDCount = 4, .PDIDs = {9, 1, 2, 3}};
    expect("create -o array -r 6 -d 9,1,2,9,3", "Create array 7 successfully.\n");
    expectSent("KT_CreateOrModify_DG", sent);
    Calls first = {"KT_DG_GetInfo",           "KT_PD_GetHDInfo_Ext 9", "KT_PD_GetHDInfo_Ext 9",
                   "KT_PD_GetHDRaidStatus 9", "KT_PD_GetHDInfo_Ext 1", "KT_PD_GetHDRaidStatus 1"};
    EXPECT_EQ(first, Calls(seam.calls.begin(), seam.calls.begin() + 6));
    Calls last = {"KT_PD_GetMBRInfo", "KT_CreateOrModify_DG 0", "KT_DG_GetConfig 7", "KT_DG_SetConfig 7"};
    EXPECT_EQ(last, Calls(seam.calls.end() - 4, seam.calls.end()));
    _DG_CONFIG config = {7, 1, 0, "DG_R6_2", "untouched"};
    expectSent("KT_DG_SetConfig", config);

    sent = named16(sent);
    sent.NumParityDisk = 0;
    sent.RaidMode = KT_RAID10;
    sent.Size = 5000000000;
    sent.InitializationOption = KT_INIT_FOREGROUND;
    config = named16(config);
    config.WriteCacheOn = 0;
    seam.statuses["KT_DG_SetConfig"] = 1;
    expect("create -o array -r 10 -d 9,1,2,3 -n \"" + SIXTEEN + "\" -s 5000000000 -i foreground --cacheoff",
           "Create array 7 successfully.\nSet Array cache on failed!\n");
    expectSent("KT_CreateOrModify_DG", sent);
    expectSent("KT_DG_SetConfig", config);
    seam.statuses["KT_DG_GetConfig"] = 1;
    expect("create -o array -r 1 -d 1,2", "Create array 7 successfully.\n");
}

TEST_F(ArrayCreation, OfAVirtualDiskSendsTheRecord) {
    gAdapterInfo[0].AdvancedFeatures = KT_ADV_BBU;
    _CreateOrModify_VD_Param sent = {.VDID = KT_NO_ID, .DGID = 3, .Name = "VD_R6_1", .RaidMode = KT_RAID6,
                                     .SubVDCount = 1, .NumParityDisk = 2, .DGSlotNum = 255, .StripeBlockSize = 128,
                                     .SectorCoefficient = 1, .BlockSize = 4096};
    expect("create -a 3 -w auto", "Create VD 7 successfully.\n");
    expectSent("KT_CreateOrModify_VD", sent);
    EXPECT_EQ((Calls{"KT_DG_GetInfo 3", "KT_BBU_GetInfo", "KT_CreateOrModify_VD"}), seam.calls);

    sent = named16(sent);
    sent.DGSlotNum = 1;
    sent.StripeBlockSize = 16;
    sent.Size = 5000000000;
    sent.RoundingScheme = KT_ROUND_10GB;
    sent.CachePolicy = KT_CACHE_OFF | KT_CACHE_READ_AHEAD | KT_CACHE_AUTO;
    sent.InitializationOption = KT_INIT_FOREGROUND;
    const std::string line = "create -a 3 -l 1 -n \"" + SIXTEEN + "\" -b 16 -s 5000000000 -g 10 -p ra -i foreground";
    run(line + " -c off -w auto");
    expectSent("KT_CreateOrModify_VD", sent);
    gAdapterInfo[0].AdvancedFeatures = KT_ADV_NO_WRITE_CACHE;
    run(line);
    sent.CachePolicy = KT_CACHE_OFF | KT_CACHE_READ_AHEAD;
    expectSent("KT_CreateOrModify_VD", sent);
}

