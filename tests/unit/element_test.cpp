#include <gtest/gtest.h>

#include <cstring>

#include "Functions/enclosure/enclosure.h"
#include "tests/support/printed.h"
#include "tests/support/rows.h"

// What is said of an element with the bytes of a status, the "no" lines and the lines every element has left out.
static std::string said(KT_U8 type, std::initializer_list<KT_U8> status) {
    _Enc_Element_Info element = {};
    element.ElementID = 9;
    element.ElementType = type;
    std::copy(status.begin(), status.end(), element.Status);
    std::istringstream all(printedBy([&] { PrintEncElementInfo(&element); }));
    std::string kept;
    for (std::string line; std::getline(all, line);) {
        if (line.starts_with("E") || line == "Status: OK" || line.ends_with(": no")) continue;
        kept += (kept.empty() ? "" : "; ") + line;
    }
    return kept;
}

TEST(Element, DecodesTheFieldsOfEachType) {
    // The type and three bytes of a status, and what is said of them.
    const std::string table = R"(
01 07 02 10 => Slot: 7; Ident: yes; Device off: yes
01 ff 4c 60 => Slot: 255; Ready to insert: yes; Ready to remove: yes; Do not remove: yes; Fault sensed: yes; Fault requested: yes
17 02 02 20 => Slot: 9; Ident: yes; Fault requested: yes; Rebuild: yes
17 79 00 00 => Slot: 9; Rebuild aborted: yes; Hot spare: yes; Reserved device: yes; Consistency check: yes; In critical array: yes
17 04 00 00 => Slot: 9; In failed array: yes
17 00 4c 50 => Slot: 9; Fault sensed: yes; Device off: yes; Ready to insert: yes; Ready to remove: yes; Do not remove: yes
02 80 0a 02 => Ident: yes; AC fail: yes; DC over voltage: yes; DC over current: yes
02 00 04 5d => Fail: yes; Off: yes; DC fail: yes; DC under voltage: yes; Over temperature failure: yes; Temperature warning: yes
03 81 a4 23 => Actual speed: 4200 RPM; Speed code: 3 (third lowest); Ident: yes
03 f8 00 f8 => Actual speed: 0 RPM; Speed code: 0 (stopped); Ident: yes; Fail: yes; Off: yes
04 00 2d 05 => Temperature: 25 Celsius; Over temperature warning: yes; Under temperature warning: yes
04 40 00 0a => Temperature: -20 Celsius; Fail: yes; Over temperature failure: yes; Under temperature failure: yes
05 80 00 01 => Ident: yes; Unlocked: yes
05 40 00 02 => Fail: yes; Open: yes
06 80 00 ca => Ident: yes; Mute requested: yes; Muted: yes; Tone information: yes; Tone critical: yes
06 40 00 15 => Fail: yes; Remind: yes; Tone non-critical: yes; Tone unrecoverable: yes
0c c2 41 05 => Display mode: 2; Display characters: 0x4105; Ident: yes; Fail: yes
12 85 04 c2 => Voltage: 12.18 V; Ident: yes; Under voltage warning: yes; Under voltage critical: yes
12 4a fb 50 => Voltage: -12.00 V; Fail: yes; Over voltage warning: yes; Over voltage critical: yes
00 ff ff ff => 
7f ff ff ff => 
)";
    for (const TableRow& row : rowsOf(table)) {
        unsigned bytes[4] = {};
        std::istringstream line(row.line);
        for (unsigned& byte : bytes)
            line >> std::hex >> byte;
        const auto byte = [&](int i) { return static_cast<KT_U8>(bytes[i]); };
        const std::string text = said(byte(0), {1, byte(1), byte(2), byte(3)});
        EXPECT_EQ(row.message, text.empty() ? "" : text + "\n") << row.line;
    }
}

TEST(Element, OfATypeWithoutANameIsUnspecified) {
    for (const char* word : {"d", "array", "fans"})
        EXPECT_EQ(SetElementType(word), 0) << word;
    EXPECT_EQ(SetElementType("dev"), KT_SES_DEVICE);
    for (const int type : {0x00, 0x01, 0x18})
        EXPECT_EQ(printedBy([&] { PrintElementType(static_cast<KT_U8>(type)); }), "Unspecified element\n");
}

TEST(Element, NamesTheCommonStatus) {
    std::string all;
    for (int common : {0x00, 0x42, 0x23, 0x14, 0x05, 0x06, 0x07, 0x08, 0x0F})
        all += said(0, {static_cast<KT_U8>(common)}) + "; ";
    EXPECT_EQ("Status: unsupported; Status: critical; Predicted failure: yes; Status: non-critical; Disabled: yes; "
              "Status: unrecoverable; Swapped: yes; Status: not installed; Status: unknown; Status: not available; "
              "Status: no access allowed; Status: reserved; ",
              all);
}

TEST(Element, KeepsTheConfigurationTextWithinItsField) {
    _Enc_Element_Config config = {};
    config.ElementType = KT_SES_COOLING;
    memset(config.Text, 'x', sizeof config.Text);
    memset(config.Reserved1, 'y', sizeof config.Reserved1);
    config.Text[1] = '\x1B';
    for (unsigned length : {0U, 3U, 64U, 255U}) {
        config.TextLength = static_cast<KT_U8>(length);
        std::string text(length < 64 ? length : 64, 'x');
        if (length > 1) text[1] = '?';
        EXPECT_EQ("Enclosure ID: 0\nElement ID: 0\nElement type: Cooling Device\nNumber of elements: 0\nSub-enclosure "
                  "ID: 0\nText: " +
                      text + "\n",
                  printedBy([&] { PrintEncElementConfig(&config); }));
    }
}
