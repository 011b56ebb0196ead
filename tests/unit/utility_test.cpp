// Numbers and words typed by people, hexadecimal text, the clock setting.
#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "Public/errorMsg.h"
#include "Public/output.h"
#include "Public/utility.h"
#include "tests/support/rows.h"
#include "tests/support/scratch.h"
#include "utcTime/utcTime.h"

namespace {

TEST(Numbers, AreDigitsOnlyAndTakenUpToTheirLast) {
    for (const char* text : {"12a", "-1", "+1", " 1", "1 ", "0x1"})
        EXPECT_FALSE(isNumber(text)) << text;
    EXPECT_TRUE(isHex("0XfF"));
    for (const char* text : {"", "0", "0x", "x1", "0x1g", "1x1", "ff"})
        EXPECT_FALSE(isHex(text)) << text;
    KT_U8 byte = 77;
    EXPECT_FALSE(parseDecimal("256", byte));
    EXPECT_EQ(byte, 77);
    EXPECT_TRUE(parseDecimal("255", byte));
    EXPECT_EQ(byte, 255);
    KT_U64 wide = 0;
    EXPECT_TRUE(parseDecimalOrHex("0xFFFFFFFFFFFFFFFF", wide));
    EXPECT_EQ(wide, UINT64_MAX);
    EXPECT_FALSE(parseDecimalOrHex("0x10000000000000000", wide));
    int capped = 5;
    EXPECT_TRUE(parseCapped("2147483646", capped));
    EXPECT_EQ(capped, 2147483646);
    for (const char* text : {"2147483648", "0x80000000"}) {
        EXPECT_TRUE(parseCappedOrHex(text, capped));
        EXPECT_EQ(capped, 2147483647) << text;
    }
    // Only where asked they wrap.
    EXPECT_EQ(narrowed<KT_U8>("257"), 1);
    EXPECT_EQ(narrowed<KT_U16>("65537"), 1);
    EXPECT_EQ(narrowed<KT_U8>("99999999999999999999999"), 255);
}

std::string ids(const char* text, PdItems items = PdItems::Strict) {
    PdList list;
    if (!parsePdList(text, items, list)) return "refused";
    std::string all;
    for (unsigned i = 0; i < list.count; ++i)
        all += std::to_string(list.ids[i]) + " ";
    return all;
}

TEST(PdList, TakesIdsAndNothingElse) {
    EXPECT_EQ(ids("3"), "3 ");
    EXPECT_EQ(ids("1,1,2"), "1 2 ");
    EXPECT_EQ(ids("1,1,,x,2y,0,65536x", PdItems::Lenient), "refused");
    EXPECT_EQ(ids("1, 1,,x,2y,0,65535x", PdItems::Lenient), "1 1 0 2 0 65535 ");
    EXPECT_EQ(ids("", PdItems::WithGaps), "");
    EXPECT_EQ(ids(",1,,2,1,", PdItems::WithGaps), "1 2 ");
    EXPECT_EQ(ids("1, 2", PdItems::WithGaps), "refused");
    EXPECT_EQ(ids("65535,000000000007"), "65535 7 ");
    for (const char* text :
         {"", ",", "1,,2", ",1", "1,", "1,x", "65536", "-1", "1,2x", "1 ,2", "99999999999999999999", "0x1"}) {
        EXPECT_EQ(ids(text), "refused") << text;
    }
    std::string many = "0";
    for (int i = 1; i < 128; ++i)
        many += "," + std::to_string(i);
    EXPECT_NE(ids(many.c_str()), "refused");
    EXPECT_NE(ids((many + ",5").c_str()), "refused");
    EXPECT_EQ(ids((many + ",128").c_str()), "refused");
}

TEST(Hexadecimal, KeepsItsOldWays) {
    EXPECT_EQ(atohex("0x"), 0U);
    EXPECT_EQ(atohex("0x1F"), 0x1FU);
    EXPECT_EQ(atohex("zzaB"), 0xABU);
    EXPECT_EQ(atohex("0x123456789"), 0x23456789U);
    KT_U32 value = 9;
    str_to_hex_u32("1fZ", &value);
    EXPECT_EQ(value, 0x1FU);
    str_to_hex_u32("Z1", &value);
    EXPECT_EQ(value, 0U);
}

TEST(Hexadecimal, IsFilledWithZeros) {
    const std::tuple<unsigned, unsigned short, const char*> rows[] = {
        {0, 3, "000"}, {0, 0, ""}, {0x1F, 5, "000"}, {0x12345, 3, ""}, {0xFFFFFFFF, 8, ""}, {0x12345678, 9, "0"}};
    for (const auto& [value, width, zeros] : rows) {
        char text[32] = {};
        EXPECT_EQ(fill_zero_to_str_before_hexu32value(text, value, width), strlen(zeros));
        EXPECT_STREQ(text, zeros);
    }
}

TEST(Words, StandForLevelsAndActions) {
    std::string levels;
    for (const char* word : {"0", "1", "10", "1e", "5", "50", "6", "60", "hc", "hs", "hybrid"}) {
        const auto code = static_cast<unsigned char>(chooseRaidMode(word));
        levels += std::to_string(code) + " " + RaidModeStr(code) + ", ";
    }
    EXPECT_EQ(levels, "0 RAID0, 1 RAID1, 16 RAID10, 17 RAID1e, 5 RAID5, 80 RAID50, 6 RAID6, 96 RAID60, "
                      "10 tandemix capacity, 11 tandemix safe, 12 tandemix hybrid, ");
    for (const char* word : {"HC", "", "2", "JBOD", "15", "01"})
        EXPECT_EQ(chooseRaidMode(word), 255) << word;
    EXPECT_STREQ(RaidModeStr(15), "JBOD");
    EXPECT_STREQ(RaidModeStr(2), "unknown");
    EXPECT_EQ(chooseBGAAction("resume"), BGA_RESUME);
    EXPECT_EQ(chooseBGAAction("Resume"), BGA_INVALID);
    EXPECT_EQ(chooseBGAAction("sta"), BGA_INVALID);
}

// The words were checked one by one when this sum was taken.
TEST(Words, OfErrors) {
    std::string texts;
    for (unsigned code = 0; code < 256; ++code)
        texts += std::to_string(code) + ErrorMessage(static_cast<unsigned char>(code)) + "\n";
    EXPECT_EQ(sumOf(texts), 0xE2D9B54EU) << texts;
    EXPECT_STREQ(ErrorMessage(54), "Specified physical disk  is a spare drive");
}

TEST(ClockSetting, FollowsTheFirstLineThatCounts) {
    const ScratchFolder folder;
    const std::string path = folder.path + "/clock";
    auto setting = [&](const std::string& lines) {
        writeText(path, lines);
        return scanClockFile(path.c_str());
    };
    EXPECT_EQ(scanClockFile(path.c_str()), UTC_CLOCK_UNKNOWN);
    EXPECT_EQ(setting(""), UTC_CLOCK_UNKNOWN);
    EXPECT_EQ(setting("HWCLOCK=\"-u\"\n"), UTC_CLOCK_UTC);
    EXPECT_EQ(setting("x\n HWCLOCK=\"--localtime\"\nHWCLOCK=\"-u\""), UTC_CLOCK_LOCAL);
    EXPECT_EQ(setting("UTC=false\nHWCLOCK=\"-u\"\n"), UTC_CLOCK_UTC);
    EXPECT_EQ(setting("#HWCLOCK=\"-u\"\nUTC=false\n"), UTC_CLOCK_LOCAL);
    EXPECT_EQ(setting("#UTC=true\nUTC=true"), UTC_CLOCK_UTC);
    EXPECT_EQ(setting("HWCLOCK=-u\n"), UTC_CLOCK_UNKNOWN);
}

} // namespace
