#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/resource.h>
#include <unistd.h>

#include "Functions/backup_cfg/backup_cfg.h"
#include "Functions/restore_cfg/assignment.h"
#include "Functions/restore_cfg/raidRestore.h"
#include "Functions/restore_cfg/restore_cfg.h"
#include "Public/utility.h"
#include "tests/seam/seam.h"

namespace {
namespace fs = std::filesystem;
std::string fileText(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

const char assignment[] = "# addresses\n[PORT_GROUP]=1, 0\n"
                          "[SAS_ADDRESS_START]=500A1F40:00000010\n[SAS_ADDRESS_END]=500A1F40:FFFFFFFF\n"
                          "[SAS_ADDRESS_CURRENT]=500A1F40:0FFFFFFF  # next\n"
                          "[SERIALNUMBER_START]=TARN0000010000000001\n[SERIALNUMBER_END]=TARN0000010000000099\n"
                          "[SERIALNUMBER_CURRENT]=TARN0000010000000009\n";

const char raidLines[] = "[VD ID]=0\n[RAID NAME]=first\n[RAID MODE]=RAID1\n[CAPACITY (M)]=20000\n[PD MEMBER]=5,6\n"
                         "[BLOCK SIZE (K)]=128\n[WRITE POLICY]=WRITETHROUGH\n[READ POLICY]=NONE\n[INIT MODE]=QUICK\n"
                         "[VD ID]=1\n[RAID NAME]=second\n[RAID MODE]=RAID0\n[CAPACITY (M)]=3000\n[PD MEMBER]=7,8\n"
                         "[SPARE ID]=0\n[PHYSICAL DISK ID]=9\n[VIRTUAL DISK ID]=FF\n"
                         "[SPARE ID]=1\n[PHYSICAL DISK ID]=10\n[VIRTUAL DISK ID]=2\n";

std::string configuration(const std::string& raid) {
    return "[ADAPTER CONFIG]\n[BEGIN]\n[SERIAL_NUMBER]=old # serial\n[INT13]=ENABLE\n[RAID FEATURE]=ENABLE\n[END]\n"
           "[PORT CONFIG]\n[BEGIN]\n[PORT ID]=0\n[SASADDRESS]=00000000:00000000\n[PORT ID]=1\n"
           "[SASADDRESS]= 11111111 : 11111111 # blanks\n[END]\n[RAID CONFIG]\n[BEGIN]\n" +
           raid + "[END]\n";
}

const char READ[] = "KT_Flash_Bin 0 240 0 page 0 last 0 size 0";
const char WRITE[] = "KT_Flash_Bin 0 15 0 page 0 last 1 size 256";

std::string serialOf(const _HBA_Info_Page& page) {
    return {reinterpret_cast<const char*>(page.Serial_Num), sizeof page.Serial_Num};
}

class Cfg : public testing::Test {
  protected:
    fs::path before = fs::current_path();
    fs::path folder;
    _HBA_Info_Page page = {}; // what the flash of the adapter holds that commands run on

    void SetUp() override {
        seam = {};
        memcpy(page.Signature, "TLVN", 4);
        page.RAID_Feature = 2;
        page.BGA_Rate = 0x5A;
        gCurrentAdapter = 0;
        gAdapterInfo[0] = {};
        gAdapterInfo[0].PortCount = 2;
        gAdapterInfo[0].DevID = 0x4740;
        char name[] = "/tmp/cfg-test.XXXXXX";
        folder = mkdtemp(name);
        fs::current_path(folder);
    }
    void TearDown() override {
        fs::current_path(before);
        fs::remove_all(folder);
    }
    static void write(const char* name, const std::string& text) { std::ofstream(name, std::ios::binary) << text; }
    static void addVd(KT_U16 id, std::vector<KT_U16> blocks, KT_U8 status) {
        _LD_Info ld = {};
        ld.ID = id;
        ld.Status = status;
        ld.RaidMode = KT_RAID5;
        ld.BlkCount = static_cast<KT_U8>(blocks.size());
        memset(ld.BlockIDs, 0xFF, sizeof ld.BlockIDs);
        for (size_t i = 0; i < blocks.size(); ++i) {
            ld.BlockIDs[i] = blocks[i];
            seam.blocks.push_back({blocks[i], static_cast<KT_U16>(blocks[i] + 100), 0, id, 0, 0, 512, 0, 0, 0});
        }
        seam.lds.push_back(ld);
        seam.ldStatuses.push_back({status, 0, 0, 0, 0, id});
    }
    // Two virtual disks, of which the second is offline, and two spares.
    static void addRaid() {
        addVd(0, {0, 1, 2}, KT_VD_ONLINE);
        addVd(4, {3, KT_NO_ID, 5}, KT_VD_OFFLINE);
        seam.disks = {
            {100, 0, KT_PD_MEMBER, {}}, {107, 0xFFFF, KT_PD_GLOBAL_SPARE, {}}, {108, 3, KT_PD_DEDICATED_SPARE, {}}};
    }
    Outcome runOn(CommandHandler handler, const std::string& line) {
        std::string bytes = bytesOf(page);
        seam.flash.assign(bytes.begin(), bytes.end());
        return run(handler, line);
    }
    // What the last run put behind it.
    static _HBA_Info_Page written() {
        _HBA_Info_Page behind = {};
        EXPECT_EQ(2 * sizeof behind, seam.flash.size());
        if (seam.flash.size() == 2 * sizeof behind) memcpy(&behind, &seam.flash[sizeof behind], sizeof behind);
        return behind;
    }
};
} // namespace

TEST_F(Cfg, BackUpListsDisksInPlaceOfBlocks) {
    addRaid();
    expect(runOn(doBackUp_CFG, "backup_cfg"), "Backup_cfg command is returned successfully!\n");
    EXPECT_EQ((Calls{READ, "KT_PD_GetHDRaidStatus", "KT_LD_GetInfo", "KT_BLK_GetInfo 0", "KT_BLK_GetInfo 1",
                     "KT_BLK_GetInfo 2", "KT_BLK_GetInfo 3"}),
              seam.calls);
    std::string text = fileText("hba0_cfg.txt");
    EXPECT_NE(std::string::npos, text.find("[PD MEMBER]=100,101,102\n"));
    EXPECT_NE(std::string::npos, text.find("[PD MEMBER]=103,5\n")); // behind a missing member blocks stay blocks
    EXPECT_NE(std::string::npos, text.find("[SPARE ID]=1\n[PHYSICAL DISK ID]=108\n[VIRTUAL DISK ID]=3\n[END]\n"));
    expect(runOn(doBackUp_CFG, "backup_cfg"), "There is the same file 'hba0_cfg.txt', please rename this file!!\n", 1);
    EXPECT_EQ(text, fileText("hba0_cfg.txt"));
    // A block that cannot be asked for keeps its id, and so does one that is not there.
    seam.statuses["KT_BLK_GetInfo 1"] = 12;
    seam.blocks.erase(seam.blocks.begin() + 2);
    const std::string longest = "with blank " + std::string(244, 'x');
    runOn(doBackUp_CFG, "backup_cfg -f \"" + longest + "\"");
    EXPECT_NE(std::string::npos, fileText(longest).find("[PD MEMBER]=100,1,2\n"));
    EXPECT_EQ(2, std::distance(fs::directory_iterator("."), fs::directory_iterator()));
}

TEST_F(Cfg, BackUpSavesAllOrNothing) {
    for (KT_U16 id = 0; id < 255; ++id) {
        seam.disks.push_back({id, KT_NO_ID, KT_PD_GLOBAL_SPARE, {}});
    }
    EXPECT_EQ(0, runOn(doBackUp_CFG, "backup_cfg -f most.txt").result);
    EXPECT_NE(std::string::npos, fileText("most.txt").find("[SPARE ID]=254\n[PHYSICAL DISK ID]=254\n"));
    seam.disks.push_back({255, KT_NO_ID, KT_PD_GLOBAL_SPARE, {}});
    testing::internal::CaptureStderr();
    expect(runOn(doBackUp_CFG, "backup_cfg -f more.txt"), "", 4);
    EXPECT_EQ("The adapter has more than 255 spare disks, which a configuration text cannot hold.\n",
              testing::internal::GetCapturedStderr());
    EXPECT_FALSE(fs::exists("more.txt"));
}

TEST_F(Cfg, BackUpWithoutRaidOrSignature) {
    page.RAID_Feature = 0;
    EXPECT_EQ(0, runOn(doBackUp_CFG, "backup_cfg -f a.txt").result);
    EXPECT_EQ(Calls{READ}, seam.calls);
    std::string text = fileText("a.txt");
    EXPECT_EQ("[RAID CONFIG]\n[BEGIN]\n[END]\n", text.substr(text.find("[RAID CONFIG]")));
    EXPECT_EQ(0, runOn(doBackUp_CFG, "backup_cfg -t PHY -f phy.txt").result);
    EXPECT_EQ(std::string::npos, fileText("phy.txt").find("RAID"));
    page.Signature[0] = 0;
    expect(runOn(doBackUp_CFG, "backup_cfg -f b.txt"), "\nInvalid  HBA Info page!", 1);
    EXPECT_EQ(0U, fs::file_size("b.txt"));
}

TEST_F(Cfg, RefusesOptions) {
    opterr = 0;
    expectRefused({
        {doBackUp_CFG, "backup_cfg -t raid", "-p : invalid type setting 'raid'\n"},
        {doBackUp_CFG, "backup_cfg -f a -f b", "Duplicated option specified.\n"},
        {doBackUp_CFG, "backup_cfg -t phy -t phy", "Duplicated option specified.\n"},
        {doBackUp_CFG, "backup_cfg -i 1", ""},
        {doRestore_CFG, "restore_cfg -t raid", "-p : invalid type setting 'raid'\n"},
        {doRestore_CFG, "restore_cfg --autoset -a x", "Duplicated option specified.\n"},
        {doRestore_CFG, "restore_cfg -r x --raid", "Duplicated option specified.\n"},
        {doRestore_CFG, "restore_cfg -f a -f b", "Duplicated option specified.\n"},
        {doRestore_CFG, "restore_cfg -i 1", ""},
    });
    gAdapterInfo[0].DevID = 0x1234;
    EXPECT_EQ("Error: Unknown DeviceID:1234 !\n", runOn(doRestore_CFG, "restore_cfg").printed);
    EXPECT_EQ(Calls{}, seam.calls);
    EXPECT_EQ("Error: Failed open no/such !\n", runOn(doBackUp_CFG, "backup_cfg -f no/such").printed);
    for (int id : {0x4740, 0x4745, 0x4730, 0x4732, 0x4734, 0x4735}) {
        gAdapterInfo[0].DevID = static_cast<KT_U16>(id);
        EXPECT_EQ(id >= 0x4740 ? "Error: Failed open 4740.txt !\n" : "Error: Failed open 4730.txt !\n",
                  runOn(doRestore_CFG, "restore_cfg").printed);
    }
}

TEST_F(Cfg, RestoreWritesThePageAfterACleanParse) {
    write("4740.txt", configuration(raidLines));
    addRaid();
    expect(runOn(doRestore_CFG, "restore_cfg"),
           "KTCLI_RAID_CONFIG End\nRestore HBA and Port config is returned successfully!\n\n", 1);
    EXPECT_EQ((Calls{READ, WRITE}), seam.calls);
    EXPECT_EQ(1U, written().HBA_Flag);
    EXPECT_EQ(0x5A, written().BGA_Rate);
    EXPECT_EQ("old" + std::string(17, '\0'), serialOf(written()));
    _HBA_Info_Page sums = written();
    EXPECT_EQ(0, GetHBAInfoChksum_Flash(&sums));
    seam.calls.clear();
    write("bad.txt", configuration("[VD ID]=x\n"));
    Outcome outcome = runOn(doRestore_CFG, "restore_cfg -f bad.txt --raid");
    EXPECT_EQ("Restore_Error: vd id isn't a digit!\nRestore_Error: \nAnalysis config file error!\n", outcome.printed);
    EXPECT_EQ(Calls{READ}, seam.calls);
}

TEST_F(Cfg, RestoreReadsFilesUpToTheirLimit) {
    std::string text = configuration("");
    text.resize(0x30000, '#');
    write("full.txt", text);
    write("big.txt", text + "#");
    text.resize(65535);
    write("odd.txt", text);
    EXPECT_EQ("Size of the file big.txt is too big (65535).\n", runOn(doRestore_CFG, "restore_cfg -f big.txt").printed);
    for (const char* line : {"restore_cfg -f full.txt", "restore_cfg -f odd.txt"})
        EXPECT_NE(std::string::npos, runOn(doRestore_CFG, line).printed.find("successfully")) << line;
    EXPECT_EQ("Error: Failed open . !\n", runOn(doRestore_CFG, "restore_cfg -f .").printed);
}

TEST_F(Cfg, RestoreReplacesTheRaidInOrder) {
    write("raid.txt", configuration(raidLines));
    addRaid();
    testing::internal::CaptureStderr();
    Outcome outcome = runOn(doRestore_CFG, "restore_cfg -f raid.txt --raid");
    EXPECT_EQ("Deleting virtual disk 0 '' (RAID5).\nDeleting virtual disk 4 '' (RAID5).\n"
              "Releasing spare disk 107.\nReleasing spare disk 108.\n"
              "Creating virtual disk 'first' (RAID1, 20000 M) on disks 5, 6.\n"
              "Creating virtual disk 'second' (RAID0, 3000 M) on disks 7, 8.\n"
              "Assigning disk 9 as global spare disk.\nAssigning disk 10 as spare disk of array 2.\n",
              testing::internal::GetCapturedStderr());
    EXPECT_EQ("KTCLI_RAID_CONFIG End\nRestore HBA and Port config is returned successfully!\n\n"
              "Restore raid config is returned successfully!\n",
              outcome.printed);
    EXPECT_EQ(1, outcome.result);
    EXPECT_EQ((Calls{READ, WRITE, "KT_PD_GetHDRaidStatus", "KT_LD_GetInfo", "KT_LD_GetStatus 0", "KT_LD_Delete 0 1",
                     "KT_LD_GetStatus 4", "KT_LD_Delete 4 0", "KT_LD_Create", "KT_LD_Create", "KT_PD_Spare2FreeHD 107",
                     "KT_PD_Spare2FreeHD 108", "KT_PD_FreeHD2GlobalSpare 9", "KT_PD_FreeHD2DGSpare 10 2"}),
              seam.calls);
    // The second one names neither stripe, policies nor initialisation.
    _Create_LD_Param second = {};
    second.RaidMode = KT_RAID0;
    second.HDCount = 2;
    second.RoundingScheme = KT_ROUND_1GB;
    second.StripeBlockSize = 64;
    second.InitializationOption = KT_INIT_NONE;
    second.SectorCoefficient = 1;
    second.HDIDs[0] = 7;
    second.HDIDs[1] = 8;
    memcpy(second.Name, "second", 6);
    second.Size = 3000U << 10;
    EXPECT_EQ(bytesOf(second), seam.sent["KT_LD_Create"]);
}

TEST_F(Cfg, ACapacityOfNothingIsAllTheSpaceThereIs) {
    write("all.txt", configuration("[VD ID]=0\n[RAID MODE]=RAID0\n[CAPACITY (M)]=0\n[PD MEMBER]=7\n"));
    testing::internal::CaptureStderr();
    EXPECT_EQ(1, runOn(doRestore_CFG, "restore_cfg -f all.txt --raid").result);
    EXPECT_EQ("Creating virtual disk '' (RAID0, all available space) on disks 7.\n",
              testing::internal::GetCapturedStderr());
    _Create_LD_Param created = {};
    memcpy(&created, seam.sent["KT_LD_Create"].data(), seam.sent["KT_LD_Create"].size());
    EXPECT_EQ(0U, created.Size);
}

TEST_F(Cfg, RestoredDisksTakeTheirParametersFromTheText) {
    const struct {
        KT_U64 size;
        KT_U8 rounding;
    } sizes[] = {{20000, KT_ROUND_10GB}, {3000, KT_ROUND_1GB}, {1234, KT_ROUND_NONE}, {4294967295, KT_ROUND_NONE}};
    for (const auto& row : sizes) {
        _LD_Info ld = {};
        ld.Size = row.size;
        ld.CacheMode = 5;
        ld.StripeBlockSize = 128;
        ld.HDCount = 255; // more than the record holds
        _Create_LD_Param param;
        KT_Restore_LdCreateParam(&ld, &param);
        EXPECT_EQ(row.rounding, param.RoundingScheme) << row.size;
        EXPECT_EQ(row.size * 1024, param.Size);
        EXPECT_EQ(5, param.CachePolicy);
        EXPECT_EQ(128, param.StripeBlockSize);
        EXPECT_EQ(KT_INIT_QUICK, param.InitializationOption);
        ld.StripeBlockSize = 256;
        KT_Restore_LdCreateParam(&ld, &param);
        EXPECT_EQ(64, param.StripeBlockSize);
    }
}

TEST_F(Cfg, EveryFailureEndsTheRestore) {
    write("raid.txt", configuration(raidLines));
    addRaid();
    const struct {
        const char* call;
        const char* printed;
    } cases[] = {
        {READ, "\nExecutes read hba config fail (error 9: Invalid physical disk id).\n"},
        {WRITE, "\nExecutes write hba config fail (error 9: Invalid physical disk id).\n"},
        {"KT_PD_GetHDRaidStatus", "\nExecutes get pd spare info  fail (error 9: Invalid physical disk id).\n"},
        {"KT_LD_GetInfo", "\nExecutes get ld info fail (error 9: Invalid physical disk id).\n"},
        {"KT_LD_GetStatus 4", "Failed to get VD 4  status(error 9: Invalid physical disk id).\n"},
        {"KT_LD_Delete 0 1", "Failed to delete VD 0 (error 9: Invalid physical disk id).\n"},
        {"KT_LD_Create", "\nFailed to create virtual disk (error 9: Invalid physical disk id).\n"},
        {"KT_PD_Spare2FreeHD 108", "Failed to delete spare disk 108 (error 9: Invalid physical disk id).\n"},
        {"KT_PD_FreeHD2GlobalSpare 9",
         "\nFailed to assign disk 9 as global spare disk (error 9: Invalid physical disk id).\n"},
        {"KT_PD_FreeHD2DGSpare 10 2",
         "\nFailed to assign disk 10 as a spare disk to array 2 (error 9: Invalid physical disk id).\n"},
    };
    testing::internal::CaptureStderr();
    for (const auto& row : cases) {
        seam.statuses = {{row.call, 9}};
        Outcome outcome = runOn(doRestore_CFG, "restore_cfg -f raid.txt --raid");
        EXPECT_EQ(9, outcome.result) << row.call;
        EXPECT_EQ(row.call, seam.calls.back());
        EXPECT_EQ(row.printed, outcome.printed.substr(outcome.printed.size() - strlen(row.printed))) << row.call;
    }
    testing::internal::GetCapturedStderr();
    seam.statuses = {{"KT_Flash_Bin", 1}};
    EXPECT_EQ("\nFailed to read HBA configuration from flash! (error 1: Failed).\n",
              runOn(doBackUp_CFG, "backup_cfg").printed);
    seam.statuses = {{"KT_LD_GetInfo", 1}};
    EXPECT_EQ(1, runOn(doBackUp_CFG, "backup_cfg").result);
    EXPECT_FALSE(fs::exists("hba0_cfg.txt"));
}

TEST_F(Cfg, RestoreLeavesTheRaidAloneWithoutACompleteSection) {
    addRaid();
    write("phy.txt", "[PORT CONFIG]\n[PORT ID]=1\n[AMP]=5\n[END]\n");
    write("full.txt", configuration(raidLines));
    write("level.txt", configuration("[VD ID]=0\n[CAPACITY (M)]=1\n[PD MEMBER]=1\n"));
    write("members.txt", configuration("[VD ID]=0\n[RAID MODE]=RAID0\n[CAPACITY (M)]=1\n"));
    write("size.txt", configuration("[VD ID]=3\n[RAID MODE]=RAID0\n[PD MEMBER]=1\n"));
    write("spare.txt", configuration("[SPARE ID]=0\n"));
    write("off.txt", "[ADAPTER CONFIG]\n[RAID FEATURE]=DISABLE\n[END][RAID CONFIG][END]");
    const std::string read = "Restore HBA and Port config is returned successfully!\n\n";
    const std::string whole = "KTCLI_RAID_CONFIG End\n" + read;
    const std::string phyOnly = "The file was read for its PHY tuning only; the RAID configuration stays as it is.\n";
    const std::string lacks = " lacks its mode, capacity or members; the RAID configuration stays as it is.\n";
    const struct {
        const char* words;
        std::string printed;
        int result;
    } cases[] = {
        {"-t phy -f phy.txt", read + phyOnly, 7},
        // Of a text in full all but its virtual disks and spares is restored.
        {"-t phy -f full.txt", read + phyOnly, 7},
        {"-f level.txt", whole + "Virtual disk 0" + lacks, 7},
        {"-f members.txt", whole + "Virtual disk 0" + lacks, 7},
        {"-f size.txt", whole + "Virtual disk 3" + lacks, 7},
        {"-f spare.txt", whole + "Spare 0 lacks its physical disk; the RAID configuration stays as it is.\n", 7},
        {"-f off.txt", whole, 1},
    };
    for (const auto& row : cases) {
        seam.calls.clear();
        expect(runOn(doRestore_CFG, std::string("restore_cfg --raid ") + row.words), row.printed, row.result);
        EXPECT_EQ((Calls{READ, WRITE}), seam.calls) << row.words;
    }
    runOn(doRestore_CFG, "restore_cfg -t phy -f full.txt");
    EXPECT_EQ(1U, written().HBA_Flag);
    page.RAID_Feature = 0;
    write("raid.txt", configuration(raidLines));
    seam.calls.clear();
    runOn(doRestore_CFG, "restore_cfg -f raid.txt --raid");
    EXPECT_EQ(WRITE, seam.calls.back());
    // With nothing to do on either side nothing is said.
    seam = {};
    page = {};
    page.RAID_Feature = 2;
    write("none.txt", configuration(""));
    EXPECT_EQ("KTCLI_RAID_CONFIG End\nRestore HBA and Port config is returned successfully!\n\n",
              runOn(doRestore_CFG, "restore_cfg -f none.txt --raid").printed);
}

TEST_F(Cfg, AutosetAssignsAndAdvances) {
    write("c.txt", configuration(""));
    write("setcfg.txt", assignment);
    fs::permissions("c.txt", fs::perms::owner_read);
    fs::create_symlink("setcfg.txt", "link");
    Outcome outcome = runOn(doRestore_CFG, "restore_cfg -f c.txt --autoset");
    EXPECT_EQ("To autoset SAS Addr and Serial Number,setcfg.txt should be configed manually.\n\n"
              "KTCLI_RAID_CONFIG End\nRestore HBA and Port config is returned successfully!\n\n",
              outcome.printed);
    const KT_U8 first[8] = {0x50, 0x0A, 0x1F, 0x40, 0x0F, 0xFF, 0xFF, 0xFF};
    const KT_U8 second[8] = {0x50, 0x0A, 0x1F, 0x40, 0x10, 0, 0, 0};
    EXPECT_EQ(0, memcmp(first, written().SAS_Address[1], 8));
    EXPECT_EQ(0, memcmp(second, written().SAS_Address[0], 8));
    EXPECT_EQ("TARN0000010000000009", serialOf(written()));
    _HBA_Info_Page sums = written();
    EXPECT_EQ(0, GetHBAInfoChksum_Flash(&sums));
    std::string expected = configuration("");
    expected.replace(expected.find("=old"), 4, "=TARN0000010000000009");
    expected.replace(expected.find("00000000:00000000"), 17, "500A1F40:10000000");
    expected.replace(expected.find("11111111 : 11111111"), 19, "500A1F40:0FFFFFFF");
    EXPECT_EQ(expected, fileText("c.txt"));
    EXPECT_EQ(fs::perms::owner_read, fs::status("c.txt").permissions());
    std::string advanced = assignment;
    advanced.replace(advanced.find("500A1F40:0FFFFFFF"), 17, "500A1F40:10000001");
    advanced.replace(advanced.find("TARN0000010000000009"), 20, "TARN0000010000000010");
    EXPECT_EQ(advanced, fileText("setcfg.txt"));
    EXPECT_EQ(3, std::distance(fs::directory_iterator("."), fs::directory_iterator()));
    // The next adapter goes on from there.
    EXPECT_EQ(1, runOn(doRestore_CFG, "restore_cfg -f c.txt --autoset").result);
    EXPECT_EQ("TARN0000010000000010", serialOf(written()));
    EXPECT_NE(std::string::npos, fileText("setcfg.txt").find("[SERIALNUMBER_CURRENT]=TARN0000010000000011\n"));
}

TEST_F(Cfg, SerialNumbersGoOnWithoutLetters) {
    for (const auto& [counter, next] : std::vector<std::pair<KT_U64, KT_U64>>{
             {0x8, 0x9}, {0x9, 0x10}, {0xA0, 0x100}, {0x1999, 0x2000}, {0x9A9, 0x1000}, {0x9999999999, 0x999999999A}}) {
        EXPECT_EQ(next, nextSerialCounter(counter)) << std::hex << counter;
    }
}

TEST_F(Cfg, WhatTheRangesNoLongerReachStaysTheAdaptersOwn) {
    // The file is another adapter's.
    std::string text = configuration("");
    text.replace(text.find("11111111 : 11111111"), 19, "500A1F40:00000005");
    write("c.txt", text);
    std::string used = assignment;
    used.replace(used.find("0FFFFFFF"), 8, "FFFFFFFF");
    used.replace(used.find("00099"), 5, "00008");
    write("setcfg.txt", used);
    memcpy(page.Serial_Num, "OWN0000007", 10);
    memset(page.SAS_Address, 0xAB, sizeof page.SAS_Address);
    Outcome outcome = runOn(doRestore_CFG, "restore_cfg -f c.txt --autoset");
    EXPECT_NE(std::string::npos, outcome.printed.find("Restore_Warning: No available count for SAS Address!"));
    EXPECT_NE(std::string::npos, outcome.printed.find("Restore_Warning: No available count for Serial Number!"));
    EXPECT_EQ(serialOf(page), serialOf(written()));
    EXPECT_EQ(0, memcmp(page.SAS_Address, written().SAS_Address, sizeof page.SAS_Address));
    _HBA_Info_Page sums = written();
    EXPECT_EQ(0, GetHBAInfoChksum_Flash(&sums));
    EXPECT_NE(std::string::npos, fileText("c.txt").find("[SERIAL_NUMBER]=" + serialOf(page) + " # serial\n"));
    EXPECT_NE(std::string::npos, fileText("c.txt").find("[SASADDRESS]= ABABABAB:ABABABAB # blanks\n"));
    EXPECT_EQ(used, fileText("setcfg.txt"));
}

// Files can be no longer than so many bytes while this lives.
struct FileLimit {
    rlimit before = {};
    explicit FileLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &before);
        rlimit limit = {bytes, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileLimit() { setrlimit(RLIMIT_FSIZE, &before); }
};

TEST_F(Cfg, NothingIsFlashedWhenAFileCannotBeRewritten) {
    const std::string opening = "To autoset SAS Addr and Serial Number,setcfg.txt should be configed manually.\n\n"
                                "KTCLI_RAID_CONFIG End\n";
    const std::string longer = std::string(1000, '#') + "\n";
    const struct {
        std::string file, numbers;
        const char* printed;
    } cases[] = {
        {configuration("") + longer, assignment, "Error: Failed open c.txt !\n"},
        {configuration(""), assignment + longer, "Error:Failed open setcfg.txt \n"},
    };
    for (const auto& row : cases) {
        write("c.txt", row.file);
        write("setcfg.txt", row.numbers);
        FileLimit limit(1000);
        expect(runOn(doRestore_CFG, "restore_cfg -f c.txt --autoset"), opening + row.printed, 1);
        EXPECT_EQ(READ, seam.calls.back());
        EXPECT_EQ(row.file, fileText("c.txt"));
        EXPECT_EQ(row.numbers, fileText("setcfg.txt"));
        EXPECT_EQ(2, std::distance(fs::directory_iterator("."), fs::directory_iterator()));
    }
}

TEST_F(Cfg, AutosetStartsAtTheStartAndStopsAtTheEnd) {
    write("c.txt", configuration(""));
    const std::string range = "[PORT_GROUP]=0,1\n[SAS_ADDRESS_START]=00000000:00000005\n"
                              "[SAS_ADDRESS_END]=00000000:00000008\n[SERIALNUMBER_START]=ABCDEFGHIJ00000000A0\n"
                              "[SERIALNUMBER_END]=ABCDEFGHIJ0000000100\n";
    gAdapterInfo[0].DevID = 0x4734;
    write("setcfg4.txt", range + "[SAS_ADDRESS_CURRENT]=\n");
    runOn(doRestore_CFG, "restore_cfg -f c.txt --autoset");
    EXPECT_EQ(range + "[SAS_ADDRESS_CURRENT]=00000000:00000007\n[SERIALNUMBER_CURRENT]=ABCDEFGHIJ0000000100\n",
              fileText("setcfg4.txt"));
    EXPECT_EQ(5, written().SAS_Address[0][7]);
    write("setcfg4.txt", range + "[SAS_ADDRESS_CURRENT]=00000000:00000007");
    runOn(doRestore_CFG, "restore_cfg -f c.txt --autoset");
    EXPECT_EQ(8, written().SAS_Address[1][7]);
    // One address is left for two ports: none is given, the adapter keeps its own; the serial number still is.
    page.SAS_Address[0][7] = 77;
    const std::string end = "[SERIALNUMBER_CURRENT]=ABCDEFGHIJ0000000100\n[SAS_ADDRESS_CURRENT]=00000000:00000008";
    write("setcfg4.txt", range + end);
    Outcome outcome = runOn(doRestore_CFG, "restore_cfg -f c.txt --autoset");
    EXPECT_NE(std::string::npos,
              outcome.printed.find("Restore_Warning: No available count for SAS Address!(setcfg.txt)\n"));
    EXPECT_EQ(77, written().SAS_Address[0][7]);
    EXPECT_EQ(range + "[SERIALNUMBER_CURRENT]=ABCDEFGHIJ0000000101\n[SAS_ADDRESS_CURRENT]=00000000:00000008",
              fileText("setcfg4.txt"));
    outcome = runOn(doRestore_CFG, "restore_cfg -f c.txt --autoset");
    EXPECT_NE(std::string::npos,
              outcome.printed.find("Restore_Warning: No available count for Serial Number!(setcfg.txt)\n"));
}

TEST_F(Cfg, AutosetRefusesItsFile) {
    const struct {
        const char* from;
        const char* to;
        const char* printed;
    } cases[] = {
        {"[PORT_GROUP]", "[PORTS]", "Restore_Error: Unknown option!(setcfg.txt)\n"},
        {"[PORT_GROUP]", "PORT_GROUP", "Restore_Error: Error grammar in setcfg.txt!\n"},
        {"[PORT_GROUP]=", "[PORT_GROUP] 0", "Restore_Error: Error grammar in setcfg.txt!\n"},
        {"[PORT_GROUP]=1, 0", "", "Did you config setcfg.txt file ?\n"},
        {"[SAS_ADDRESS_START]=500A1F40:00000010", "[SAS_ADDRESS_START]=00000000:00000000",
         "Did you config setcfg.txt file ?\n"},
        {"1, 0", "1,x", "Restore_Error: port ID in PORT_GROUP isn't digital!(setcfg.txt)\n"},
        {"1, 0", "1,8", "Restore_Error: port ID in PORT_GROUP isn't digital!(setcfg.txt)\n"},
        {"1, 0", "1,1",
         "Restore_Error:Port count 1 in setcfg.txt \ndon't match with adapter port number:2!(setcfg.txt)\n"},
        {"START]=5", "START]=", "Restore_Error: length of SAS_ADDRESS_START isn't 17!(setcfg.txt)\n"},
        {"START]=500A1F40:", "START]=500A1F40.",
         "Restore_Error: The 9th bit of SAS_ADDRESS_START isn't ':'!(setcfg.txt)\n"},
        {"END]=500A1F40:", "END]=500A1F40.", "Restore_Error: 9th bit of SAS_ADDRESS_END isn't ':'!(setcfg.txt)\n"},
        {"CURRENT]=5", "CURRENT]=X",
         "Restore_Error: First 8bits of SAS_ADDRESS_CURRENT isn't  hex digit!(setcfg.txt)\n"},
        {"0FFFFFFF", "0FFFFFFG",
         "Restore_Error: Last 8bits of SAS_ADDRESS_CURRENT isn't  hexadecimal digit!(setcfg.txt)\n"},
        {"START]=TARN", "START]=TAR", "Restore_Error: length of SERIALNUMBER_START isn't 20!(setcfg.txt)\n"},
        {"START]=TARN0000010", "START]=TARN000001G",
         "Restore_Error: Last 10bits of SERIALNUMBER_START isn't a hex digital!(setcfg.txt)\n"},
        {"END]=TARN", "END]=BARN",
         "Restore_Error: First 10bits of SERIALNUMBER_END isn't euqal with SERIALNUMBER_START!(setcfg.txt)\n"},
        {"0000000009", "000000000A", "Restore_Error: Last 10bits of SERIALNUMBER_CURRENT isn't digital!(setcfg.txt)\n"},
    };
    write("c.txt", configuration(""));
    const std::string opening = "To autoset SAS Addr and Serial Number,setcfg.txt should be configed manually.\n\n";
    EXPECT_EQ(opening + "Error:Failed open setcfg.txt \n",
              runOn(doRestore_CFG, "restore_cfg -f c.txt --autoset").printed);
    for (const auto& row : cases) {
        std::string text = assignment;
        text.replace(text.find(row.from), strlen(row.from), row.to);
        write("setcfg.txt", text);
        expect(runOn(doRestore_CFG, "restore_cfg -f c.txt --autoset"), opening + row.printed, 1);
        EXPECT_EQ(READ, seam.calls.back());
        EXPECT_EQ(text, fileText("setcfg.txt"));
    }
    write("setcfg.txt", assignment);
    write("c.txt", "[PORT CONFIG][END][RAID CONFIG][END]");
    EXPECT_EQ(opening + "KTCLI_RAID_CONFIG End\nError:Didn't find the Serial number.\n",
              runOn(doRestore_CFG, "restore_cfg -f c.txt --autoset").printed);
    // The adapter keeps what it has, and the next one gets the same, when the flash refuses.
    write("c.txt", configuration(""));
    seam.statuses = {{WRITE, 5}};
    EXPECT_EQ(5, runOn(doRestore_CFG, "restore_cfg -f c.txt --autoset").result);
    EXPECT_EQ(assignment, fileText("setcfg.txt"));
    EXPECT_EQ(2, std::distance(fs::directory_iterator("."), fs::directory_iterator()));
}
