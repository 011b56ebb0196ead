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
        {"create -r 6 -d 1,2,3,4 -n \"My VD_0123\" -s 4294967295 -b 48 -g 10 -i intelligent -c on", 0x4700,
         {.RaidMode = KT_RAID6, .HDCount = 4, .RoundingScheme = KT_ROUND_10GB, .StripeBlockSize = 48,
          .NumParityDisk = 2, .InitializationOption = KT_INIT_INTELLIGENT, .SectorCoefficient = 1,
          .HDIDs = {1, 2, 3, 4}, .Name = "My VD_0123", .Size = 4294967295}},
        {"create -r 0 -d 1,2 -c on -p ra -w wt -s 5 -g 1 -n \"\"", 0x4701,
         {.RaidMode = KT_RAID0, .HDCount = 2, .RoundingScheme = KT_ROUND_1GB, .StripeBlockSize = 64,
          .CachePolicy = KT_CACHE_OFF | KT_CACHE_READ_AHEAD, .SectorCoefficient = 1, .HDIDs = {1, 2}}},
    };
    for (const auto& [line, devId, sent] : cases) {
        gAdapterInfo[0].DevID = devId;
        expect(line, "");
        expectSent("KT_LD_Create", sent);
    }
}

TEST_F(Creation, OnDisksSaysWhichDiskOrCallStandsInTheWay) {
    const std::tuple<KT_U8, const char*> roles[] = {
        {KT_PD_OFFLINE | KT_PD_GLOBAL_SPARE, "Offline"}, {KT_PD_GLOBAL_SPARE | KT_PD_FOREIGN, "Spare"},
        {KT_PD_DEDICATED_SPARE, "Spare"}, {KT_PD_FOREIGN, "Foreign"}};
    for (const auto& [role, named] : roles) {
        seam.disks[8].Status = role;
        expect("create -r 1 -d 8,9", std::string(named) + " disk 8 can not be used to create VD.\n", 1);
    }
    seam.disks[8].Status = KT_PD_MEMBER;
    gAdapterInfo[0].DevID = 0x4701;
    seam.blocks = {{.ID = 1, .HDID = 9, .LDID = 3}};
    expectSteps(R"(
create -r 1 -d 8,9 =1> Non-free disk 9 can not be used to create VD.
create -r hs -d 8,9 => 
)");
    seam.blocks.clear();
    expectSteps(R"(
create -r 1 -d 8,9 ! KT_PD_GetMBRInfo=1 =1> \nFailed to create virtual disk (error 1: Failed).
create -r 1 -d 8,9 ! KT_BLK_GetInfo=12 =12> Can not get disk 8 information(error 12: Invalid block disk id).
create -r 1 -d 8,9 ! KT_LD_GetInfo=5 => 
create -r 1 -d 8,9 ! KT_LD_Create=73 =73> \nFailed to create virtual disk (error 73: Physical disks are not of the same type.).
)");
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

TEST_F(Creation, SizeQueryReadsDisksLeniently) {
    _Create_LD_Param sent = {.RaidMode = KT_RAID0, .HDCount = 4, .RoundingScheme = KT_ROUND_10GB, .StripeBlockSize = 64,
                             .HDIDs = {0, 0, 5, 0}};
    seam.size = 0xFFFFFFFFFFFFFFFF;
    expect("maxcreatesize -r 0 -d 0,0,5,x -g 10",
           "\nThe maxsize that VD can create with is:   18446744073709551615 K\n");
    expectSent("KT_LD_GetMaxSize", sent);
    sent.RoundingScheme = 0;
    for (KT_U8 level : {KT_TANDEM_SAFE, KT_HYBRID}) {
        sent.RaidMode = level;
        sent.TandemWaterMark = level == KT_TANDEM_SAFE ? 90 : 0;
        run("maxcreatesize -g \t -d 0,,0,5,0 -r " + std::string(level == KT_HYBRID ? "hybrid" : "hs"));
        expectSent("KT_LD_GetMaxSize", sent);
    }
    // A role beside another one is let pass, and so is a foreign disk.
    seam.disks[1].Status = KT_PD_OFFLINE | KT_PD_MEMBER;
    seam.disks[2].Status = KT_PD_FOREIGN;
    EXPECT_EQ(0, run("maxcreatesize -r 1 -d 1,2").result);
    seam.disks[2].Status = KT_PD_OFFLINE;
    expect("maxcreatesize -r 1 -d 1,2", "Offline disk 2 can not be used to create VD.\n", 1);
    seam.disks[2].Status = KT_PD_DEDICATED_SPARE;
    expect("maxcreatesize -r 1 -d 1,2", "Spare disk 2 can not be used to create VD.\n", 1);
}

TEST_F(ArrayCreation, SendsRecordAndSettings) {
    expect("create -o array -r 10 -d 9,1,2,9,3 -n \"" + SIXTEEN + "\" -s 5000000000 -i foreground --cacheoff",
           "Create array 7 successfully.\n");
    expectSent("KT_CreateOrModify_DG", named16<_CreateOrModify_DG_Param>(
        {.DGID = KT_NO_ID, .RaidMode = KT_RAID10, .StripeBlockSize = 64, .Size = 5000000000, .BlockSize = 512,
         .InitializationOption = KT_INIT_FOREGROUND, .PDCount = 4, .PDIDs = {9, 1, 2, 3}}));
    expectSent("KT_DG_SetConfig", named16<_DG_CONFIG>({7, 0, 0, "", "untouched"}));
    expectSteps(R"(
create -o array -r 1 -d 1,2 ! KT_DG_SetConfig=1 => Create array 7 successfully.\nSet Array cache on failed!
create -o array -r 1 -d 1,2 ! KT_DG_GetConfig=1 => Create array 7 successfully.
)");
}

TEST_F(ArrayCreation, SaysWhatStandsInTheWay) {
    const std::string line = "create -o array -r 1 -d 8,9";
    seam.size = (KT_U64{3} << 42) + 0x12A42FA34;
    expectSteps({{"line", line}}, R"(
create -o array -r 1 -d 8,77 =1> Unable to get info of PD 77, (error 0 : No error)
$line --sizeonly => \nArry of size 0x3004a90be M can be created by the given parameters
$line ! KT_PD_GetHDInfo_Ext=1 => Create array 7 successfully.
$line ! KT_PD_GetHDInfo_Ext=1, KT_PD_GetHDInfo=9 =1> Unable to get info of PD 8 (error 9 : Invalid physical disk id)
$line ! KT_PD_GetHDRaidStatus=9 =1> Unable to get info of PD 8, (error 9 : Invalid physical disk id)
$line ! KT_PD_GetMBRInfo=1 =1> \nFailed to create virtual disk (error 1: Failed).
$line ! KT_CreateOrModify_DG=4 =4> \nNo resources. Max available size is 12889788606 M
$line ! KT_CreateOrModify_DG=57 =57> \nFailed to create array (error 57: Number of physical disks doesn't fit the specified RAID level).
$line --sizeonly ! KT_CreateOrModify_DG=1 =1> \nFailed to calculate array size by the given parameters(error 1: Failed).
)");
    EXPECT_EQ("KT_CreateOrModify_DG 1", seam.calls.back());
    expectSteps(R"(
create -o auto -r 5 => Auto create successfully. | KT_LD_DG_QuickCreate 0
create -o AUTO -t ENABLE ! KT_LD_DG_QuickCreate=4 =4> Auto create error,Resource not available | KT_LD_DG_QuickCreate 1
)");
    seam.statuses.clear();
    seam.hds[9].BlockSize = 4096;
    expect(line, "All PDs should have the same sector size, PD 9 has sector size 4096\n", 1);
    // What weighs more is said in place of what weighs less.
    const std::tuple<KT_U8, const char*> roles[] = {
        {KT_PD_FOREIGN, "Foreign disk 8 can not be used to create array.\n"},
        {KT_PD_DEDICATED_SPARE, "Spare disk 8 can not be used to create array.\n"},
        {KT_PD_OFFLINE, "Offline disk 8 can not be used to create arrray.\n"}};
    for (const auto& [role, message] : roles) {
        seam.disks[8].Status |= role;
        expect(line, message, 1);
    }
    seam.disks.resize(8); // the library knows the disk, but no role of it
    expect(line, "Unable to get info of PD 8, (error 0 : No error)\n", 1);
}

TEST_F(ArrayCreation, OfAVirtualDiskSendsTheRecord) {
    gAdapterInfo[0].AdvancedFeatures = KT_ADV_BBU;
    _CreateOrModify_VD_Param sent = named16<_CreateOrModify_VD_Param>(
        {.VDID = KT_NO_ID, .DGID = 3, .RaidMode = KT_RAID6, .SubVDCount = 1, .NumParityDisk = 2, .DGSlotNum = 1,
         .StripeBlockSize = 16, .Size = 5000000000, .RoundingScheme = KT_ROUND_10GB,
         .CachePolicy = KT_CACHE_OFF | KT_CACHE_READ_AHEAD | KT_CACHE_AUTO,
         .InitializationOption = KT_INIT_FOREGROUND, .SectorCoefficient = 1, .BlockSize = 4096});
    const std::string line = "create -a 3 -l 1 -n \"" + SIXTEEN + "\" -b 16 -s 5000000000 -g 10 -p ra -i foreground";
    run(line + " -c off -w auto");
    expectSent("KT_CreateOrModify_VD", sent);
    gAdapterInfo[0].AdvancedFeatures = KT_ADV_NO_WRITE_CACHE;
    run(line);
    sent.CachePolicy = KT_CACHE_OFF | KT_CACHE_READ_AHEAD;
    expectSent("KT_CreateOrModify_VD", sent);
}

TEST_F(ArrayCreation, OfAVirtualDiskSaysWhatStandsInTheWay) {
    seam.arrays[0].RaidMode = KT_RAID5;
    expectSteps(R"(
create -a 3 -l 2 =1> Invalid slot number.  Total slot is 2
create -a 3 -l 0 =1> Slot number 0 has already occupied by VD 11
create -a 3 -s {999 -g 1|9999 -g 10} =1> VD size is too small for the specified rounding scheme.
create -a 3 -s 99 =1> VD size should be at least 100 MB.
create -a 3 -s 1000 -g 1 => Create VD 7 successfully.
)");
    seam.arrays[0].RaidMode = KT_RAID0;
    expect("create -a 3 -i foreground", "Invalid initialization mode. RAID0 only support none and quick initialize.\n", 1);
    seam.arrays[0].RaidMode = 2;
    expect("create -a 3", "Specified RAID mode is not supported.\n", 1);
    seam.arrays[0].RaidMode = KT_HYBRID;
    gAdapterInfo[0].LogicalDriverMode = 0;
    seam.arrays[0].VDSlotCount = 255; // more than the record holds
    expectSteps(R"(
create -a 3 -l {32|300} =1> Invalid slot number.  Total slot is 255
create -a 3 -s 500 =1> Total slots has reached its max number (8), VD will use up all specified slot space, '-s' is not allowed.
create -a 4 =1> Unable to get info for array 4  (error 0: No error)
create -a 3 ! KT_CreateOrModify_VD=4 =4> \nNo resources. Max available size is 2 M
create -a 3 ! KT_CreateOrModify_VD=64 =64> \nFailed to create virtual disk (error 64: Internal error, no virtual disk id available).
create -a 4 ! KT_DG_GetInfo=17 =17> Unable to get info for array 4  (error 17: Invalid array id)
)");
}
