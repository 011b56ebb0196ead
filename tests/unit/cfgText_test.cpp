#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "Public/cfg/keys.h"
#include "Public/cfg/raidConfig.h"
#include "Public/cfg/reader.h"
#include "Public/cfg/writer.h"
#include "Public/common.h"
#include "Public/utility.h"
#include "tests/support/printed.h"
#include "tests/support/rows.h"

using namespace std::string_literals;

namespace {
// A text read into records, with what the reader printed.
struct Reading {
    bool good;
    std::string printed;
    _HBA_Info_Page page;
    _file_sasaddr_place_info_t places;
    CfgRaidHolder raid = newCfgRaid();
};

Reading read(std::string text, KT_U8 mode = CFG_FULL_FORM, const _HBA_Info_Page& page = {}) {
    Reading reading = {false, "", page, {}};
    reading.places.available_port = 0xFF;
    clean_comment(text.data(), text.size());
    KT_U16 counts = 0;
    CfgRaid& raid = *reading.raid;
    // A copy on the heap of exactly this size, so that a read beyond it is noticed.
    std::vector<char> exact(text.begin(), text.end());
    reading.printed = printedBy([&] {
        reading.good = KT_Analyze_Grammar(exact.data(), exact.size(), &reading.places, &reading.page, raid.lds,
                                          raid.spares, &counts, mode);
    });
    raid.ldCount = static_cast<KT_U8>(counts);
    raid.spareCount = static_cast<KT_U8>(counts >> 8);
    return reading;
}

std::string adapterText(const std::string& lines) {
    return "[ADAPTER CONFIG]\n[BEGIN]\n" + lines + "[END]\n[RAID CONFIG]\n[BEGIN]\n[END]\n";
}
std::string portText(const std::string& lines) {
    return "[PORT CONFIG]\n[BEGIN]\n" + lines + "[END]\n[RAID CONFIG]\n[BEGIN]\n[END]\n";
}
std::string raidText(const std::string& lines) {
    return "[PORT CONFIG]\n[BEGIN]\n[END]\n[RAID CONFIG]\n[BEGIN]\n" + lines + "[END]\n";
}

// clang-format off
const _HBA_Info_Page samplePage = {
    .Signature = {'T', 'L', 'V', 'N'}, .RAID_Feature = 0x3 | 0x80, .HBA_Flag = 0x2 | 0x200 | 0xF0000000,
    .DSpinUpGroup = 2, .DSpinUpTimer = 7, .Delay_Time = 30, .Serial_Num = "TARN-0001",
    .SAS_Address = {{0x50, 0x51, 0x52, 0x53, 0x54, 0x55, 0x56, 0x57}, {0, 1, 2, 3, 4, 5, 6, 7}},
    .PHY_Rate = {1}, .PHY_Tuning = {{0xA, 5, 0x2B, 1, 0}, {0, 7, 0x3F, 0, 0x3FFFF}}, .BGA_Rate = 0x5A};
const _LD_Info sampleVd = {
    .ID = 3, .StripeBlockSize = 64, .RaidMode = KT_RAID6, .HDCount = 4, .CacheMode = 5, .Size = KT_U64{20000} << 10,
    .Name = "data", .BlockIDs = {0, 12, KT_NO_ID, 256}, .NumParityDisk = 2};
// clang-format on
} // namespace

