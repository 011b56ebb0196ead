// What set hands to the library, and a library that answers and does nothing.
#include <gtest/gtest.h>

#include "Functions/set/set.h"
#include "tests/seam/seam.h"

extern "C" {
KT_U8 KT_Adapter_SetConfig(KT_U8, const _Adapter_Config_V2* config) {
    seam.sent["KT_Adapter_SetConfig.config"] = bytesOf(*config);
    return answer("KT_Adapter_SetConfig", "");
}
KT_U8 KT_LD_SetConfig(KT_U8, KT_U16 vd, const _LD_Config*) {
    return answer("KT_LD_SetConfig", text(vd));
}
KT_U8 KT_PD_SetConfig(KT_U8, KT_U16 pd, const _HD_CONFIG*) {
    return answer("KT_PD_SetConfig", text(pd));
}
KT_U8 KT_PD_SetHDStatus(KT_U8, KT_U16 pd, KT_U8 status) {
    return answer("KT_PD_SetHDStatus", text(pd) + " " + text(status));
}
KT_U8 KT_AdapterMute(KT_U8) {
    return answer("KT_AdapterMute", "");
}
KT_U8 KT_BBU_ChangePower(KT_U8, KT_U8 action) {
    return answer("KT_BBU_ChangePower", text(action));
}
}

namespace {

class Set : public ::testing::Test {
  protected:
    void SetUp() override {
        seam = {};
        gAdapterInfo[0] = {};
        gAdapterInfo[0].AlarmSupport = 1;
        gAdapterInfo[0].Features = KT_FEATURE_REBUILD;
    }
    void TearDown() override { gAdapterInfo[0] = {}; }
};

TEST_F(Set, SaysWhatTheAdapterDidNotTake) {
    seam.rawDisabled = 0x77;
    Outcome outcome = run(doSet, "set -o hba --alarm on --rebuildrate 30");
    EXPECT_EQ(outcome.result, 1);
    EXPECT_NE(outcome.printed.find("\nThe adapter did not take --alarm on.\n"
                                   "The adapter did not take --rebuildrate 30.\n"),
              std::string::npos)
        << outcome.printed;
    _Adapter_Config_V2 expected = {};
    expected.AlarmOn = 1;
    expected.RebuildRate = 30;
    expected.rawimg_update_disabled = 0x77;
    EXPECT_EQ(seam.sent["KT_Adapter_SetConfig.config"], bytesOf(expected));
}

// An answer without a record is no record of zeroes to write back.
TEST_F(Set, WritesNothingWithoutARecord) {
    for (const char* object : {"vd", "pd"}) {
        seam = {};
        seam.withoutRecord = {"KT_LD_GetConfig", "KT_PD_GetConfig"};
        Outcome outcome = run(doSet, std::string("set -o ") + object + " -i 0 -c off");
        EXPECT_EQ(outcome.result, KT_ERR_FAILED);
        EXPECT_EQ(seam.calls.size(), 1U);
    }
}

} // namespace
