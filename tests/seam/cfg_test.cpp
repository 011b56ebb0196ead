#include "Functions/restore_cfg/raidRestore.h"
#include "tests/seam/cfg.h"

namespace {
const char raidLines[] = "[VD ID]=0\n[RAID NAME]=first\n[RAID MODE]=RAID1\n[CAPACITY (M)]=20000\n[PD MEMBER]=5,6\n"
                         "[BLOCK SIZE (K)]=128\n[WRITE POLICY]=WRITETHROUGH\n[READ POLICY]=NONE\n[INIT MODE]=QUICK\n"
                         "[VD ID]=1\n[RAID NAME]=second\n[RAID MODE]=RAID0\n[CAPACITY (M)]=0\n[PD MEMBER]=7,8\n"
                         "[SPARE ID]=0\n[PHYSICAL DISK ID]=9\n[VIRTUAL DISK ID]=FF\n"
                         "[SPARE ID]=1\n[PHYSICAL DISK ID]=10\n[VIRTUAL DISK ID]=2\n";
} // namespace

TEST_F(Cfg, BackUpListsDisksInPlaceOfBlocks) {
    addRaid();
    expect(runOn("backup_cfg"), "Backup_cfg command is returned successfully!\n");
    EXPECT_EQ((Calls{READ, "KT_PD_GetHDRaidStatus", "KT_LD_GetInfo", "KT_BLK_GetInfo 0", "KT_BLK_GetInfo 1",
                     "KT_BLK_GetInfo 2", "KT_BLK_GetInfo 3"}),
              seam.calls);
    std::string text = fileText("hba0_cfg.txt");
    EXPECT_TRUE(has(text, "[PD MEMBER]=100,101,102\n"));
    EXPECT_TRUE(has(text, "[PD MEMBER]=103,5\n")); // behind a missing member blocks stay blocks
    EXPECT_TRUE(has(text, "[SPARE ID]=1\n[PHYSICAL DISK ID]=108\n[VIRTUAL DISK ID]=3\n[END]\n"));
    expect(runOn("backup_cfg"), "There is the same file 'hba0_cfg.txt', please rename this file!!\n", 1);
    EXPECT_EQ(text, fileText("hba0_cfg.txt"));
    // A block that cannot be asked for keeps its id, and so does one that is not there.
    seam.statuses["KT_BLK_GetInfo 1"] = 12;
    seam.blocks.erase(seam.blocks.begin() + 2);
    const std::string longest = "with blank " + std::string(244, 'x');
    runOn("backup_cfg -f \"" + longest + "\"");
    EXPECT_TRUE(has(fileText(longest), "[PD MEMBER]=100,1,2\n"));
    EXPECT_EQ(2, files());
}

TEST_F(Cfg, BackUpSavesAllOrNothing) {
    for (KT_U16 id = 0; id < 255; ++id)
        seam.disks.push_back({id, KT_NO_ID, KT_PD_GLOBAL_SPARE, {}});
    EXPECT_EQ(0, runOn("backup_cfg -f most.txt").result);
    EXPECT_TRUE(has(fileText("most.txt"), "[SPARE ID]=254\n[PHYSICAL DISK ID]=254\n"));
    seam.disks.push_back({255, KT_NO_ID, KT_PD_GLOBAL_SPARE, {}});
    testing::internal::CaptureStderr();
    expect(runOn("backup_cfg -f more.txt"), "", 4);
    EXPECT_EQ("The adapter has more than 255 spare disks, which a configuration text cannot hold.\n",
              testing::internal::GetCapturedStderr());
    EXPECT_FALSE(fs::exists("more.txt"));
    const FileLimit limit(1000);
    seam.disks.pop_back();
    expect(runOn("backup_cfg -f less.txt"), "Error: Failed write less.txt !\n", 1);
}

TEST_F(Cfg, BackUpWithoutRaidOrSignature) {
    page.RAID_Feature = 0;
    EXPECT_EQ(0, runOn("backup_cfg -f a.txt").result);
    EXPECT_EQ(Calls{READ}, seam.calls);
    std::string text = fileText("a.txt");
    EXPECT_EQ("[RAID CONFIG]\n[BEGIN]\n[END]\n", text.substr(text.find("[RAID CONFIG]")));
    EXPECT_EQ(0, runOn("backup_cfg -t PHY -f phy.txt").result);
    EXPECT_FALSE(has(fileText("phy.txt"), "RAID"));
    page.Signature[0] = 0;
    expect(runOn("backup_cfg -f b.txt"), "\nInvalid  HBA Info page!", 1);
    EXPECT_EQ(0U, fs::file_size("b.txt"));
}

