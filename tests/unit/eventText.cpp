#include "events/eventText.h"
#include "tests/support/rows.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

namespace {

struct Line {
    KT_U16 eventClass;
    KT_U16 code;
    KT_U32 param0;
    KT_U32 param3;
    bool withSerial;
    const char* text;
};
// Texts that stand for no event of the sums below.
const Line lines[] = {
    {0, 9, 421, 44, true, " Adapter 300 with serial number KT-0042 is detected"},
    {0, 65535, 421, 44, false, " Event(s) lost. Current seqNum 4000000123, last seqNum 3"},
    {1, 100, 0, 44, false, " Consistency check/fix on virtual disk 300 found inconsistent LBA 0x2"},
    {2, 59, 0, 44, false, " Spare disk information changed"},
    {2, 65535, 0, 0, false, "Unknown PD event code 65535"},
    {3, 0, 0, 0, false, " Unknown PM event class: code = 0"},
    {5, 1, 0, 0, false, " Unknown MDD event class: code = 1"},
    {6, 1, 0, 0, false, " Unknown BSL event class: code = 1"},
    {7, 1, 0, 0, false, " Unknown SAS event class: code = 1"},
    {8, 1, 0, 0, false, " Unknown Enclosure event class: code = 1"},
    {11, 9, 0, 0, false, " Unknown Cache event class: code = 9"},
    {65535, 65535, 0, 0, false, "WARNING: Unknown event class 65535, code 65535"},
};

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

std::string textOf(KT_U16 eventClass, KT_U16 code, KT_U32 param0, KT_U32 param3, bool withSerial) {
    _Event event = makeEvent(eventClass, code);
    const KT_U32 params[] = {param0, 2, 3, param3};
    std::copy(std::begin(params), std::end(params), event.Params);
    if (withSerial) setSense(event, "KT-0042", 7);
    return textOf(event);
}

TEST(EventText, PutsTheParametersInTheirPlaces) {
    for (const Line& line : lines)
        EXPECT_EQ(textOf(line.eventClass, line.code, line.param0, line.param3, line.withSerial), line.text);
}

// The words were checked one by one when these sums were taken, each over the texts of a class.
TEST(EventText, SaysEveryEventInItsWords) {
    const std::map<KT_U16, KT_U32> sums = {{0, 0xF2D5C801},  {1, 0x963C5217},  {2, 0xF989E913},
                                           {4, 0x40F87483},  {9, 0x94633D13},  {10, 0xDA92F5AD},
                                           {12, 0x835E1C2D}, {13, 0x7FE90BDF}, {15, 0x9A08A297}};
    for (const auto& [eventClass, expected] : sums) {
        std::string texts;
        for (KT_U16 code = 0; code < 110; ++code) {
            for (KT_U32 param3 : {44U, 1U})
                texts += textOf(eventClass, code, 421, param3, false) + "\n";
        }
        EXPECT_EQ(sumOf(texts), expected) << "class " << eventClass << ":\n" << texts;
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
