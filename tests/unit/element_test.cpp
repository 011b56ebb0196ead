#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "Functions/enclosure/enclosure.h"
#include "tests/support/printed.h"

// What is said of an element with a status, the "no" lines and the lines every element has left out.
static std::string said(KT_U8 type, KT_U8 common, KT_U8 byte1, KT_U8 byte2, KT_U8 byte3) {
    _Enc_Element_Info element = {};
    element.ElementID = 9;
    element.ElementType = type;
    element.Status[0] = common;
    element.Status[1] = byte1;
    element.Status[2] = byte2;
    element.Status[3] = byte3;
    std::string all = printedBy([&] { PrintEncElementInfo(&element); });
    std::string kept;
    for (size_t at = 0, end = 0; (end = all.find('\n', at)) != std::string::npos; at = end + 1) {
        std::string line = all.substr(at, end - at);
        bool common_line = line.starts_with("E") || line == "Status: OK";
        if (!common_line && !line.ends_with(": no")) kept += line + "; ";
    }
    return kept;
}

TEST(Element, DecodesTheFieldsOfEachType) {
    const struct {
        KT_U8 type;
        KT_U8 bytes[3];
        const char* said;
    } cases[] = {
        {KT_SES_DEVICE, {7, 0x02, 0x10}, "Slot: 7; Ident: yes; Device off: yes; "},
        {KT_SES_DEVICE,
         {255, 0x4C, 0x60},
         "Slot: 255; Ready to insert: yes; Ready to remove: yes; Do not remove: yes; "
         "Fault sensed: yes; Fault requested: yes; "},
        {KT_SES_ARRAY_DEVICE, {0x02, 0x02, 0x20}, "Slot: 9; Ident: yes; Fault requested: yes; Rebuild: yes; "},
        {KT_SES_ARRAY_DEVICE,
         {0x7D, 0x4C, 0x50},
         "Slot: 9; Fault sensed: yes; Rebuild aborted: yes; Device off: yes; "
         "Hot spare: yes; Reserved device: yes; Consistency check: yes; "
         "In critical array: yes; In failed array: yes; "
         "Ready to insert: yes; Ready to remove: yes; Do not remove: yes; "},
        {KT_SES_POWER_SUPPLY,
         {0x80, 0x0A, 0x02},
         "Ident: yes; AC fail: yes; DC over voltage: yes; DC over current: yes; "},
        {KT_SES_POWER_SUPPLY,
         {0, 0x04, 0x5D},
         "Fail: yes; Off: yes; DC fail: yes; DC under voltage: yes; "
         "Over temperature failure: yes; Temperature warning: yes; "},
        {KT_SES_COOLING, {0x81, 0xA4, 0x23}, "Actual speed: 4200 RPM; Speed code: 3 (third lowest); Ident: yes; "},
        {KT_SES_COOLING,
         {0xF8, 0x00, 0xF8},
         "Actual speed: 0 RPM; Speed code: 0 (stopped); Ident: yes; Fail: yes; Off: yes; "},
        {KT_SES_COOLING, {0x07, 0xFF, 0x07}, "Actual speed: 20470 RPM; Speed code: 7 (highest); "},
        {KT_SES_TEMPERATURE,
         {0, 45, 0x05},
         "Temperature: 25 Celsius; Over temperature warning: yes; Under temperature warning: yes; "},
        {KT_SES_TEMPERATURE,
         {0x40, 0, 0x0A},
         "Temperature: -20 Celsius; Fail: yes; Over temperature failure: yes; "
         "Under temperature failure: yes; "},
        {KT_SES_TEMPERATURE, {0, 255, 0}, "Temperature: 235 Celsius; "},
        {KT_SES_DOOR_LOCK, {0x80, 0, 0x01}, "Ident: yes; Unlocked: yes; "},
        {KT_SES_DOOR_LOCK, {0x40, 0, 0x02}, "Fail: yes; Open: yes; "},
        {KT_SES_ALARM,
         {0x80, 0, 0xCA},
         "Ident: yes; Mute requested: yes; Muted: yes; Tone information: yes; Tone critical: yes; "},
        {KT_SES_ALARM, {0x40, 0, 0x15}, "Fail: yes; Remind: yes; Tone non-critical: yes; Tone unrecoverable: yes; "},
        {KT_SES_DISPLAY, {0xC2, 0x41, 0x05}, "Display mode: 2; Display characters: 0x4105; Ident: yes; Fail: yes; "},
        {KT_SES_VOLTAGE,
         {0x85, 0x04, 0xC2},
         "Voltage: 12.18 V; Ident: yes; Under voltage warning: yes; Under voltage critical: yes; "},
        {KT_SES_VOLTAGE,
         {0x4A, 0xFB, 0x50},
         "Voltage: -12.00 V; Fail: yes; Over voltage warning: yes; Over voltage critical: yes; "},
        {0, {0xFF, 0xFF, 0xFF}, ""},
        {0x7F, {0xFF, 0xFF, 0xFF}, ""},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(row.said, said(row.type, 1, row.bytes[0], row.bytes[1], row.bytes[2])) << int{row.type};
    }
}

// The word that asks for a type, its code, and the name that is printed.
TEST(Element, TypesHaveTheirWordsAndNames) {
    const std::tuple<const char*, KT_U8, const char*> types[] = {
        {"dev", 0x01, "Unspecified element"},
        {"pow", 0x02, "Power Supply"},
        {"fan", 0x03, "Cooling Device"},
        {"tpr", 0x04, "Temperature Sensor"},
        {"dor", 0x05, "Door Lock"},
        {"alm", 0x06, "Audible Alarm"},
        {"dpl", 0x0C, "Display"},
        {"vlt", 0x12, "Voltage Sensor"},
        {"arydev", 0x17, "Array Device"},
    };
    for (const auto& [word, type, name] : types) {
        EXPECT_EQ(SetElementType(word), type) << word;
        EXPECT_EQ(printedBy([&] { PrintElementType(type); }), std::string(name) + "\n");
    }
    for (const char* word : {"", "d", "array", "fans"}) {
        EXPECT_EQ(SetElementType(word), 0) << word;
    }
    for (KT_U8 type : std::initializer_list<KT_U8>{0x00, 0x07, 0x18, 0xFF}) {
        EXPECT_EQ(printedBy([&] { PrintElementType(type); }), "Unspecified element\n");
    }
}

TEST(Element, NamesTheCommonStatus) {
    std::string all;
    for (int common : {0x00, 0x42, 0x23, 0x14, 0x05, 0x06, 0x07, 0x08, 0x0F}) {
        all += said(0, static_cast<KT_U8>(common), 0, 0, 0);
    }
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
