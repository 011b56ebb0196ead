#include "frame.h"

struct Event : ContractTest {};

TEST_F(Event, MessagesSayWhatTheRawEventsMean) {
    start(R"({"clock": {"seconds": 1700000000, "stopped": true}, "adapters": [{"type": "array-based", "events": [
      {"Class": 2, "Code": 11, "DeviceID": 5, "Severity": 3, "count": 60},
      {"Class": 1, "Code": 76, "DeviceID": 3, "Params": [40], "secondsAgo": 60}]}]})");
    std::vector<_Event_Message> messages(50);
    KT_U8 count = 0;
    succeed({KT_EVT_GetEventMessage(0, 50, &count, messages.data())});
    ASSERT_EQ(count, 50);
    const _Event_Message& last = messages[49];
    EXPECT_EQ(std::string(last.time) + ", " + last.msg + ", " + messages[48].msg,
              "Tue Nov 14 22:12:20 2023, Rebuild disk on virtual disk 3 is 40% done, "
              "SMART has over threshold on physical disk 5");
    EXPECT_EQ(last.SequenceNo - messages[48].SequenceNo, 1U);
    EXPECT_EQ(last.Severity, 2);
    succeed({KT_EVT_GetEventMessage(0, 0, &count, messages.data())});
    EXPECT_EQ(count, 0);
    EXPECT_EQ(KT_EVT_GetEventMessage(1, 50, &count, messages.data()), KT_ERR_INVALID_ADAPTER);
    std::vector<_Event> events(255);
    succeed({KT_EVT_GetEvent(0, 255, &count, events.data())});
    EXPECT_EQ(events[0].SenseDataLength, sizeof _Adapter_Info::SerialNo);
    EXPECT_EQ(memcmp(events[0].SenseData, adapterInfo(0).SerialNo, sizeof _Adapter_Info::SerialNo), 0) << "its own";
}
