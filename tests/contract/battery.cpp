#include "frame.h"
#include "outside.h"

#include <algorithm>

static const char LAB[] = R"({"adapters": [
  {"type": "array-based", "battery": true,
   "disks": [{"count": 3, "type": "SAS", "size": "1TB", "on": "HBA", "port": 0}],
   "arrays": [{"level": "RAID5", "disks": [0, 1, 2], "virtualDisks": [
     {"size": "100GiB", "cache": "auto"}, {"size": "100GiB", "cache": "off"}, {"size": "100GiB"}]}]},
  {"type": "LD-based"}, {"type": "array-based"}]})";
static const uint64_t MINUTE = 60, HOUR = 60 * MINUTE, DAY = 24 * HOUR;

// What KT_BBU_ChangePower does.
enum : KT_U8 { POWER_STOP = 0, POWER_CHARGE = 1, POWER_DISCHARGE = 2 };

struct Battery : LabTest<LAB> {};

static _BBU_Info battery() {
    _BBU_Info info = {};
    EXPECT_EQ(KT_BBU_GetInfo(0, &info), KT_OK);
    return info;
}

// Whether each virtual disk writes through.
static std::vector<int> writeThrough() {
    std::vector<int> off;
    for (const _LD_Info& vd : readList(KT_LD_GetInfo, KT_U8{0}, &_LD_Info_Request::ldInfo))
        off.push_back(vd.CacheMode & KT_CACHE_OFF);
    return off;
}

static Events codes(const Events& events) {
    Events battery;
    for (const std::string& event : events)
        if (event.rfind("9/", 0) == 0) battery.push_back(event.substr(2, event.find(' ') - 2));
    return battery;
}

TEST_F(Battery, ShowsTheLabsBatteryFirst) {
    const _BBU_Info info = battery();
    EXPECT_EQ(std::vector<int>({info.status, info.sensorSupport, info.rechargeCycle, info.temperature, info.tempLow,
                                info.tempHigh, info.voltage, info.voltLow, info.voltHigh, info.capacity,
                                info.maxCapacity, info.percentage}),
              std::vector<int>({KT_BBU_PRESENT, 7, 17, 3140, 0, 60, 4120, 3300, 4300, 620, 650, 95}));
    EXPECT_EQ(writeThrough(), std::vector<int>({0, 1, 0}));
    EXPECT_TRUE(newEvents().empty());
    _BBU_Info other = {};
    EXPECT_EQ(KT_BBU_GetInfo(1, &other), KT_ERR_NOT_ON_THIS_ADAPTER);
    EXPECT_EQ(KT_BBU_GetInfo(2, &other), KT_OK);
    EXPECT_EQ(other.status, 0) << "room for a battery, but none there";
    EXPECT_EQ(KT_BBU_ChangePower(2, POWER_CHARGE), KT_ERR_INVALID_BBU);
    EXPECT_EQ(KT_BBU_ChangePower(0, 3), KT_ERR_INVALID_PARAMETER);
}

TEST_F(Battery, DischargesAndChargesOverTime) {
    ASSERT_EQ(KT_BBU_ChangePower(0, POWER_DISCHARGE), KT_OK);
    EXPECT_EQ(battery().status, KT_BBU_PRESENT | KT_BBU_DISCHARGING);
    const int minutes = battery().minutesToEmpty;
    advance(60 * MINUTE);
    EXPECT_EQ(battery().minutesToEmpty, minutes - 60);
    EXPECT_EQ(battery().percentage, 62);
    EXPECT_LT(battery().voltage, 4120);
    EXPECT_EQ(writeThrough(), std::vector<int>({0, 1, 0}));
    advance(60 * MINUTE);
    EXPECT_EQ(battery().percentage, 28);
    EXPECT_EQ(writeThrough(), std::vector<int>({1, 1, 0})) << "the automatic cache writes through below 30%";
    advance(60 * MINUTE);
    EXPECT_EQ(battery().status, KT_BBU_PRESENT | KT_BBU_CHARGING) << "an empty battery is charged";
    advance(4 * HOUR);
    EXPECT_EQ(battery().status, KT_BBU_PRESENT);
    EXPECT_EQ(writeThrough(), std::vector<int>({0, 1, 0}));
    EXPECT_EQ(codes(newEvents()), Events({"16", "20", "28", "31", "17", "21", "29", "18"}));
    EXPECT_EQ(KT_BBU_ChangePower(0, POWER_DISCHARGE), KT_OK);
    EXPECT_EQ(KT_BBU_ChangePower(0, POWER_STOP), KT_OK);
    EXPECT_EQ(codes(newEvents()), Events({"16", "31"}));
    advance(DAY);
    EXPECT_EQ(KT_BBU_ChangePower(0, POWER_CHARGE), KT_OK);
    EXPECT_EQ(KT_BBU_ChangePower(0, POWER_STOP), KT_OK);
    EXPECT_EQ(codes(newEvents()), Events({"17", "30"}));
}

TEST_F(Battery, AnIdleOneIsKeptCharged) {
    advance(20 * DAY);
    EXPECT_GE(battery().percentage, 85);
    EXPECT_EQ(codes(newEvents()), Events({"17", "18"}));
}