// Written, read back, and written the same way again, at every level, and every beginning of it is refused; bits that
// the text does not name stay as they are in the page that is read into.
TEST(CfgText, ComesBackAsItWasWritten) {
    gAdapterInfo[5] = {};
    gAdapterInfo[5].PortCount = 2;
    _HBA_Info_Page page = samplePage;
    _LD_Info lds[2] = {sampleVd, sampleVd};
    lds[1].ID = 4000;
    lds[1].CacheMode = 0;
    // The second one is no spare.
    _HD_RAID_STATUS spares[3] = {
        {9, 0xFF, KT_PD_GLOBAL_SPARE, {}}, {8, 0, KT_PD_MEMBER, {}}, {300, 0x1F, KT_PD_DEDICATED_SPARE, {}}};
    const auto written = [&](KT_U8 form) {
        std::string text;
        const size_t length = KT_Form_Grammar(5, text, &page, lds, 2, spares, 3, form);
        EXPECT_EQ(length, text.size());
        return text;
    };
    std::string text;
    for (KT_U8 level : {KT_RAID0, KT_RAID1, KT_RAID10, KT_RAID1E, KT_RAID5, KT_RAID50, KT_RAID60}) {
        lds[1].RaidMode = level;
        text = written(CFG_FULL_FORM);
        Reading again = read(text);
        EXPECT_EQ("KTCLI_RAID_CONFIG End\n", again.printed);
        ASSERT_EQ(2, again.raid->ldCount);
        ASSERT_EQ(2, again.raid->spareCount);
        EXPECT_EQ(300, again.raid->spares[1].HDID);
        for (unsigned i = 0; i < 2; ++i) {
            EXPECT_EQ(KT_INIT_QUICK, again.raid->lds[i].BGAStatus);
            again.raid->lds[i].Size <<= 10; // which is read in megabytes
        }
        EXPECT_EQ(level, again.raid->lds[1].RaidMode);
        std::string same;
        KT_Form_Grammar(5, same, &again.page, again.raid->lds, 2, again.raid->spares, 2, CFG_FULL_FORM);
        EXPECT_EQ(text, same);
    }
    for (size_t length = 0; length + 1 < text.size(); ++length)
        EXPECT_FALSE(read(text.substr(0, length)).good) << length;
    _HBA_Info_Page ones;
    memset(&ones, 0xFF, sizeof ones);
    const _HBA_Info_Page into = read(text, CFG_FULL_FORM, ones).page;
    EXPECT_EQ(page.HBA_Flag | ~0x207U, into.HBA_Flag);
    EXPECT_EQ(0xFC | 0x3, into.RAID_Feature);
    EXPECT_EQ(0xFF, into.BGA_Rate);
    EXPECT_EQ(0x3FFFFU, into.PHY_Tuning[0].Reserved);
    gAdapterInfo[5].PortCount = 255;
    EXPECT_NE(std::string::npos, written(CFG_PHY_FORM).find("[PORT ID]=7\n"));
    EXPECT_EQ(std::string::npos, written(CFG_PHY_FORM).find("[PORT ID]=8\n"));
    page.Signature[0] = 'X';
    EXPECT_EQ("", written(CFG_FULL_FORM));
}

TEST(CfgReader, IsLenientAboutCaseBlanksAndComments) {
    Reading reading = read("anything [begin] [end]\n# [PORT CONFIG]\n[adapter config][begin]\r\n"
                           "[int13]\t=  en able # boot\n[silent_mode] disabled\n[SPINUP GROUP]=1=8\n[End]\n"
                           "[port config] [begin] [port id]=0\n[amp]=f\n[end][RAID config]\n"
                           "[vd id]=007\n[raid mode] = raid5\n[RAID NAME]=My VD\n[read policy]=readahead\n"
                           "[pd member]=1, 2,2,03,\n[SPARE ID]=0\n[PHYSICAL DISK ID]=4\n[end]trailing [junk]");
    ASSERT_TRUE(reading.good) << reading.printed;
    EXPECT_EQ(1U, reading.page.HBA_Flag);
    EXPECT_EQ(8, reading.page.DSpinUpGroup);
    EXPECT_EQ(0xFU, reading.page.PHY_Tuning[0].AMP);
    const _LD_Info& ld = reading.raid->lds[0];
    EXPECT_EQ(7, ld.ID);
    EXPECT_EQ(KT_RAID5, ld.RaidMode);
    EXPECT_STREQ("MyVD", reinterpret_cast<const char*>(ld.Name));
    EXPECT_EQ(KT_CACHE_READ_AHEAD, ld.CacheMode);
    EXPECT_EQ(KT_INIT_NONE, ld.BGAStatus);
    EXPECT_EQ(3, ld.HDCount);
    EXPECT_EQ(3, ld.BlockIDs[2]);
    EXPECT_EQ(CFG_GLOBAL_SPARE, reading.raid->spares[0].DGID);
    // A value may be as long as forty characters; the identities of other cards are checked and dropped.
    EXPECT_TRUE(read(adapterText("[SERIAL_NUMBER]=" + std::string(40, 's') + "\n[SUBVENDOR_ID]=1b4B\n")).good);
    // A NUL ends a comment as well.
    EXPECT_EQ("Restore_Error: unknown HBA config option!\n",
              read(adapterText("#" + std::string(1, '\0') + "\n")).printed);
    // Ports before any id, and values of keys that pend across a section, are no reason to stop.
    EXPECT_TRUE(read(portText("[AMP]=zz\n[SASADDRESS]=1\n")).good);
    EXPECT_TRUE(read("[ADAPTER CONFIG][INT13]=ENABLE[RAID CONFIG]\n[END]").good);
}

