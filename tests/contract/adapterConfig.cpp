#include "frame.h"
#include "outside.h"

static const char LAB[] = R"({"adapters": [{"type": "array-based", "disks": [{}]},
  {"type": "LD-based", "AlarmSupport": 0, "config": {"AutoRebuildOn": 255}}]})";

struct AdapterConfig : LabTest<LAB> {
    _Adapter_Config_V2 config = {};

    void SetUp() override {
        LabTest::SetUp();
        config = adapterConfig(0);
    }
};

TEST_F(AdapterConfig, ChangesAreKeptAndLogged) {
    const _Adapter_Config_V2 before = config;
    EXPECT_EQ(memcmp(before.SerialNo, adapterInfo(0).SerialNo, sizeof before.SerialNo), 0);
    config.AutoRebuildOn = 0;
    config.RebuildRate = 100;
    config.MPRate = 0;
    config.CopyBackOn = 0;
    memset(config.SerialNo, 'X', sizeof config.SerialNo);
    ASSERT_EQ(KT_Adapter_SetConfig(0, &config), KT_OK);
    EXPECT_EQ(newEvents(), Events({"0/5 of 0", "12/24 of 0", "12/27 of 0", "0/8 of 0"}));
    reopen();
    _Adapter_Config_V2 held = adapterConfig(0);
    EXPECT_EQ(held.RebuildRate, 100);
    EXPECT_EQ(memcmp(held.SerialNo, before.SerialNo, sizeof held.SerialNo), 0) << "the serial number is not a setting";
    memcpy(config.SerialNo, before.SerialNo, sizeof config.SerialNo);
    EXPECT_EQ(memcmp(&held, &config, sizeof held), 0);
    ASSERT_EQ(KT_Adapter_SetConfig(0, &held), KT_OK);
    EXPECT_TRUE(newEvents().empty()) << "nothing changed";
    using Config = _Adapter_Config_V2;
    KT_U8 Config::*const switches[] = {
        &Config::AutoRebuildOn,       &Config::CpuEfficiencyOn,        &Config::PollSMARTStatus, &Config::CopyBackOn,
        &Config::ModuleConsolidation, &Config::rawimg_update_disabled, &Config::AlarmOn};
    for (const KT_U8 on : {KT_U8{0}, KT_U8{1}}) {
        for (const auto each : switches)
            held.*each = on;
        const auto rate = static_cast<KT_U8>(99 + on);
        held.BGARate = held.SyncRate = held.InitRate = held.RebuildRate = held.MigrationRate = held.CopybackRate = rate;
        ASSERT_EQ(KT_Adapter_SetConfig(0, &held), KT_OK);
        config = adapterConfig(0);
        EXPECT_EQ(memcmp(&held, &config, sizeof held), 0);
        Events expected = {"12/1 of 0", "12/22 of 0", "12/23 of 0", "12/24 of 0", "12/25 of 0", "12/26 of 0"};
        const Events ends = on ? Events({"0/0 of 0", "0/7 of 0", "0/2 of 0"}) : Events({"0/1 of 0", "0/3 of 0"});
        expected.insert(expected.end(), ends.begin(), ends.end());
        if (on) expected.insert(expected.begin(), "0/4 of 0");
        EXPECT_EQ(newEvents(), expected);
    }
}

TEST_F(AdapterConfig, WrongValuesChangeNothing) {
    const _Adapter_Config_V2 before = config;
    config.SyncRate = 30;
    config.MPRate = 101;
    EXPECT_EQ(KT_Adapter_SetConfig(0, &config), KT_ERR_OUT_OF_RANGE);
    config.MPRate = 50;
    config.AutoRebuildOn = 2;
    EXPECT_EQ(KT_Adapter_SetConfig(0, &config), KT_ERR_OUT_OF_RANGE);
    const _Adapter_Config_V2 held = adapterConfig(0);
    EXPECT_EQ(memcmp(&held, &before, sizeof held), 0);
    EXPECT_TRUE(newEvents().empty());

    using Config = _Adapter_Config_V2;
    for (KT_U8 Config::*absent : {&Config::AutoRebuildOn, &Config::AlarmOn, &Config::ModuleConsolidation}) {
        Config other = adapterConfig(1);
        other.*absent = 1;
        EXPECT_EQ(KT_Adapter_SetConfig(1, &other), KT_ERR_NOT_ON_THIS_ADAPTER);
    }
}

TEST_F(AdapterConfig, MuteIsLoggedOnce) {
    EXPECT_EQ(KT_AdapterMute(0), KT_OK);
    EXPECT_EQ(KT_AdapterMute(0), KT_OK);
    EXPECT_EQ(newEvents(), Events({"12/28 of 0"}));
    config.AlarmOn = 0;
    ASSERT_EQ(KT_Adapter_SetConfig(0, &config), KT_OK);
    config.AlarmOn = 1;
    ASSERT_EQ(KT_Adapter_SetConfig(0, &config), KT_OK);
    newEvents();
    EXPECT_EQ(KT_AdapterMute(0), KT_OK);
    EXPECT_EQ(newEvents(), Events({"12/28 of 0"})) << "a buzzer switched on anew is not mute";
    outside::failDisk(0, 0);
    newEvents();
    EXPECT_EQ(KT_AdapterMute(0), KT_OK);
    EXPECT_EQ(newEvents(), Events({"12/28 of 0"})) << "a new alarm is heard again";
    EXPECT_EQ(KT_AdapterMute(1), KT_ERR_NOT_ON_THIS_ADAPTER);
}