TEST_F(Battery, RelearnsOnSchedule) {
    const _BBU_Info before = battery();
    outside::scheduleRelearn(0, 5 * DAY);
    advance(4 * DAY + 23 * HOUR);
    EXPECT_EQ(codes(newEvents()), Events({"12", "13", "14", "15"}));
    advance(2 * HOUR);
    EXPECT_EQ(battery().status, KT_BBU_PRESENT | KT_BBU_DISCHARGING);
    advance(DAY);
    EXPECT_EQ(codes(newEvents()), Events({"6", "16", "20", "28", "31", "7", "17", "21", "29", "18", "8"}));
    EXPECT_EQ(battery().rechargeCycle, before.rechargeCycle + 1);
    EXPECT_LT(battery().maxCapacity, before.maxCapacity);
    advance(31 * DAY);
    EXPECT_EQ(battery().rechargeCycle, before.rechargeCycle + 2);
}

TEST_F(Battery, WearsOutByRelearning) {
    const int fresh = battery().maxCapacity;
    while (battery().maxCapacity * 100 >= fresh * 60) {
        newEvents();
        outside::scheduleRelearn(0, 1);
        advance(DAY);
    }
    const Events events = codes(newEvents());
    EXPECT_EQ(std::count(events.begin(), events.end(), "3"), 1) << "it has to be replaced";
    outside::scheduleRelearn(0, 1);
    advance(DAY);
    const Events later = codes(newEvents());
    EXPECT_EQ(std::count(later.begin(), later.end(), "3"), 0) << "which is said once";
}

TEST_F(Battery, RelearnWaitsForTheChargeAndForPeople) {
    outside::setBatteryCharge(0, 80);
    outside::scheduleRelearn(0, 10 * MINUTE);
    newEvents();
    advance(15 * MINUTE);
    EXPECT_EQ(codes(newEvents()), Events({"10"}));
    advance(45 * MINUTE);
    EXPECT_EQ(codes(newEvents()), Events({"18", "6", "16"}));
    ASSERT_EQ(KT_BBU_ChangePower(0, POWER_CHARGE), KT_OK);
    EXPECT_EQ(codes(newEvents()), Events({"11", "17", "14"})) << "postponed by a day";
}

TEST_F(Battery, ABrokenChargerEndsTheRelearn) {
    outside::breakCharger(0);
    outside::scheduleRelearn(0, 1);
    advance(3 * DAY);
    EXPECT_EQ(codes(newEvents()), Events({"19", "15", "6", "16", "20", "28", "31", "7", "19", "9"}));
    EXPECT_EQ(battery().percentage, 0);
    outside::setBatteryCharge(0, 50);
    EXPECT_EQ(battery().status, KT_BBU_PRESENT);
    EXPECT_EQ(writeThrough(), std::vector<int>({0, 1, 0}));
    advance(21 * DAY);
    EXPECT_EQ(battery().percentage, 29) << "it runs down";
    EXPECT_EQ(writeThrough(), std::vector<int>({1, 1, 0}));
}

TEST_F(Battery, LostAndFoundAgain) {
    outside::removeBattery(0);
    EXPECT_EQ(battery().status, 0);
    EXPECT_EQ(writeThrough(), std::vector<int>({1, 1, 0}));
    advance(40 * DAY);
    EXPECT_EQ(codes(newEvents()), Events({"5", "28"}));
    outside::insertBattery(0);
    const _BBU_Info fresh = battery();
    EXPECT_EQ(fresh.status, KT_BBU_PRESENT | KT_BBU_CHARGING);
    EXPECT_EQ(std::vector<int>({fresh.sensorSupport, fresh.maxCapacity, fresh.percentage, fresh.temperature,
                                fresh.tempLow, fresh.tempHigh, fresh.voltage, fresh.voltLow, fresh.voltHigh}),
              std::vector<int>({7, 650, 50, 2500, 0, 60, 3900, 3300, 4300}));
    EXPECT_EQ(writeThrough(), std::vector<int>({0, 1, 0}));
    EXPECT_EQ(codes(newEvents()), Events({"2", "0", "17", "29"}));
}

TEST_F(Battery, HeatAndVoltageMakeItAbnormal) {
    outside::setBatteryTemperature(0, 6001);
    EXPECT_EQ(writeThrough(), std::vector<int>({1, 1, 0}));
    outside::setBatteryVoltage(0, 3299);
    outside::setBatteryTemperature(0, -1);
    outside::setBatteryTemperature(0, 6000);
    EXPECT_EQ(writeThrough(), std::vector<int>({1, 1, 0})) << "the voltage is still wrong";
    outside::setBatteryVoltage(0, 3300);
    EXPECT_EQ(writeThrough(), std::vector<int>({0, 1, 0}));
    EXPECT_EQ(codes(newEvents()), Events({"24", "28", "25", "22", "23", "26", "29"}));
    outside::setBatteryVoltage(0, 4300);
    outside::setBatteryVoltage(0, 4301);
    outside::setBatteryVoltage(0, 4300);
    outside::setBatteryTemperature(0, 0);
    EXPECT_EQ(codes(newEvents()), Events({"27", "28", "26", "29"}));
}
