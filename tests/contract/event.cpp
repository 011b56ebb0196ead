#include "frame.h"
#include "outside.h"

#include <memory>

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
    EXPECT_STREQ(last.msg, "Rebuild disk on virtual disk 3 is 40% done");
    EXPECT_STREQ(last.time, "Tue Nov 14 22:12:20 2023");
    EXPECT_EQ(last.SequenceNo, messages[48].SequenceNo + 1);
    EXPECT_EQ(last.Severity, 2);
    EXPECT_STREQ(messages[48].msg, "SMART has over threshold on physical disk 5");
    succeed({KT_EVT_GetEventMessage(0, 0, &count, messages.data())});
    EXPECT_EQ(count, 0);
    EXPECT_EQ(KT_EVT_GetEventMessage(1, 50, &count, messages.data()), KT_ERR_INVALID_ADAPTER);
    std::vector<_Event> events(255);
    succeed({KT_EVT_GetEvent(0, 255, &count, events.data())});
    const _Adapter_Info info = adapterInfo(0);
    EXPECT_EQ(std::string(events[0].SenseData, events[0].SenseData + events[0].SenseDataLength),
              std::string(std::begin(info.SerialNo), std::end(info.SerialNo)))
        << "the adapter's own serial number";
}

// Whatever the peripherals keep, a printed state has it by name and makes the same state again.
TEST_F(Event, PeripheralsAreShownByName) {
    start(R"({"adapters": [{"type": "array-based", "battery": true, "AdvancedFeatures": 4294967295, "MaxAESPort": 2,
      "MaxAESEntry": 2, "LogicalDriverMode": 4095, "expanders": [{}], "enclosures": [{"id": 1}],
      "disks": [{"count": 3, "type": "SATA", "size": "1TB"}],
      "keys": [{"id": 1, "key": "k", "password": "p", "ports": [{"id": 0, "enabled": true}]}]}]})");
    _NVSRAM_Data nvsram = {};
    nvsram.Length = 3;
    memset(nvsram.Data, 7, sizeof nvsram.Data);
    succeed({KT_Flash_NVSRAM(0, KT_NVSRAM_WRITE, &nvsram)});
    _Register_Request mailbox = {8, 16, {}, 5};
    succeed({KT_Adapter_Write_Register(0, 0, 0, &mailbox)});
    const auto page = std::make_unique<_Flash_Data>();
    succeed({KT_Flash_Bin(0, KT_FLASH_BACKUP, KT_IMAGE_CONFIG, page.get()),
             KT_Flash_Bin(0, KT_FLASH_UPDATE, KT_IMAGE_CONFIG, page.get()),
             KT_Flash_Bin(0, KT_FLASH_ERASE, KT_IMAGE_BIOS, page.get())});
    const _KT_FLASH_PER_DATA announcement = {KT_IMAGE_BIOS, {}, 12};
    succeed({KT_Flash_PreData(0, &announcement)});
    EXPECT_TRUE(outside::ageDisk(0, 1, "hours", 5));
    const std::string shown = show();
    EXPECT_EQ(shown.find("\"rows\""), std::string::npos);
    start(shown);
    EXPECT_EQ(show().substr(show().find("adapters\"")), shown.substr(shown.find("adapters\""))) << "but for the clock";
}
