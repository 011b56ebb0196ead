#include "frame.h"
#include "outside.h"

// Enclosures 1 and 5 as they come, 4 with its own elements, disks 0 to 2 in slots 0 to 2 of the first.
static const char LAB[] = R"({"adapters": [{"type": "array-based", "expanders": [{}],
  "enclosures": [{"id": 1, "slots": 12}, {"id": 4, "elements": [
     {"type": "dev", "count": 2}, {"type": "fan", "text": "Rear blower"},
     {"type": "pow", "condition": "ac-fail"}]}, {}],
  "disks": [{"count": 2, "type": "SAS", "size": "1TB", "on": "expander", "enclosure": 1},
            {"type": "SAS", "size": "1TB", "on": "expander", "enclosure": 1, "spare": "global"}]}]})";

struct Enclosure : LabTest<LAB> {};

// The four bytes of a status element, in hexadecimal, or the error.
static std::string status(KT_U16 enclosure, KT_U8 type, KT_U8 element) {
    _Enc_Element_Info info = {};
    const KT_U8 error = KT_ENC_GetElementInfo(0, enclosure, type, element, &info);
    if (error != KT_OK) return "error " + std::to_string(error);
    EXPECT_EQ(std::vector<int>({info.EnclosureID, info.ElementType, info.ElementID}),
              std::vector<int>({enclosure, type, element}));
    char text[16];
    snprintf(text, sizeof text, "%02x%02x%02x%02x", info.Status[0], info.Status[1], info.Status[2], info.Status[3]);
    return text;
}

static std::string config(KT_U16 enclosure, KT_U8 type, KT_U8 element) {
    _Enc_Element_Config config = {};
    const KT_U8 error = KT_ENC_GetElementConfig(0, enclosure, type, element, &config);
    if (error != KT_OK) return "error " + std::to_string(error);
    return std::to_string(config.NumberOfElements) + " " +
           std::string(reinterpret_cast<const char*>(config.Text), config.TextLength);
}

static int enclosureStatus(KT_U16 enclosure) {
    _Enclosure_Info info = {};
    EXPECT_EQ(readItem(KT_ENC_GetEnclosureInfo, 0, enclosure, &_Enclosure_Info_Request::enclosureInfo, info), KT_OK);
    return info.Status;
}

TEST_F(Enclosure, ListsWhatTheLabHas) {
    const auto all = readList(KT_ENC_GetEnclosureInfo, KT_U8{0}, &_Enclosure_Info_Request::enclosureInfo, 1);
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[0].ElementTypeCount, 8);
    EXPECT_EQ(all[1].ElementTypeCount, 3);
    EXPECT_EQ(all[2].EnclosureID, 5);
    _Enclosure_Info none = {};
    EXPECT_EQ(readItem(KT_ENC_GetEnclosureInfo, 0, 2, &_Enclosure_Info_Request::enclosureInfo, none),
              KT_ERR_INVALID_ENCLOSURE);
    EXPECT_EQ(config(1, KT_SES_ARRAY_DEVICE, 11), "12 Slot 11");
    EXPECT_EQ(config(1, KT_SES_ARRAY_DEVICE, 255), "12 Slot");
    EXPECT_EQ(config(4, KT_SES_COOLING, 0), "1 Rear blower");
    EXPECT_EQ(status(4, KT_SES_COOLING, 255), "01000000") << "of one";
    EXPECT_EQ(config(1, KT_SES_ARRAY_DEVICE, 12), "error 18");
    EXPECT_EQ(config(1, KT_SES_DEVICE, 0), "error 18") << "this enclosure has none of the type";
    EXPECT_EQ(config(1, 0x7F, 255), "error 18");
    EXPECT_EQ(config(2, KT_SES_COOLING, 0), "error 15");
    EXPECT_EQ(status(2, KT_SES_COOLING, 0), "error 15");
    EXPECT_EQ(status(1, KT_SES_COOLING, 4), "error 18");
}

TEST_F(Enclosure, SlotsFollowTheirDisks) {
    EXPECT_EQ(status(1, KT_SES_ARRAY_DEVICE, 0), "01800000");
    EXPECT_EQ(status(1, KT_SES_ARRAY_DEVICE, 2), "01a00000") << "a hot spare";
    EXPECT_EQ(status(1, KT_SES_ARRAY_DEVICE, 3), "05000000") << "empty";
    EXPECT_EQ(status(4, KT_SES_DEVICE, 1), "05010000");
    ASSERT_EQ(KT_LocateArrayDevice(0, KT_DEVICE_PD, 0, 1), KT_OK);
    outside::failDisk(0, 1);
    EXPECT_EQ(status(1, KT_SES_ARRAY_DEVICE, 0), "01800200") << "its locate light is on";
    EXPECT_EQ(status(1, KT_SES_ARRAY_DEVICE, 1), "02000040") << "it failed";
    EXPECT_EQ(status(1, KT_SES_ARRAY_DEVICE, 255), "02000000") << "all of them are as well as the worst";
}

