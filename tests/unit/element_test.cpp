#include <gtest/gtest.h>

#include <cstring>

#include "Functions/enclosure/enclosure.h"
#include "tests/support/printed.h"
#include "tests/support/rows.h"

// The sum of what is said of every byte of a status alone, of each type. Public/elementFlags.h has the bits.
TEST(Element, DecodesTheFieldsOfEachType) {
    std::string texts;
    for (KT_U8 type = 0; type <= 0x18; ++type) {
        for (unsigned value = 0; value < 4 * 256; ++value) {
            _Enc_Element_Info element = {};
            element.ElementID = 9;
            element.ElementType = type;
            element.Status[value / 256] = static_cast<KT_U8>(value);
            texts += printedBy([&] { PrintEncElementInfo(&element); });
        }
    }
    EXPECT_EQ(sumOf(texts), 0x22A37A39U);
}

TEST(Element, OfATypeWithoutANameIsUnspecified) {
    for (const char* word : {"d", "array", "fans"})
        EXPECT_EQ(SetElementType(word), 0) << word;
    EXPECT_EQ(SetElementType("dev"), KT_SES_DEVICE);
    for (const int type : {0x00, 0x01, 0x18})
        EXPECT_EQ(printedBy([&] { PrintElementType(static_cast<KT_U8>(type)); }), "Unspecified element\n");
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