TEST_F(Cfg, NamesTheFileThatItLacks) {
    for (int id : {0x4740, 0x4745, 0x4730, 0x4732, 0x4734, 0x4735}) {
        gAdapterInfo[0].DevID = static_cast<KT_U16>(id);
        EXPECT_EQ(id >= 0x4740 ? "Error: Failed open 4740.txt !\n" : "Error: Failed open 4730.txt !\n",
                  runOn("restore_cfg").printed);
    }
}

TEST_F(Cfg, RestoreReadsFilesUpToTheirLimit) {
    std::string text = configuration("");
    text.resize(0x30000, '#');
    write("full.txt", text);
    write("big.txt", text + "#");
    text.resize(65535);
    write("odd.txt", text);
    EXPECT_EQ("Size of the file big.txt is too big (65535).\n", runOn("restore_cfg -f big.txt").printed);
    for (const char* line : {"restore_cfg -f full.txt", "restore_cfg -f odd.txt"})
        EXPECT_TRUE(has(runOn(line).printed, "successfully")) << line;
    EXPECT_EQ("Error: Failed open . !\n", runOn("restore_cfg -f .").printed);
}

TEST_F(Cfg, RestoreReplacesTheRaidInOrder) {
    write("raid.txt", configuration(raidLines));
    addRaid();
    testing::internal::CaptureStderr();
    Outcome outcome = runOn("restore_cfg -f raid.txt --raid");
    EXPECT_TRUE(has(testing::internal::GetCapturedStderr(),
                    "Creating virtual disk 'second' (RAID0, all available space) on disks 7, 8.\n"));
    EXPECT_EQ("KTCLI_RAID_CONFIG End\nRestore HBA and Port config is returned successfully!\n\n"
              "Restore raid config is returned successfully!\n",
              outcome.printed);
    EXPECT_EQ(1, outcome.result);
    EXPECT_EQ((Calls{READ, WRITE, "KT_PD_GetHDRaidStatus", "KT_LD_GetInfo", "KT_LD_GetStatus 0", "KT_LD_Delete 0 1",
                     "KT_LD_GetStatus 4", "KT_LD_Delete 4 0", "KT_LD_Create", "KT_LD_Create", "KT_PD_Spare2FreeHD 107",
                     "KT_PD_Spare2FreeHD 108", "KT_PD_FreeHD2GlobalSpare 9", "KT_PD_FreeHD2DGSpare 10 2"}),
              seam.calls);
    // The second one names neither stripe, policies nor initialisation, and takes all the space there is.
    // clang-format off
    const _Create_LD_Param second = {
        .RaidMode = KT_RAID0, .HDCount = 2, .RoundingScheme = KT_ROUND_10GB, .StripeBlockSize = 64,
        .InitializationOption = KT_INIT_NONE, .SectorCoefficient = 1, .HDIDs = {7, 8}, .Name = "second"};
    // clang-format on
    EXPECT_EQ(bytesOf(second), seam.sent["KT_LD_Create"]);
}

TEST_F(Cfg, RestoredDisksTakeTheirParametersFromTheText) {
    const std::tuple<KT_U64, KT_U16, KT_U8, KT_U16> rows[] = {{20000, 128, KT_ROUND_10GB, 128},
                                                              {3000, 256, KT_ROUND_1GB, 64},
                                                              {1234, 128, KT_ROUND_NONE, 128},
                                                              {4294967295, 128, KT_ROUND_NONE, 128}};
    for (const auto& [size, stripe, rounding, taken] : rows) {
        // More disks than the record holds.
        const _LD_Info ld = {.StripeBlockSize = stripe, .HDCount = 255, .CacheMode = 5, .Size = size};
        _Create_LD_Param param;
        KT_Restore_LdCreateParam(&ld, &param);
        EXPECT_EQ(rounding, param.RoundingScheme) << size;
        EXPECT_EQ(size * 1024, param.Size);
        EXPECT_EQ(5, param.CachePolicy);
        EXPECT_EQ(taken, param.StripeBlockSize);
        EXPECT_EQ(KT_INIT_QUICK, param.InitializationOption);
    }
}