TEST(CfgReader, ReadsThePhyFormToTheEndOfItsPorts) {
    std::string text = "[PORT CONFIG]\n[PORT ID]=3\n[DRIVE]=3f\n[END]\n[whatever]";
    Reading reading = read(text, CFG_PHY_FORM);
    EXPECT_TRUE(reading.good);
    EXPECT_EQ("", reading.printed);
    EXPECT_EQ(0x3FU, reading.page.PHY_Tuning[3].Drive_En);
    EXPECT_EQ("Restore_Error! \n", read(text).printed);
    EXPECT_EQ("syntax error!! line 4 \n>>", read("[PORT CONFIG]\n[PORT ID]=3\n[END]\n").printed);
    EXPECT_FALSE(read("[PORT CONFIG]\n[END]\n").good);
}

// Sums of what is said to values of each section's keys, in every place. Where that is to be different, compare what
// the test prints with what it printed before.
TEST(CfgReader, SaysWhatIsWrong) {
    const struct {
        std::string (*text)(const std::string&);
        std::vector<std::string> before;
        unsigned sum;
    } sections[] = {
        {adapterText, {""}, 0xF20152B1},
        {portText, {"", "[PORT ID]=0\n"}, 0xE982AB2C},
        {raidText, {"", "[VD ID]=0\n", "[VD ID]=0\n[RAID MODE]=RAID6\n", "[SPARE ID]=0\n"}, 0x771166D0},
    };
    const std::string values =
        "|-|0|1|4|7|8|9|32|33|40|100|254|255|256|65535|65536|99999999|4294967295|4294967297|A|G|x1|1x|-1|,1|1;2|1,2|"
        "1,65535|FF|FFFF|0x1B|1234567:12345678|12345678.12345678|1234567g:12345678|12345678:1234567g|"
        "12345678:12345678|1234567890123456|12345678901234567|RAID|RAID5|RAID60|ENABLE|NONE|QUICK|WRITEBACK|READAHEAD|"
        "3Gb/s";
    for (size_t i = 0; i < CFG_SECTIONS; ++i) {
        const CfgSection& section = cfgSections[i];
        std::string texts;
        for (const CfgKey* key = section.keys; key < section.keys + section.count; ++key) {
            for (const std::string& before : sections[i].before) {
                std::istringstream each(values);
                for (std::string value; std::getline(each, value, '|');) {
                    const std::string lines = before + key->key + "=" + value + "\n";
                    const Reading reading = read(sections[i].text(lines));
                    texts += lines + (reading.good ? "good\n" : reading.printed);
                }
            }
        }
        EXPECT_EQ(sumOf(texts), sections[i].sum) << texts;
    }
    const std::pair<std::string, const char*> grammar[] = {
        {"", "syntax error!! line 1 \n>>"},
        {"\n[RAID CONFIG]\n", "syntax error!! line 3 \n>>"},
        {"[PORT CONFIG]\n[PORT ID]=1", "syntax error!! line 2 \n>>"},
        {"[ADAPTER CONFIG]\n[AMP]=1\n", "Restore_Error: unknown HBA config option!\n"},
        {"[PORT CONFIG]\n[INT13]=1\n", "Restore_Error: unknown port config option!\n"},
        {raidText("VD ID=1\n"), "Restore_Error: unknown raid config option!\n"},
        {"[PORT CONFIG][END]\nx", "Restore_Error! \n"},
        {adapterText("[INT13]=" + std::string(41, 'E') + "\n"),
         "Restore_Error: failed to get config value! \nRestore_Error: \n"},
    };
    for (const auto& [text, said] : grammar)
        EXPECT_EQ(said, read(text).printed) << text;
}

TEST(CfgReader, KeepsWithinItsRecords) {
    std::string lines;
    for (int i = 0; i < 255; ++i)
        lines += "[VD ID]=" + std::to_string(i) + "\n";
    EXPECT_EQ(255, read(raidText(lines)).raid->ldCount);
    EXPECT_EQ("Restore_Error: vd id is invalid!\nRestore_Error: \n", read(raidText(lines + "[VD ID]=256\n")).printed);
    lines.clear();
    for (int i = 0; i < 65535; ++i)
        lines += "[VD ID]=" + std::to_string(i == 255 ? 0 : i) + "\n";
    EXPECT_EQ("Restore_Error: vd id is invalid!\nRestore_Error: \n", read(raidText(lines)).printed);
    lines.clear();
    for (int i = 0; i < 256; ++i)
        lines += "[SPARE ID]=" + std::to_string(i) + "\n[PHYSICAL DISK ID]=1\n";
    EXPECT_EQ("Restore_Error: invalid pd id for spare config!\nRestore_Error: \n", read(raidText(lines)).printed);
}
