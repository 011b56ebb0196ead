#include "Public/eventText.h"

#include <cstring>
#include <gtest/gtest.h>
#include <set>
#include <string>

namespace {

struct Line {
    KT_U16 eventClass;
    KT_U16 code;
    KT_U32 param0;
    KT_U32 param3;
    bool withSerial;
    const char* text;
};
const Line lines[] = {
#include "eventLines.inc"
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

TEST(EventText, SaysEveryEventInItsWords) {
    for (const Line& line : lines) {
        _Event event = makeEvent(line.eventClass, line.code);
        event.Params[0] = line.param0;
        event.Params[1] = 2;
        event.Params[2] = 3;
        event.Params[3] = line.param3;
        if (line.withSerial) setSense(event, "KT-0042", 7);
        EXPECT_EQ(textOf(event), line.text) << "class " << line.eventClass << " code " << line.code;
    }
    EXPECT_EQ(std::size(lines), 235u);
}

TEST(EventText, SpeaksOfTandemixWhereAVirtualDiskMayBeOne) {
    int hybrids = 0;
    for (KT_U16 code = 0; code <= 100; ++code) {
        _Event event = makeEvent(1, code);
        event.Params[3] = 1;
        hybrids += textOf(event).find("Tandemix 300") != std::string::npos ? 1 : 0;
    }
    EXPECT_EQ(hybrids, 4 + 3 + 30 + 5);
    _Event event = makeEvent(1, 26);
    event.Params[0] = 7;
    event.Params[3] = 1;
    EXPECT_EQ(textOf(event), " Consistency check on Tandemix 300 is 7% done");
}

TEST(EventText, NamesWhatItDoesNotKnow) {
    const struct {
        KT_U16 eventClass, code;
        const char* text;
    } cases[] = {
        {0, 18, "Unknown adapter event code 18"},
        {1, 10, "Unknown VD event code 10"},
        {2, 65535, "Unknown PD event code 65535"},
        {3, 0, " Unknown PM event class: code = 0"},
        {4, 2, "Unknown expander event code 2"},
        {5, 1, " Unknown MDD event class: code = 1"},
        {6, 1, " Unknown BSL event class: code = 1"},
        {7, 1, " Unknown SAS event class: code = 1"},
        {8, 1, " Unknown Enclosure event class: code = 1"},
        {9, 35, "Unknown battery event code 35"},
        {10, 0, " Unknown Flash event class: code = 0"},
        {11, 9, " Unknown Cache event class: code = 9"},
        {12, 0, " Unknown miscellaneous event: code = 0"},
        {13, 2, "WARNING: Unknown event class 13, code 2"},
        {14, 0, "WARNING: Unknown event class 14, code 0"},
        {15, 16, "WARNING: Unknown event class 15, code 16"},
        {65535, 65535, "WARNING: Unknown event class 65535, code 65535"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(textOf(makeEvent(c.eventClass, c.code)), c.text);
    }
}

TEST(EventText, TakesTheSerialNumberOnlyFromItsValidBytes) {
    _Event event = makeEvent(0, 9);
    memset(event.SenseData, 'S', sizeof event.SenseData);
    event.SenseDataLength = 255;
    EXPECT_EQ(textOf(event), " Adapter 300 with serial number " + std::string(30, 'S') + " is detected");
    setSense(event, "AB\x1b[2J%s", 7);
    EXPECT_EQ(textOf(event), " Adapter 300 with serial number AB?[2J% is detected");
}

TEST(EventText, StaysInItsBufferWhateverTheValues) {
    for (unsigned eventClass = 0; eventClass < 17; ++eventClass) {
        for (KT_U16 code = 0; code <= 101; ++code) {
            _Event event;
            memset(&event, 0xFF, sizeof event);
            event.Class = static_cast<KT_U16>(eventClass);
            event.Code = code;
            EXPECT_LT(textOf(event).size(), EVENT_TEXT_SIZE);
        }
    }
}

TEST(EventText, HasAWordForEverySeverity) {
    std::set<std::string> words;
    for (KT_U8 severity = 0; severity < 8; ++severity) {
        words.insert(severityText(severity));
    }
    EXPECT_EQ(words.size(), 8u);
    EXPECT_STREQ(severityText(7), "[FATAL]");
    EXPECT_STREQ(severityText(8), "[UNKNOWN]");
    EXPECT_STREQ(severityText(255), "[UNKNOWN]");
}

} // namespace
