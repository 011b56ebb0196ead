#include "frame.h"

#include <sstream>

static const char BATTERY_LAB[] = R"({"adapters": [
  {"type": "array-based", "battery": true, "disks": [{"count": 3, "type": "SAS", "size": "1TB"}],
   "arrays": [{"level": "RAID5", "disks": [0, 1, 2], "virtualDisks": [
     {"size": "100GiB", "cache": "auto"}, {"size": "100GiB", "cache": "off"}, {"size": "100GiB"}]}]},
  {"type": "LD-based"}, {"type": "array-based"}]})";

// What KT_BBU_ChangePower does.
enum : KT_U8 { POWER_STOP = 0, POWER_CHARGE = 1, POWER_DISCHARGE = 2 };

struct Battery : LabTest<BATTERY_LAB> {
    static KT_U8 power(KT_U8 how) { return KT_BBU_ChangePower(0, how); }
};

static _BBU_Info battery() {
    _BBU_Info info = {};
    succeed({KT_BBU_GetInfo(0, &info)});
    return info;
}

// After calls that go well: the codes of its events since the last look, whether virtual disks write back, and its
// status and charge.
static std::string lookAtBattery(std::initializer_list<KT_U8> calls = {}) {
    succeed(calls);
    std::istringstream events(newEvents());
    std::string seen;
    for (std::string event; events >> event;)
        if (event.rfind("9/", 0) == 0) seen += event.substr(2, event.find(':') - 2) + " ";
    seen += "|";
    for (const _LD_Info& vd : readList(KT_LD_GetInfo, KT_U8{0}, &_LD_Info_Request::ldInfo))
        seen += vd.CacheMode & KT_CACHE_OFF ? " off" : " on";
    const _BBU_Info info = battery();
    if (info.status == 0) return seen + " | none";
    EXPECT_EQ(info.status % KT_BBU_CHARGING, KT_BBU_PRESENT);
    static const char* const FLOWS[] = {"", "+", "-"};
    return seen + " | " + FLOWS[info.status / KT_BBU_CHARGING] + std::to_string(info.percentage);
}

TEST_F(Battery, ShowsTheLabsBatteryFirst) {
    EXPECT_EQ(lookAtBattery(), "| on off on | 95");
    _BBU_Info other = {};
    EXPECT_EQ(KT_BBU_GetInfo(1, &other), KT_ERR_NOT_ON_THIS_ADAPTER);
    succeed({KT_BBU_GetInfo(2, &other)});
    EXPECT_EQ(other.status, 0) << "room for a battery, but none there";
    EXPECT_EQ(KT_BBU_ChangePower(2, POWER_CHARGE), KT_ERR_INVALID_BBU);
    EXPECT_EQ(power(3), KT_ERR_INVALID_PARAMETER);
}

TEST_F(Battery, DischargesAndChargesOverTime) {
    EXPECT_EQ(lookAtBattery({KT_BBU_ChangePower(0, POWER_DISCHARGE)}), "16 | on off on | -95");
    const int minutes = battery().minutesToEmpty;
    advance(HOUR);
    EXPECT_EQ(battery().minutesToEmpty, minutes - 60);
    EXPECT_EQ(lookAtBattery(), "| on off on | -62");
    EXPECT_LT(battery().voltage, 4120);
    EXPECT_EQ(lookAtBattery({advance(HOUR)}), "20 28 | off off on | -28")
        << "the automatic cache writes through below 30%";
    EXPECT_EQ(lookAtBattery({advance(HOUR)}), "31 17 | off off on | +3") << "an empty battery is charged";
    EXPECT_EQ(lookAtBattery({advance(4 * HOUR)}), "21 29 18 | on off on | 99");
    EXPECT_EQ(lookAtBattery({power(POWER_DISCHARGE), power(POWER_STOP)}), "16 31 | on off on | 99");
    EXPECT_EQ(lookAtBattery({advance(DAY), power(POWER_CHARGE), power(POWER_STOP)}), "17 30 | on off on | 98");
    EXPECT_EQ(lookAtBattery({advance(20 * DAY)}), "17 18 | on off on | 94") << "an idle one is kept charged";
}

