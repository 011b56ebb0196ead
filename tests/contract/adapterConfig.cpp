#include "frame.h"

static const char ADAPTER_CONFIG_LAB[] = R"({"adapters": [{"type": "array-based", "disks": [{}]},
  {"type": "LD-based", "AlarmSupport": 0, "Features": 0}]})";

struct AdapterConfig : LabTest<ADAPTER_CONFIG_LAB> {};

TEST_F(AdapterConfig, ChangesAreKeptAndLogged) {
    Config config = adapterConfig(0);
    EXPECT_EQ(memcmp(config.SerialNo, adapterInfo(0).SerialNo, sizeof config.SerialNo), 0);
    for (const KT_U8 on : {KT_U8{0}, KT_U8{1}}) {
        for (const auto each :
             {&Config::AutoRebuildOn, &Config::CpuEfficiencyOn, &Config::PollSMARTStatus, &Config::CopyBackOn,
              &Config::ModuleConsolidation, &Config::rawimg_update_disabled, &Config::AlarmOn})
            config.*each = on;
        std::string rates;
        for (const auto& [rate, code] :
             {std::pair{&Config::BGARate, "12/1"}, std::pair{&Config::SyncRate, "12/22"},
              std::pair{&Config::InitRate, "12/23"}, std::pair{&Config::RebuildRate, "12/24"},
              std::pair{&Config::MigrationRate, "12/25"}, std::pair{&Config::CopybackRate, "12/26"},
              std::pair{&Config::MPRate, "12/27"}}) {
            config.*rate = static_cast<KT_U8>(99 + on);
            rates += code + (":0(" + std::to_string(99 + on)) + ") ";
        }
        Config asked = config;
        memset(asked.SerialNo, 'X', sizeof asked.SerialNo); // which is not a setting
        EXPECT_EQ(LOG_OF(0, KT_Adapter_SetConfig(0, &asked), reopen()),
                  on ? "0/4:0 " + rates + "0/0:0 0/7:0 0/2:0" : "0/5:0 " + rates + "0/1:0 0/8:0 0/3:0");
        const Config held = adapterConfig(0);
        EXPECT_EQ(memcmp(&held, &config, sizeof held), 0);
        EXPECT_EQ(LOG_OF(0, KT_Adapter_SetConfig(0, &asked)), "") << "nothing changed";
    }
}

TEST_F(AdapterConfig, WrongValuesChangeNothing) {
    const auto set = [](KT_U8 adapter, KT_U8 Config::*field, KT_U8 value) {
        Config config = adapterConfig(adapter);
        config.BGARate = 30;
        config.*field = value;
        return KT_Adapter_SetConfig(adapter, &config);
    };
    const std::string before = show();
    answer(KT_ERR_OUT_OF_RANGE, {set(0, &Config::MPRate, 101), set(0, &Config::AutoRebuildOn, 2)});
    answer(KT_ERR_NOT_ON_THIS_ADAPTER,
           {set(1, &Config::AutoRebuildOn, 1), set(1, &Config::AlarmOn, 1), set(1, &Config::ModuleConsolidation, 1)});
    EXPECT_TRUE(show() == before);
}

TEST_F(AdapterConfig, MuteIsLoggedOnce) {
    EXPECT_EQ(LOG_OF(0, KT_AdapterMute(0), configure(0, &Config::SyncRate, 9), KT_AdapterMute(0)),
              "12/28:0 12/22:0(9)");
    EXPECT_EQ(LOG_OF(0, configure(0, &Config::AlarmOn, 0), configure(0, &Config::AlarmOn, 1), KT_AdapterMute(0)),
              "0/3:0 0/2:0 12/28:0");
    succeed({failDisk(0, 0)});
    EXPECT_EQ(LOG_OF(0, KT_AdapterMute(0)), "12/28:0") << "a new alarm is heard again";
    EXPECT_EQ(KT_AdapterMute(1), KT_ERR_NOT_ON_THIS_ADAPTER);
}
