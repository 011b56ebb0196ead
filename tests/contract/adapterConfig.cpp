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
    succeed({KT_Adapter_SetConfig(0, &config)});
    EXPECT_EQ(newEvents(), "0/5:0 12/24:0 12/27:0 0/8:0");
    reopen();
    _Adapter_Config_V2 held = adapterConfig(0);
    EXPECT_EQ(held.RebuildRate, 100);
    EXPECT_EQ(memcmp(held.SerialNo, before.SerialNo, sizeof held.SerialNo), 0) << "the serial number is not a setting";
    memcpy(config.SerialNo, before.SerialNo, sizeof config.SerialNo);
    EXPECT_EQ(memcmp(&held, &config, sizeof held), 0);
    succeed({KT_Adapter_SetConfig(0, &held)});
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
        succeed({KT_Adapter_SetConfig(0, &held)});
        config = adapterConfig(0);
        EXPECT_EQ(memcmp(&held, &config, sizeof held), 0);
        const std::string rates = "12/1:0 12/22:0 12/23:0 12/24:0 12/25:0 12/26:0 ";
        EXPECT_EQ(newEvents(), on ? "0/4:0 " + rates + "0/0:0 0/7:0 0/2:0" : rates + "0/1:0 0/3:0");
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
    succeed({KT_AdapterMute(0), KT_AdapterMute(0)});
    EXPECT_EQ(newEvents(), "12/28:0");
    for (const KT_U8 on : {KT_U8{0}, KT_U8{1}})
        configure(0, &_Adapter_Config_V2::AlarmOn, on);
    EXPECT_EQ(LOG_OF(0, KT_AdapterMute(0)), "12/28:0") << "a buzzer switched on anew is not mute";
    succeed({outside::failDisk(0, 0)});
    EXPECT_EQ(LOG_OF(0, KT_AdapterMute(0)), "12/28:0") << "a new alarm is heard again";
    EXPECT_EQ(KT_AdapterMute(1), KT_ERR_NOT_ON_THIS_ADAPTER);
}