TEST_F(Enclosure, SlotsTellOfTheirArrays) {
    start(R"({"adapters": [{"type": "array-based", "expanders": [{}], "enclosures": [{"id": 1}],
      "disks": [{"count": 3, "size": "100GB", "on": "expander", "enclosure": 1},
                {"size": "100GB", "on": "expander", "enclosure": 1, "spare": "global"},
                {"size": "100GB", "on": "expander", "enclosure": 1, "smartTripped": true}],
      "arrays": [{"level": "RAID5", "disks": [0, 1, 2], "virtualDisks": [{"size": "10GiB"}]}]}]})");
    EXPECT_EQ(outside::failDisk(0, 0), KT_OK);
    EXPECT_EQ(status(1, KT_SES_ARRAY_DEVICE, 0), "02000040");
    EXPECT_EQ(status(1, KT_SES_ARRAY_DEVICE, 1), "01880000") << "in a critical array";
    EXPECT_EQ(status(1, KT_SES_ARRAY_DEVICE, 3), "01aa0000") << "the spare is rebuilt onto";
    EXPECT_EQ(status(1, KT_SES_ARRAY_DEVICE, 4), "43800000") << "it will fail soon";
    advance(3600);
    ASSERT_EQ(KT_LD_StartConsistencyCheck(0, 0, 0), KT_OK);
    EXPECT_EQ(status(1, KT_SES_ARRAY_DEVICE, 1), "01900000") << "checked";
    ASSERT_EQ(KT_LocateArrayDevice(0, KT_DEVICE_VD, 0, 1), KT_OK);
    for (KT_U8 slot = 1; slot < 5; ++slot)
        EXPECT_EQ(status(1, KT_SES_ARRAY_DEVICE, slot).substr(4), slot < 4 ? "0200" : "0000") << int(slot);
    ASSERT_EQ(KT_LocateArrayDevice(0, KT_DEVICE_VD, 0, 0), KT_OK);
    EXPECT_EQ(outside::failDisk(0, 1), KT_OK);
    EXPECT_EQ(outside::failDisk(0, 2), KT_OK);
    EXPECT_EQ(status(1, KT_SES_ARRAY_DEVICE, 3), "01a40000") << "in a failed one";
}

TEST_F(Enclosure, ElementsTakeConditions) {
    EXPECT_EQ(status(4, KT_SES_POWER_SUPPLY, 0), "020000e2") << "as the lab says";
    EXPECT_EQ(enclosureStatus(4), 2);
    EXPECT_EQ(enclosureStatus(1), 0);
    newEvents();
    EXPECT_TRUE(outside::setCondition(0, 4, KT_SES_POWER_SUPPLY, 0, "ok"));
    EXPECT_TRUE(outside::setCondition(0, 1, KT_SES_COOLING, 2, "failed"));
    EXPECT_TRUE(outside::setCondition(0, 1, KT_SES_DOOR_LOCK, 0, "open"));
    EXPECT_FALSE(outside::setCondition(0, 1, KT_SES_COOLING, 2, "open"));
    EXPECT_FALSE(outside::setCondition(0, 1, KT_SES_COOLING, 9, "ok"));
    EXPECT_FALSE(outside::setCondition(0, 1, KT_SES_ARRAY_DEVICE, 0, "missing")) << "a disk decides that";
    EXPECT_EQ(newEvents(), Events({"15/7 of 0", "15/4 of 0", "15/12 of 0"}));
    EXPECT_EQ(enclosureStatus(4), 0);
    EXPECT_EQ(enclosureStatus(1), 2);
    EXPECT_EQ(status(1, KT_SES_COOLING, 2), "020000e0");
    EXPECT_EQ(status(1, KT_SES_COOLING, 255), "02000000");
    EXPECT_EQ(status(1, KT_SES_ALARM, 0), "01000002") << "it sounds";
    const auto condition = [&](KT_U8 type, KT_U8 element, const char* word) {
        outside::setCondition(0, 1, type, element, word);
    };
    condition(KT_SES_POWER_SUPPLY, 0, "missing");
    condition(KT_SES_ALARM, 0, "muted");
    EXPECT_EQ(status(1, KT_SES_ALARM, 0), "01000042");
    condition(KT_SES_DOOR_LOCK, 0, "ok");
    condition(KT_SES_COOLING, 2, "ok");
    EXPECT_EQ(status(1, KT_SES_ALARM, 0), "01000044") << "better, and still muted";
    condition(KT_SES_POWER_SUPPLY, 0, "ok");
    EXPECT_EQ(status(1, KT_SES_ALARM, 0), "01000000");
    condition(KT_SES_POWER_SUPPLY, 0, "missing");
    EXPECT_EQ(enclosureStatus(1), 3) << "a supply is missed";
    EXPECT_EQ(status(1, KT_SES_ALARM, 0), "01000004");
    condition(KT_SES_ALARM, 0, "failed");
    condition(KT_SES_COOLING, 2, "failed");
    EXPECT_EQ(status(1, KT_SES_ALARM, 0), "02400000") << "what is broken does not sound";
}

