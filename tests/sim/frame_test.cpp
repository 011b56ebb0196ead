// The frame around every call: checks, faults, time, trace.
#include "frame/call.h"
#include "sim.h"
#include "state/events.h"
#include "state/faults.h"
#include "state/simClock.h"

#include <gtest/gtest.h>
#include <memory>

struct CallFrame : testing::Test {
    StateFolder folder;
    std::string trace = folder.path + "/trace";
    std::vector<unsigned char> buffer = std::vector<unsigned char>(sizeof(_RequestHeader) + 8 * sizeof(_LD_Info));
    _LD_Info_Request* request = reinterpret_cast<_LD_Info_Request*>(buffer.data());

    void SetUp() override { ASSERT_EQ(KT_API_Initialize(), KT_OK); }
    void TearDown() override {
        KT_API_Finalize();
        unsetenv("KTRAID_SIM_TRACE");
    }
    KT_U8 listVds(KT_U16 from, KT_U16 records, KT_U8 type = KT_REQUEST_LIST, KT_U8 adapter = 0) const {
        request->header = {0, type, from, records, 0, 0, {}};
        return KT_LD_GetInfo(adapter, request);
    }
    // What a call that goes well answers: how many records, and where the next page begins.
    std::vector<int> page(KT_U16 from, KT_U16 records) const {
        EXPECT_EQ(listVds(from, records), KT_OK);
        return {request->header.numReturned, request->header.nextStartingIndex};
    }
    void setFault(const Fault& fault) const {
        changeState(folder.state, [&](Store& store) { addFault(store, fault); });
    }
    std::string lastLine() const {
        const std::string text = fileText(trace);
        const size_t start = text.rfind('\n', text.size() - 2) + 1;
        return text.substr(start, text.size() - 1 - start);
    }
};

TEST_F(CallFrame, RefusesWhatNoBodyShouldSee) {
    EXPECT_EQ(KT_LD_GetInfo(0, nullptr), KT_ERR_INVALID_PARAMETER);
    EXPECT_EQ(listVds(0, 1, KT_REQUEST_LIST, 2), KT_ERR_INVALID_ADAPTER);
    EXPECT_EQ(listVds(0, 0), KT_ERR_NUM_REQUESTED);
    EXPECT_EQ(listVds(0, 1, 3), KT_ERR_REQUEST_TYPE);
    EXPECT_EQ(listVds(99, 1, KT_REQUEST_ITEM), KT_ERR_INVALID_VD);
    KT_API_Finalize();
    EXPECT_EQ(listVds(0, 1), KT_ERR_INVALID_REQUEST);
    EXPECT_EQ(KT_Adapter_GetCount(), 0);
}

TEST_F(CallFrame, StrikesWithFaultsWhenAndWhereTheyAreSet) {
    setFault({"KT_LD_GetInfo", FAULT_STATUS, 5, 0, 0, 1, 2, 0});
    setFault({"KT_LD_GetInfo", FAULT_STATUS, 9, 1, 0, 0, 0, 0});
    for (const int status : {0, 5, 5, 0})
        EXPECT_EQ(listVds(0, 1), status);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(listVds(0, 1, KT_REQUEST_LIST, 1), 9);
}

TEST_F(CallFrame, SpoilsAnswersAsFaultsSay) {
    const auto spoil = [&](KT_U8 kind) { setFault({"KT_LD_GetInfo", kind, 0, ADAPTER_GLOBAL, 0, 0, 1, 0}); };
    spoil(FAULT_COUNT);
    EXPECT_EQ(page(0, 2), (std::vector<int>{1002, 2}));
    spoil(FAULT_NEXT);
    EXPECT_EQ(page(1, 2), (std::vector<int>{2, 1}));
    spoil(FAULT_TEXT);
    EXPECT_EQ(listVds(0, 2), KT_OK);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(request->ldInfo[0].Name), 16), std::string(16, 'X'));
    EXPECT_EQ(listVds(0, 2), KT_OK);
    EXPECT_EQ(request->ldInfo[0].Name[0], 'b');
    setFault({"KT_Adapter_GetConfig", FAULT_TEXT, 0, ADAPTER_GLOBAL, 0, 0, 1, 0});
    _Adapter_Config_V2 config = {};
    EXPECT_EQ(KT_Adapter_GetConfig(0, &config), KT_OK);
    EXPECT_EQ((std::string{char(config.SerialNo[0]), char(config.ModelNumber[0])}), "XX");
}

