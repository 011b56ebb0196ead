// Numbers and words typed by people, hexadecimal text, the clock setting.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

#include "Public/errorMsg.h"
#include "Public/output.h"
#include "Public/utility.h"
#include "utcTime/utcTime.h"

namespace {

TEST(Numbers, AreRecognised) {
    for (const char* text : {"", "0", "007", "99999999999999999999999"}) {
        EXPECT_TRUE(isNumber(text)) << text;
    }
    for (const char* text : {"12a", "-1", "+1", " 1", "1 ", "0x1"}) {
        EXPECT_FALSE(isNumber(text)) << text;
    }
    for (const char* text : {"0x0", "0XfF", "0xabcdefABCDEF0123456789"}) {
        EXPECT_TRUE(isHex(text)) << text;
    }
    for (const char* text : {"", "0", "0x", "x1", "0x1g", "1x1", "ff"}) {
        EXPECT_FALSE(isHex(text)) << text;
    }
}

TEST(Numbers, AreRefusedWhenTheyDoNotFit) {
    KT_U8 byte = 77;
    EXPECT_FALSE(parseDecimal("256", byte));
    EXPECT_FALSE(parseDecimal("12a", byte));
    EXPECT_FALSE(parseDecimal("18446744073709551616", byte));
    EXPECT_EQ(byte, 77);
    EXPECT_TRUE(parseDecimal("255", byte));
    EXPECT_EQ(byte, 255);
    EXPECT_FALSE(parseDecimal("", byte));
    EXPECT_TRUE(parseDecimal(emptyIsZero(""), byte));
    EXPECT_EQ(byte, 0);
    EXPECT_STREQ(emptyIsZero("7"), "7");
    KT_U64 wide = 0;
    EXPECT_TRUE(parseDecimal("18446744073709551615", wide));
    EXPECT_EQ(wide, UINT64_MAX);
    EXPECT_FALSE(parseDecimal("18446744073709551616", wide));
    EXPECT_TRUE(parseDecimalOrHex("0xFFFFFFFFFFFFFFFF", wide));
    EXPECT_EQ(wide, UINT64_MAX);
    EXPECT_FALSE(parseDecimalOrHex("0x10000000000000000", wide));
    EXPECT_FALSE(parseDecimalOrHex("ff", wide));
    EXPECT_FALSE(parseDecimalOrHex("", wide));
    int capped = 5;
    EXPECT_FALSE(parseCapped("", capped));
    EXPECT_FALSE(parseCapped("0x1", capped));
    EXPECT_FALSE(parseCappedOrHex("", capped));
    EXPECT_FALSE(parseCappedOrHex("0x", capped));
    EXPECT_EQ(capped, 5);
    EXPECT_TRUE(parseCapped("2147483646", capped));
    EXPECT_EQ(capped, 2147483646);
    for (const char* text : {"2147483648", "99999999999999999999999", "0x80000000"}) {
        EXPECT_TRUE(parseCappedOrHex(text, capped));
        EXPECT_EQ(capped, 2147483647) << text;
    }
}

TEST(Numbers, WrapOnlyWhereAsked) {
    EXPECT_EQ(narrowed<KT_U8>("257"), 1);
    EXPECT_EQ(narrowed<KT_U16>("65537"), 1);
    EXPECT_EQ(narrowed<KT_U8>("99999999999999999999999"), 255);
}

std::string ids(const char* text, PdItems items = PdItems::Strict) {
    PdList list;
    if (!parsePdList(text, items, list)) return "refused";
    std::string all;
    for (unsigned i = 0; i < list.count; ++i) {
        all += std::to_string(list.ids[i]) + " ";
    }
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
    for (int i = 1; i < 128; ++i) {
        many += "," + std::to_string(i);
    }
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
    const std::tuple<unsigned, unsigned short, const char*, const char*> rows[] = {
        {0, 3, "00000000", "000"},    {0, 0, "00000000", ""},          {0x1F, 5, "0000001F", "000"},
        {0x12345, 3, "00012345", ""}, {0xFFFFFFFF, 8, "FFFFFFFF", ""}, {0x12345678, 9, "12345678", "0"},
    };
    for (const auto& [value, width, eight, zeros] : rows) {
        char text[32] = {};
        U32_TRANSLATE_STR(text, value, fill_zero_to_str_before_u32value(text, value), 16);
        EXPECT_STREQ(text, eight);
        memset(text, 0, sizeof text);
        EXPECT_EQ(fill_zero_to_str_before_hexu32value(text, value, width), strlen(zeros));
        EXPECT_STREQ(text, zeros);
    }
    char text[16] = {};
    EXPECT_EQ(U32_TRANSLATE_STR(text, 4294967295U, 1, 10), 11);
    EXPECT_STREQ(text + 1, "4294967295");
}

TEST(Words, StandForLevelsAndActions) {
    std::string levels;
    for (const char* word : {"0", "1", "10", "1e", "5", "50", "6", "60", "hc", "hs", "hybrid"}) {
        const auto code = static_cast<unsigned char>(chooseRaidMode(word));
        levels += std::to_string(code) + " " + RaidModeStr(code) + ", ";
    }
    EXPECT_EQ(levels, "0 RAID0, 1 RAID1, 16 RAID10, 17 RAID1e, 5 RAID5, 80 RAID50, 6 RAID6, 96 RAID60, "
                      "10 tandemix capacity, 11 tandemix safe, 12 tandemix hybrid, ");
    for (const char* word : {"HC", "", "2", "JBOD", "15", "01"}) {
        EXPECT_EQ(chooseRaidMode(word), 255) << word;
    }
    EXPECT_STREQ(RaidModeStr(15), "JBOD");
    EXPECT_STREQ(RaidModeStr(2), "unknown");
    EXPECT_EQ(chooseBGAAction("resume"), BGA_RESUME);
    EXPECT_EQ(chooseBGAAction("Resume"), BGA_INVALID);
    EXPECT_EQ(chooseBGAAction("sta"), BGA_INVALID);
}

TEST(Words, OfErrors) {
    EXPECT_STREQ(ErrorMessage(54), "Specified physical disk  is a spare drive");
    EXPECT_STREQ(ErrorMessage(250), "entry no key");
    for (int code : {2, 3, 31, 50, 62, 90, 150, 157, 167, 183, 186, 240, 251, 255}) {
        EXPECT_STREQ(ErrorMessage(static_cast<unsigned char>(code)), "Unknown error") << code;
    }
}

TEST(Fields, AreShownSafely) {
    const KT_U8 full[6] = {'a', '\n', 0x1B, 'b', 0xFF, '%'};
    EXPECT_STREQ(FieldText<6>(full).text, "a??b?%");
    const KT_U8 ended[4] = {'x', 0, 'y', 'z'};
    EXPECT_STREQ(FieldText<4>(ended).text, "x");
    unsigned char phys[] = {0, 17, 255};
    char text[16];
    getPhyIdString(text, phys, 3);
    EXPECT_STREQ(text, "0, 17, 255");
    getPhyIdString(text, phys, 0);
    EXPECT_STREQ(text, "");
}

TEST(ClockSetting, FollowsTheFirstLineThatCounts) {
    auto setting = [](const std::string& lines) {
        char path[] = "/tmp/ktsetup-clock-XXXXXX";
        int fd = mkstemp(path);
        EXPECT_EQ(write(fd, lines.data(), lines.size()), static_cast<ssize_t>(lines.size()));
        close(fd);
        int found = scanClockFile(path);
        unlink(path);
        return found;
    };
    EXPECT_EQ(scanClockFile("/nonexistent/clock"), UTC_CLOCK_UNKNOWN);
    EXPECT_EQ(setting(""), UTC_CLOCK_UNKNOWN);
    EXPECT_EQ(setting("HWCLOCK=\"-u\"\n"), UTC_CLOCK_UTC);
    EXPECT_EQ(setting("x\n HWCLOCK=\"--localtime\"\nHWCLOCK=\"-u\""), UTC_CLOCK_LOCAL);
    EXPECT_EQ(setting("UTC=false\nHWCLOCK=\"-u\"\n"), UTC_CLOCK_UTC);
    EXPECT_EQ(setting("#HWCLOCK=\"-u\"\nUTC=false\n"), UTC_CLOCK_LOCAL);
    EXPECT_EQ(setting("#UTC=true\nUTC=true"), UTC_CLOCK_UTC);
    EXPECT_EQ(setting("HWCLOCK=-u\n"), UTC_CLOCK_UNKNOWN);
}

} // namespace
