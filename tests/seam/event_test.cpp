#include <cstring>
#include <ctime>
#include <gtest/gtest.h>

#include "Functions/event/message.h"
#include "tests/seam/seam.h"
#include "utcTime/utcTime.h"

namespace {

struct Events : SeamTest {
    void SetUp() override {
        gUTCStatus = UTC_CLOCK_UNKNOWN;
        setZone("UTC");
    }
    void TearDown() override { setZone("UTC"); }
    static void setZone(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }
};

_Event makeEvent(KT_U16 eventClass, KT_U16 code, KT_U32 sequence) {
    return {eventClass, code, 1767600000, 2, 2, 0, sequence, {}, 0, 0, {}};
}

// What stands behind a label, line by line.
std::vector<std::string> valuesOf(const std::string& printed, const std::string& label) {
    std::vector<std::string> values;
    for (size_t at = 0; (at = printed.find(label, at)) != std::string::npos;) {
        at = printed.find_first_not_of(' ', at + label.size());
        values.push_back(printed.substr(at, printed.find('\n', at) - at));
    }
    return values;
}
using Values = std::vector<std::string>;

} // namespace

TEST_F(Events, ArePrintedNewestFirstDownToTheStart) {
    for (KT_U32 sequence = 98; sequence <= 103; ++sequence)
        seam.events.push_back(makeEvent(9, 0, sequence));
    const std::string all = printed("event");
    EXPECT_EQ(0U, all.find("Current AdapterID:0\n\nSequence:     103\n"
                           "Time:         Mon Jan  5 08:00:00 2026\n"
                           "Level:        [INFO]\n"
                           "Description:  Battery present\n\n"
                           "Sequence:     102\n"));
    EXPECT_EQ(seam.calls, Values{"KT_EVT_GetEvent 50"});
    EXPECT_EQ(valuesOf(all, "Sequence:"), (Values{"103", "102", "101", "100", "99", "98"}));
    EXPECT_EQ(valuesOf(printed("event -s 100"), "Sequence:"), (Values{"103", "102", "101"}));
    EXPECT_EQ(valuesOf(printed("event -s 1 --sequence=101"), "Sequence:"), (Values{"103", "102"}));
    // The walk ends at the first old one, whatever stands before it.
    seam.events[4].SequenceNo = 7;
    EXPECT_EQ(valuesOf(printed("event -s 100"), "Sequence:"), (Values{"103"}));
    seam.events[5].SequenceNo = 4294967295;
    EXPECT_EQ(valuesOf(printed("event -s 4294967294"), "Sequence:"), (Values{"4294967295"}));
}

TEST_F(Events, AreSilentWithoutAnyAndBoundedWithTooMany) {
    for (const char* line : {"event", "message"}) {
        expect(line, "");
        seam.events.assign(60, makeEvent(0, 0, 1));
        seam.messages.assign(60, _Event_Message{});
        seam.claimed = 255;
        EXPECT_EQ(50U, valuesOf(printed(line), "Sequence:").size());
        seam.statuses = {{"KT_EVT_GetEvent", 1}, {"KT_EVT_GetEventMessage", 1}};
        expect(line, "");
        seam = {};
    }
}

TEST_F(Events, FollowTheClockOfTheMachine) {
    setZone("EST5");
    seam.events = {makeEvent(9, 0, 1), makeEvent(0, 9, 2)};
    const std::string local = "Mon Jan  5 03:00:00 2026";
    const std::string utc = "Mon Jan  5 08:00:00 2026";
    for (int clock : {UTC_CLOCK_UTC, UTC_CLOCK_UNKNOWN}) {
        gUTCStatus = clock;
        EXPECT_EQ(valuesOf(printed("event"), "Time:"), (Values{local, local}));
    }
    gUTCStatus = UTC_CLOCK_LOCAL;
    EXPECT_EQ(valuesOf(printed("event"), "Time:"), (Values{local, utc}));
}