TEST_F(CallFrame, UndoesWhatAFailingBodyDid) {
    allowSpoiltState();
    const auto write = [](KT_U8 status, bool keep) {
        return call("KT_LD_Delete", 0, Access::Write, {}, [&](Context& context) {
            save(context, 77, VdState{});
            context.keepOnFailure = keep;
            return status;
        });
    };
    Store* store = openExistingStore(folder.state);
    setCurrentStore(store);
    EXPECT_EQ(write(KT_ERR_VD_BUSY, false), KT_ERR_VD_BUSY);
    EXPECT_FALSE(find<VdState>(*store, 0, 77));
    EXPECT_EQ(write(KT_ERR_VD_BUSY, true), KT_ERR_VD_BUSY);
    EXPECT_TRUE(find<VdState>(*store, 0, 77));
    testing::internal::CaptureStderr();
    EXPECT_EQ(call("KT_LD_GetInfo", 0, Access::Read, {},
                   [](Context& context) { return erase<VdState>(context, 77) ? KT_OK : KT_ERR_FAILED; }),
              KT_ERR_FAILED);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("only reads"), std::string::npos);
    EXPECT_TRUE(find<VdState>(*store, 0, 77));
    setCurrentStore(nullptr);
    closeStore(store);
}

TEST_F(CallFrame, OutlivesAnActivityThatNeverEnds) {
    allowSpoiltState();
    changeState(folder.state, [](Store& store) {
        VdState nobodys = {}; // no virtual disk has this id: its activity is due for ever
        nobodys.activity = {KT_BGA_CHECK, KT_STATE_RUNNING, 0, {}, 1, 1, 0, 1, 0};
        save(store, 0, 77, nobodys);
        const KT_U64 now = simulatedNow(store);
        save(store, 0, 0, AdapterState{now, NEVER, 0, ADAPTER_UP, 0, {}, 0, 0});
        setClock(store, now + 30 * 86400 * 1000ULL, 1000, true);
    });
    alarm(20);
    testing::internal::CaptureStderr();
    EXPECT_EQ(listVds(0, 1), KT_OK);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ktraid-sim: adapter 0: more happens than can be caught up with; is the state damaged?\n");
    alarm(0);
}

TEST_F(CallFrame, TracesOneLineACall) {
    setenv("KTRAID_SIM_TRACE", trace.c_str(), 1);
    EXPECT_EQ(listVds(2, 1, KT_REQUEST_ITEM), KT_OK);
    const std::string head = "KT_LD_GetInfo a=0 request=00020200010000000000000000000000 -> 0 "
                             "request=0002020001000100ffff000000000000";
    EXPECT_EQ(lastLine().substr(0, head.size()), head);
    EXPECT_EQ(lastLine().size(), head.size() + 2 * sizeof(_LD_Info));
    KT_LD_Delete(1, 99, 1);
    EXPECT_EQ(lastLine().substr(0, 38), "KT_LD_Delete a=1 vd=99 stopBga=1 -> " + lastLine().substr(36, 2));
    KT_LD_GetInfo(0, nullptr);
    EXPECT_EQ(lastLine(), "KT_LD_GetInfo a=0 request=null -> 7");
    KT_U16 linked = 0;
    KT_VDHDD_GetLink(0, 0, &linked);
    EXPECT_EQ(lastLine(), "KT_VDHDD_GetLink a=0 vd=0 -> 0 pd=ffff");
    setFault({"KT_EVT_GetEvent", FAULT_COUNT, 0, ADAPTER_GLOBAL, 0, 0, 1, 0});
    KT_U8 count = 0;
    _Event event = {};
    KT_EVT_GetEvent(0, 1, &count, &event);
    EXPECT_EQ(lastLine().size(), strlen("KT_EVT_GetEvent a=0 maxCount=1 -> 0 count=ff events=") + 2 * sizeof event);
    KT_API_Finalize();
    EXPECT_EQ(lastLine(), "KT_API_Finalize -> 0");
}