TEST_F(Battery, RelearnsOnSchedule) {
    const _BBU_Info before = battery();
    EXPECT_EQ(lookAtBattery({scheduleRelearn(0, 5 * DAY), advance(4 * DAY + 23 * HOUR)}),
              "12 13 14 15 | on off on | 90");
    EXPECT_EQ(lookAtBattery({advance(2 * HOUR)}), "6 16 | on off on | -57");
    EXPECT_EQ(lookAtBattery({advance(DAY)}), "20 28 31 7 17 21 29 18 8 | on off on | 99");
    EXPECT_EQ(battery().rechargeCycle, before.rechargeCycle + 1);
    EXPECT_LT(battery().maxCapacity, before.maxCapacity);
    advance(31 * DAY);
    EXPECT_EQ(battery().rechargeCycle, before.rechargeCycle + 2);
}

TEST_F(Battery, WearsOutByRelearning) {
    const int fresh = battery().maxCapacity;
    for (bool worn = false, over = false; !over; worn = battery().maxCapacity * 100 < fresh * 60) {
        over = worn;
        lookAtBattery();
        const std::string said = lookAtBattery({scheduleRelearn(0, 1), advance(DAY)});
        EXPECT_EQ(said.find(" 3 ") != said.npos, !over && battery().maxCapacity * 100 < fresh * 60) << said;
    }
}

TEST_F(Battery, RelearnWaitsForTheChargeAndForPeople) {
    lookAtBattery({setBatteryCharge(0, 80), scheduleRelearn(0, 10 * MINUTE)});
    EXPECT_EQ(lookAtBattery({advance(15 * MINUTE)}), "10 | on off on | +86");
    EXPECT_EQ(lookAtBattery({advance(45 * MINUTE)}), "18 6 16 | on off on | -93");
    EXPECT_EQ(lookAtBattery({power(POWER_CHARGE)}), "11 17 14 | on off on | +93") << "postponed by a day";
}

TEST_F(Battery, ABrokenChargerEndsTheRelearn) {
    EXPECT_EQ(lookAtBattery({breakCharger(0), scheduleRelearn(0, 1), advance(3 * DAY)}),
              "19 15 6 16 20 28 31 7 19 9 | off off on | 0");
    EXPECT_EQ(lookAtBattery({setBatteryCharge(0, 50)}), "21 29 | on off on | 50");
    EXPECT_EQ(lookAtBattery({advance(21 * DAY)}), "20 28 | off off on | 29") << "it runs down";
}

TEST_F(Battery, LostAndFoundAgain) {
    EXPECT_EQ(lookAtBattery({removeBattery(0)}), "5 28 | off off on | none");
    EXPECT_EQ(lookAtBattery({advance(40 * DAY)}), "| off off on | none");
    EXPECT_EQ(lookAtBattery({insertBattery(0)}), "2 0 17 29 | on off on | +50");
    const _BBU_Info fresh = battery();
    EXPECT_EQ((Ints{fresh.sensorSupport, fresh.maxCapacity, fresh.temperature}), (Ints{7, 650, 2500}));
}

TEST_F(Battery, HeatAndVoltageMakeItAbnormal) {
    EXPECT_EQ(lookAtBattery({setBatteryTemperature(0, 6001)}), "24 28 | off off on | 95");
    EXPECT_EQ(lookAtBattery({setBatteryVoltage(0, 3299), setBatteryTemperature(0, -1), setBatteryTemperature(0, 6000)}),
              "25 22 23 | off off on | 95");
    EXPECT_EQ(lookAtBattery({setBatteryVoltage(0, 3300)}), "26 29 | on off on | 95");
    succeed({setBatteryVoltage(0, 4300), setBatteryVoltage(0, 4301), setBatteryVoltage(0, 4300)});
    EXPECT_EQ(lookAtBattery({setBatteryTemperature(0, 0)}), "27 28 26 29 | on off on | 95");
}
