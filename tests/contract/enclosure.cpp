#include "frame.h"

#include <sstream>

// Enclosures 1 and 5 as they come, 4 with its own elements, disks 0 to 2 in slots 0 to 2 of the first.
static const char ENCLOSURE_LAB[] = R"({"adapters": [{"type": "array-based", "expanders": [{}],
  "enclosures": [{"id": 1, "slots": 12}, {"id": 4, "elements": [
     {"type": "dev", "count": 2}, {"type": "fan", "text": "Rear blower"},
     {"type": "pow", "condition": "ac-fail"}]}, {}],
  "disks": [{"count": 2, "type": "SAS", "size": "1TB", "on": "expander", "enclosure": 1},
            {"type": "SAS", "size": "1TB", "on": "expander", "enclosure": 1, "spare": "global"}]}]})";

static const KT_U8 SLOT = KT_SES_ARRAY_DEVICE, POWER = KT_SES_POWER_SUPPLY, FAN = KT_SES_COOLING,
                   HEAT = KT_SES_TEMPERATURE, DOOR = KT_SES_DOOR_LOCK, ALARM = KT_SES_ALARM, VOLTS = KT_SES_VOLTAGE;

struct Enclosure : LabTest<ENCLOSURE_LAB> {};

// The four bytes of a status element, in hexadecimal, or the error.
static std::string status(KT_U16 enclosure, KT_U8 type, KT_U8 element) {
    _Enc_Element_Info info = {};
    const KT_U8 error = KT_ENC_GetElementInfo(0, enclosure, type, element, &info);
    if (error != KT_OK) return "error " + std::to_string(error);
    EXPECT_EQ((Ints{info.EnclosureID, info.ElementType, info.ElementID}), (Ints{enclosure, type, element}));
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

// What the first slots of enclosure 1 say, after calls that go well.
static std::string slots(KT_U8 count, std::initializer_list<KT_U8> calls = {}) {
    succeed(calls);
    std::string seen;
    for (KT_U8 slot = 0; slot < count; ++slot)
        seen += (slot ? " " : "") + status(1, SLOT, slot);
    return seen;
}

// What the enclosures 1 and 4 are, and whether the alarm of the first sounds, after calls that go well.
static std::string lookAtShelf(std::initializer_list<KT_U8> calls = {}) {
    succeed(calls);
    std::string seen;
    for (const auto& each : readList(KT_ENC_GetEnclosureInfo, KT_U8{0}, &_Enclosure_Info_Request::enclosureInfo, 1))
        if (each.EnclosureID != 5) seen += std::to_string(each.Status) + " ";
    return seen + status(1, ALARM, 0);
}

TEST_F(Enclosure, ListsWhatTheLabHas) {
    const auto all = readList(KT_ENC_GetEnclosureInfo, KT_U8{0}, &_Enclosure_Info_Request::enclosureInfo, 1);
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ((Ints{all[0].ElementTypeCount, all[1].ElementTypeCount, all[2].EnclosureID}), (Ints{8, 3, 5}));
    EXPECT_EQ(config(1, SLOT, 11) + ", " + config(1, SLOT, 255) + ", " + config(4, FAN, 0),
              "12 Slot 11, 12 Slot, 1 Rear blower");
    EXPECT_EQ(status(4, FAN, 255), "01000000") << "of one";
    for (const std::string& missing :
         {config(1, SLOT, 12), config(1, KT_SES_DEVICE, 0), config(1, 0x7F, 255), status(1, FAN, 4)})
        EXPECT_EQ(missing, "error 18") << "no such element, or none of the type";
    for (const std::string& missing : {config(2, FAN, 0), status(2, FAN, 0)})
        EXPECT_EQ(missing, "error 15");
}

TEST_F(Enclosure, SlotsFollowTheirDisks) {
    EXPECT_EQ(slots(4), "01800000 01800000 01a00000 05000000") << "two disks, a hot spare, nothing";
    EXPECT_EQ(status(4, KT_SES_DEVICE, 1), "05010000");
    EXPECT_EQ(slots(4, {KT_LocateArrayDevice(0, KT_DEVICE_PD, 0, 1), failDisk(0, 1)}),
              "01800200 02000040 01a00000 05000000")
        << "a light is on, a disk has failed";
    EXPECT_EQ(status(1, SLOT, 255), "02000000") << "all of them are as well as the worst";
}

TEST_F(Enclosure, SlotsTellOfTheirArrays) {
    start(R"({"adapters": [{"type": "array-based", "expanders": [{}], "enclosures": [{"id": 1}],
      "disks": [{"count": 3, "size": "100GB", "on": "expander", "enclosure": 1},
                {"size": "100GB", "on": "expander", "enclosure": 1, "spare": "global"},
                {"size": "100GB", "on": "expander", "enclosure": 1, "smartTripped": true}],
      "arrays": [{"level": "RAID5", "disks": [0, 1, 2], "virtualDisks": [{"size": "10GiB"}]}]}]})");
    EXPECT_EQ(slots(5, {failDisk(0, 0)}), "02000040 01880000 01880000 01aa0000 43800000")
        << "failed, two in a critical array, one that is rebuilt onto, and one that will fail soon";
    EXPECT_EQ(
        slots(5, {advance(HOUR), KT_LD_StartConsistencyCheck(0, 0, 0), KT_LocateArrayDevice(0, KT_DEVICE_VD, 0, 1)}),
        "02000040 01900200 01900200 01b00200 43800000")
        << "checked and lit";
    EXPECT_EQ(slots(5, {KT_LocateArrayDevice(0, KT_DEVICE_VD, 0, 0), failDisk(0, 1), failDisk(0, 2)}),
              "02000040 02040040 02040040 01a40000 43800000")
        << "in a failed one";
}