TEST_F(CallFrame, TracesNoSecretsAndNoWholeImages) {
    setenv("KTRAID_SIM_TRACE", trace.c_str(), 1);
    _AES_Entry_Config entry = {1, 3, {}, "key", "password"};
    KT_AES_SetEntryConfig(1, &entry, entry.user_auth);
    EXPECT_TRUE(lastLine().starts_with("KT_AES_SetEntryConfig a=1 config=0103000000000000****")) << lastLine();
    auto page = std::make_unique<_Flash_Data>();
    page->Size = 9;
    page->PageNum = 2;
    memcpy(page->Data, "123456789", 9);
    KT_Flash_Bin(0, KT_FLASH_UPDATE, KT_IMAGE_BIOS, page.get());
    EXPECT_NE(lastLine().find("page=090000000200000000000000+9:cbf43926 -> "), std::string::npos) << lastLine();
    page->Size = 0xFFFFFFFF;
    KT_Flash_Bin(0, KT_FLASH_UPDATE, KT_IMAGE_BIOS, page.get());
    EXPECT_NE(lastLine().find("+196608:"), std::string::npos);
    KT_U8 type = 0;
    KT_U32 major = 0;
    KT_U16 word = 0;
    KT_Flash_GetHeaderInfo("a\n\"b\\\x1b", &type, &major, &word, &word, &word, &word);
    EXPECT_NE(lastLine().find("path=\"a\\x0a\\x22b\\x5c\\x1b\" -> "), std::string::npos) << lastLine();
}

TEST(ClockOf, RunsFromItsBaseAtItsSpeed) {
    EXPECT_EQ(clockAt(Clock{5000, 1000, 1000, 0, {}, 0}, 1750), 5750U);
    EXPECT_EQ(clockAt(Clock{5000, 1000, 60500, 0, {}, 0}, 3000), 5000U + 121000);
    EXPECT_EQ(clockAt(Clock{5000, 1000, 1000, 1, {}, 0}, 9999), 5000U);
    // The machine's clock was set back: time stands rather than running backwards.
    EXPECT_EQ(clockAt(Clock{5000, 1000, 1000, 0, {}, 0}, 10), 5000U);
    EXPECT_EQ(clockAt(Clock{5000, 0, 0xFFFFFFFF, 0, {}, 0}, NEVER / 2), LAST_MOMENT);
    EXPECT_EQ(clockAt(Clock{5000, 0, 0xFFFFFFFF, 0, {}, -3000}, NEVER / 2), LAST_MOMENT + 3000);
}

TEST(EventLog, KeepsTheNewestInOrder) {
    const MemoryState state(R"({"adapters": [{}, {}]})");
    const Context context{*state.store, 1, 5000};
    beginTransaction(*state.store, Access::Write);
    for (unsigned i = 0; i < EVENTS_KEPT + 10; ++i)
        logEvent(context, EVT_MISC_MUTED, static_cast<KT_U16>(i));
    EXPECT_EQ(count<_Event>(context), EVENTS_KEPT);
    EXPECT_EQ(find<_Event>(context, EVENTS_KEPT + 11)->TimeStamp, 5U);
    EXPECT_EQ(count<_Event>(state.context), 1U);
}
