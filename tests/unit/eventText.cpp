#include "events/eventText.h"
#include "tests/support/rows.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace {

_Event makeEvent(KT_U16 eventClass, KT_U16 code) {
    _Event event = {};
    event.Class = eventClass;
    event.Code = code;
    event.DeviceID = 300;
    event.SequenceNo = 4000000123;
    return event;
}

void setSense(_Event& event, const char* text, KT_U8 length) {
    memcpy(event.SenseData, text, strnlen(text, sizeof event.SenseData));
    event.SenseDataLength = length;
}

std::string textOf(const _Event& event) {
    char text[EVENT_TEXT_SIZE];
    memset(text, '~', sizeof text);
    composeEvent(event, text);
    return text;
}

std::string textOf(KT_U16 eventClass, KT_U16 code, KT_U32 param3) {
    _Event event = makeEvent(eventClass, code);
    const KT_U32 params[] = {421, 2, 3, param3};
    std::copy(std::begin(params), std::end(params), event.Params);
    return textOf(event);
}

// The words were checked one by one when these sums were taken, each over the texts of a class: of 0 to 15, and 65535.
TEST(EventText, SaysEveryEventInItsWords) {
    const unsigned sums[] = {0xFA5C617D, 0x26F1CAAF, 0xE8B0AF8B, 0xC73080EB, 0x8C7AF5AB, 0xC5073953,
                             0x9BE66C9F, 0xE26D440F, 0x46C9BFD1, 0xA2338283, 0xA9C3DE2D, 0x7BBAC229,
                             0xE756C829, 0x11AF8AD7, 0x8DB6792B, 0xA41F85BB, 0x5EAFA4F7};
    for (size_t i = 0; i < std::size(sums); ++i) {
        std::string texts;
        for (KT_U16 code = 0; code <= 110; ++code) {
            for (KT_U32 param3 : {44U, 1U})
                texts +=
                    textOf(i < 16 ? static_cast<KT_U16>(i) : KT_U16{65535}, code < 110 ? code : KT_U16{65535}, param3) +
                    "\n";
        }
        EXPECT_EQ(sumOf(texts), sums[i]) << "class " << i << ":\n" << texts;
    }
}

TEST(EventText, TakesSerialNumbersFromTheirValidBytesAndCountsWithoutASign) {
    _Event event = makeEvent(0, 9);
    memset(event.SenseData, 'S', sizeof event.SenseData);
    event.SenseDataLength = 255;
    EXPECT_EQ(textOf(event), " Adapter 300 with serial number " + std::string(30, 'S') + " is detected");
    setSense(event, "AB\x1b[2J%s", 7);
    EXPECT_EQ(textOf(event), " Adapter 300 with serial number AB?[2J% is detected");
    event.Code = 65535;
    event.Params[2] = 4000000122;
    EXPECT_EQ(textOf(event), " Event(s) lost. Current seqNum 4000000123, last seqNum 4000000122");
}

TEST(EventText, HasAWordForEverySeverity) {
    std::string words;
    for (KT_U8 severity = 0; severity <= 8; ++severity)
        words += severityText(severity);
    EXPECT_EQ(words + severityText(255),
              "[UNKNOWN][OTHER][INFO][WARNING][MINOR][MAJOR][CRITICAL][FATAL][UNKNOWN][UNKNOWN]");
}

} // namespace