TEST_F(Enclosure, ElementsTakeConditions) {
    const auto condition = [](KT_U8 type, KT_U8 element, const char* word, KT_U16 enclosure = 1) {
        return setCondition(0, enclosure, type, element, word);
    };
    EXPECT_EQ(lookAtShelf(), "0 2 01000000");
    EXPECT_EQ(LOG_OF(0, condition(POWER, 0, "ok", 4), condition(FAN, 2, "failed"), condition(DOOR, 0, "open")),
              "15/7:0 15/4:0(2) 15/12:0");
    EXPECT_EQ(lookAtShelf(), "2 0 01000002") << "it sounds";
    EXPECT_EQ(lookAtShelf({condition(POWER, 0, "missing"), condition(ALARM, 0, "muted")}), "2 0 01000042");
    EXPECT_EQ(lookAtShelf({condition(DOOR, 0, "ok"), condition(FAN, 2, "ok")}), "3 0 01000044")
        << "better, and still muted";
    EXPECT_EQ(lookAtShelf({condition(POWER, 0, "ok")}), "0 0 01000000");
    EXPECT_EQ(lookAtShelf({condition(POWER, 0, "missing")}), "3 0 01000004") << "a supply is missed";
    EXPECT_EQ(lookAtShelf({condition(ALARM, 0, "failed"), condition(FAN, 1, "missing"), condition(FAN, 2, "failed")}),
              "2 0 02400000")
        << "what is broken does not sound";
}

// Each condition and each reading about a limit, what it makes of an element, and the event of it.
TEST_F(Enclosure, EveryConditionHasItsStatus) {
    const std::pair<KT_U8, const char*> parts[] = {
        {POWER, "ac-fail 020000e2 15/6:0, dc-fail 020000e1 15/6:0, overheated 020000a8 15/6:0, off 03000090 15/6:0, "
                "missing 05000080 15/6:0, unknown 06000000, ok 010000a0 15/7:0"},
        {FAN, "failed 020000e0 15/4:0, off 03000090 15/4:0, missing 05000080 15/5:0, unknown 06000000, "
              "ok 010208a3 15/3:0, 999 020063e1 15/4:0, 1000 010064a1 15/3:0, 2510 0100fba2, 5000 0101f4a3, "
              "20470 0107ffa7, 20480 0107ffa7"},
        {HEAT, "failed 02400000, missing 05000000, ok 01003300 15/0:0, 65 02005508 15/2:0, 64 03005404 15/1:0, "
               "55 03004b04, 54 01004a00 15/0:0, 6 01001a00, 5 03001901, 1 03001501, 0 02001402, -20 02000102, "
               "235 0200ff08, 236 0200ff08"},
        {DOOR, "open 03000003 15/12:0, unlocked 01000001 15/13:0, failed 02400000, ok 01000000"},
        {ALARM, "sounding 01000002, muted 01000042 15/8:0, failed 02400000, ok 01000000"},
        {KT_SES_DISPLAY, "failed 02410000, unknown 06000000, ok 01014131"},
        {VOLTS, "failed 02400000, missing 05000000, ok 010004b0, 1321 02020529 15/6:0, 1320 03080528 15/6:0, "
                "1261 030804ed, 1260 010004ec 15/7:0, 1140 01000474, 1139 03040473 15/6:0, 1080 03040438, "
                "1079 02010437 15/6:0"}};
    newEvents();
    for (const auto& [type, story] : parts) {
        std::istringstream steps(story);
        std::string seen;
        for (std::string what, rest; steps >> what && std::getline(steps, rest, ',');) {
            succeed({isdigit(what.back()) ? setReading(0, 1, type, 0, std::stoi(what))
                                          : setCondition(0, 1, type, 0, what.c_str())});
            const std::string events = newEvents();
            seen += (seen.empty() ? "" : ", ") + what + " " + status(1, type, 0) + (events.empty() ? "" : " ") + events;
        }
        EXPECT_EQ(seen, story);
    }
    succeed({setReading(0, 1, VOLTS, 1, 524)});
    EXPECT_EQ(status(1, VOLTS, 1), "0100020c") << "5.24 V of 5 V are well";
}