TEST_F(Cfg, EveryFailureEndsTheRestore) {
    write("raid.txt", configuration(raidLines));
    addRaid();
    const std::string failures = R"(
KT_Flash_Bin 240 0 page 0 last 0 size 0 => \nExecutes read hba config fail (@).
KT_Flash_Bin 15 0 page 0 last 1 size 256 => \nExecutes write hba config fail (@).
KT_PD_GetHDRaidStatus => \nExecutes get pd spare info  fail (@).
KT_LD_GetInfo => \nExecutes get ld info fail (@).
KT_LD_GetStatus 4 => Failed to get VD 4  status(@).
KT_LD_Delete 0 1 => Failed to delete VD 0 (@).
KT_LD_Create => \nFailed to create virtual disk (@).
KT_PD_Spare2FreeHD 108 => Failed to delete spare disk 108 (@).
KT_PD_FreeHD2GlobalSpare 9 => \nFailed to assign disk 9 as global spare disk (@).
KT_PD_FreeHD2DGSpare 10 2 => \nFailed to assign disk 10 as a spare disk to array 2 (@).
)";
    testing::internal::CaptureStderr();
    for (auto& [call, message, result] : rowsOf(failures)) {
        seam.statuses = {{call, 9}};
        std::string opening = call == READ ? "" : "KTCLI_RAID_CONFIG End\n";
        if (call != READ && call != WRITE) opening += "Restore HBA and Port config is returned successfully!\n\n";
        message.replace(message.find('@'), 1, "error 9: Invalid physical disk id");
        expect(runOn("restore_cfg -f raid.txt --raid"), opening + message, 9);
        EXPECT_EQ(call, seam.calls.back());
    }
    testing::internal::GetCapturedStderr();
    seam.statuses = {{"KT_Flash_Bin", 1}};
    EXPECT_EQ("\nFailed to read HBA configuration from flash! (error 1: Failed).\n", runOn("backup_cfg").printed);
    seam.statuses = {{"KT_LD_GetInfo", 1}};
    EXPECT_EQ(1, runOn("backup_cfg").result);
    EXPECT_FALSE(fs::exists("hba0_cfg.txt"));
}

TEST_F(Cfg, RestoreLeavesTheRaidAloneWithoutACompleteSection) {
    addRaid();
    const std::string read = "Restore HBA and Port config is returned successfully!\n\n";
    const std::string whole = "KTCLI_RAID_CONFIG End\n" + read;
    const std::string phyOnly = "The file was read for its PHY tuning only; the RAID configuration stays as it is.\n";
    const std::string lacks = " lacks its mode, capacity or members; the RAID configuration stays as it is.\n";
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"-t phy", "[PORT CONFIG]\n[PORT ID]=1\n[AMP]=5\n[END]\n", read + phyOnly},
        // Of a text in full all but its virtual disks and spares is restored.
        {"-t phy", configuration(raidLines), read + phyOnly},
        {"", configuration("[VD ID]=0\n[CAPACITY (M)]=1\n[PD MEMBER]=1\n"), whole + "Virtual disk 0" + lacks},
        {"", configuration("[VD ID]=0\n[RAID MODE]=RAID0\n[CAPACITY (M)]=1\n"), whole + "Virtual disk 0" + lacks},
        {"", configuration("[VD ID]=3\n[RAID MODE]=RAID0\n[PD MEMBER]=1\n"), whole + "Virtual disk 3" + lacks},
        {"", configuration("[SPARE ID]=0\n"),
         whole + "Spare 0 lacks its physical disk; the RAID configuration stays as it is.\n"},
        {"", "[ADAPTER CONFIG]\n[RAID FEATURE]=DISABLE\n[END][RAID CONFIG][END]", whole},
    };
    for (const auto& [words, text, printed] : cases) {
        seam.calls.clear();
        write("file.txt", text);
        expect(runOn("restore_cfg --raid -f file.txt " + std::string(words)), printed, printed == whole ? 1 : 7);
        EXPECT_EQ((Calls{READ, WRITE}), seam.calls) << text;
    }
    write("file.txt", configuration(raidLines));
    runOn("restore_cfg -t phy -f file.txt");
    EXPECT_EQ(1U, written().HBA_Flag);
    EXPECT_EQ(0x5A, written().BGA_Rate);
    page.RAID_Feature = 0;
    seam.calls.clear();
    runOn("restore_cfg -f file.txt --raid");
    EXPECT_EQ(WRITE, seam.calls.back());
    // With nothing to do on either side nothing is said.
    seam = {};
    page = {.RAID_Feature = 2};
    write("file.txt", configuration(""));
    EXPECT_EQ(whole, runOn("restore_cfg -f file.txt --raid").printed);
}