// What each condition and each reading about a limit makes of an element, and the event of it.
TEST_F(Enclosure, EveryConditionHasItsStatus) {
    struct Part {
        KT_U8 type;
        std::vector<const char*> words;
        std::vector<int> readings;
    };
    const Part parts[] = {
        {KT_SES_POWER_SUPPLY, {"ac-fail", "dc-fail", "overheated", "off", "missing", "unknown", "ok"}, {}},
        {KT_SES_COOLING, {"failed", "off", "missing", "unknown", "ok"}, {999, 1000, 2510, 5000, 20470, 20480}},
        {KT_SES_TEMPERATURE, {"failed", "missing", "ok"}, {65, 64, 55, 54, 6, 5, 1, 0, -20, 235, 236}},
        {KT_SES_DOOR_LOCK, {"open", "unlocked", "failed", "ok"}, {}},
        {KT_SES_ALARM, {"sounding", "muted", "failed", "ok"}, {}},
        {KT_SES_DISPLAY, {"failed", "unknown", "ok"}, {}},
        {KT_SES_VOLTAGE, {"failed", "missing", "ok"}, {1321, 1320, 1261, 1260, 1140, 1139, 1080, 1079}}};
    std::string all;
    newEvents();
    for (const Part& part : parts) {
        const auto note = [&](const std::string& what) {
            all += what + " " + status(1, part.type, 0);
            for (const std::string& event : newEvents())
                all += " " + event.substr(0, event.find(' '));
            all += what == "ok" && part.readings.empty() ? "\n" : ", ";
        };
        for (const char* word : part.words) {
            EXPECT_TRUE(outside::setCondition(0, 1, part.type, 0, word));
            note(word);
        }
        for (const int reading : part.readings) {
            outside::setReading(0, 1, part.type, 0, reading);
            note(std::to_string(reading));
        }
        if (!part.readings.empty()) all += "\n";
    }
    EXPECT_EQ(all,
              "ac-fail 020000e2 15/6, dc-fail 020000e1 15/6, overheated 020000a8 15/6, off 03000090 15/6, "
              "missing 05000080 15/6, unknown 06000000, ok 010000a0 15/7\n"
              "failed 020000e0 15/4, off 03000090 15/4, missing 05000080 15/5, unknown 06000000, ok 010208a3 15/3, "
              "999 020063e1 15/4, 1000 010064a1 15/3, 2510 0100fba2, 5000 0101f4a3, 20470 0107ffa7, 20480 0107ffa7, \n"
              "failed 02400000, missing 05000000, ok 01003300 15/0, 65 02005508 15/2, 64 03005404 15/1, 55 03004b04, "
              "54 01004a00 15/0, 6 01001a00, 5 03001901, 1 03001501, 0 02001402, -20 02000102, 235 0200ff08, "
              "236 0200ff08, \n"
              "open 03000003 15/12, unlocked 01000001 15/13, failed 02400000, ok 01000000\n"
              "sounding 01000002, muted 01000042 15/8, failed 02400000, ok 01000000\n"
              "failed 02410000, unknown 06000000, ok 01014131\n"
              "failed 02400000, missing 05000000, ok 010004b0, 1321 02020529 15/6, 1320 03080528 15/6, 1261 030804ed, "
              "1260 010004ec 15/7, 1140 01000474, 1139 03040473 15/6, 1080 03040438, 1079 02010437 15/6, \n");
    outside::setReading(0, 1, KT_SES_VOLTAGE, 1, 524);
    EXPECT_EQ(status(1, KT_SES_VOLTAGE, 1), "0100020c") << "5.24 V of 5 V are well";
}
