// Thousands of calls, right and wrong, with disks failing and time passing in between, and writers killed at random
// moments: what holds always must hold, and the state is before or after a call, never between.
#include "chaos.h"
#include "frame/invariants.h"
#include "state/simClock.h"

#include <atomic>
#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/mman.h>
#include <zlib.h>

static const BuiltInLab LAB = {"lab", R"({"adapters": [
  {"type": "array-based", "battery": true, "expanders": [{}], "enclosures": [{"id": 1}], "disks": [
     {"count": 14, "type": "SAS", "size": "2GB"}, {"count": 2, "type": "SAS", "size": "1GB"},
     {"count": 2, "type": "SAS", "size": "2GB", "sector": 4096}]},
  {"type": "LD-based", "MaxAESEntry": 5, "MaxAESPort": 4, "disks": [
     {"count": 10, "type": "SATA", "size": "2GB"}, {"count": 2, "type": "SATA SSD", "size": "1GB"},
     {"count": 2, "type": "SATA", "size": "3GB", "spare": "global"}]},
  {"type": "LD-based", "DevID": 17920, "Features": 87, "AdvancedFeatures": 163843, "disks": [
     {"count": 8, "type": "SATA", "size": "2GB"}, {"count": 2, "type": "SATA", "size": "2GB", "sector": 4096}]}]})"};
static const KT_U64 START = 1800000000000;

// A digest of the begin and of every hundred steps of a seed's four histories: of the calls with all that they
// answered, and of the state. They are others as soon as an adapter does anything else than before. Where that is
// meant, the lines that the test prints take the place of these. Where it is not, compare what it keeps in the folder
// that PASTS names with what a build from before keeps there.
static const char* const PASTS[] = {
    "3edc 5af3 9508 4cf5 a99c bb1e c3fd b3a3 9af6 ae89 4bc6 476c cb89 7ae0 c062 1858 ",
    "3edc 1063 192b 409a 6bbe e835 20af b3a3 bbc2 680f 4bc6 316d 8741 7ae0 52ee ac1a ",
    "3edc 5063 b3b4 f3b5 7044 2ec7 2750 b3a3 cf21 e28c 4bc6 c8e6 c662 7ae0 45a5 e79f ",
    "3edc 7b0f f09e d40b 9554 483c 6f8d b3a3 82be f9fe 4bc6 8c7f fc2d 7ae0 c785 0979 ",
    "3edc 071d 8614 816e 4c77 3a43 954c b3a3 e487 1ebc 4bc6 512e 8d90 7ae0 9844 d4cb ",
    "3edc 9995 18d4 798f 3729 58e0 38a9 b3a3 fe75 d8c1 4bc6 b5a5 33fc 7ae0 ee04 feee ",
    "3edc 4019 0ba8 81c9 d608 63c9 8412 b3a3 e8b3 6c90 4bc6 479e c370 7ae0 0a7f ad66 ",
    "3edc b467 e9b5 8b10 727d bb2e 7fd8 b3a3 d4da 2b4c 4bc6 8770 2cec 7ae0 da3f 12f8 ",
    "3edc 8563 a572 b69a 19fc 6754 c7ea b3a3 1e11 eaff 4bc6 5e88 aeb2 7ae0 345b a365 ",
    "3edc 3ee2 b697 f1ad 8519 1d56 1bc4 b3a3 84c0 1b3f 4bc6 7f2e 0583 7ae0 e955 dd01 ",
    "3edc 2204 581c 42bf 6ba2 04f9 7c68 b3a3 9fc4 5d88 4bc6 2678 09ee 7ae0 6093 16b3 ",
    "3edc 3697 20c2 fb40 0887 3431 a406 b3a3 a958 001c 4bc6 bc61 2f4d 7ae0 81dc 75bd ",
};

// All records of a list: only the trace of the call looks at them.
template <class Request>
static void list(KT_U8 adapter, KT_U8 (*call)(KT_U8, Request*)) {
    const KT_U16 most = 40;
    std::vector<unsigned char> buffer(most * sizeof(Request));
    const _RequestHeader header = {0, KT_REQUEST_LIST, 0, most, 0, 0, {}};
    memcpy(buffer.data(), &header, sizeof header);
    call(adapter, reinterpret_cast<Request*>(buffer.data()));
}

static void lookAround() {
    for (KT_U8 adapter = 0; adapter < KT_Adapter_GetCount(); ++adapter) {
        const auto lists = [adapter](auto... calls) { (list(adapter, calls), ...); };
        lists(KT_LD_GetInfo, KT_LD_GetStatus, KT_LD_GetConfig, KT_DG_GetInfo, KT_DG_GetConfig, KT_PD_GetHDInfo_Ext,
              KT_PD_GetHDRaidStatus, KT_PD_GetConfig, KT_PD_GetBGAStatus, KT_PD_GetSmartStatus, KT_PD_GetPMInfo,
              KT_PD_GetExpanderInfo, KT_BLK_GetInfo, KT_ENC_GetEnclosureInfo);
        lookAtDevices(adapter);
    }
}

struct Crash : testing::TestWithParam<unsigned> {
    StateFolder folder;
    const std::string& path = folder.state;
    const std::string trace = path + ".trace";
    void TearDown() override {
        KT_API_Finalize();
        unsetenv("KTRAID_SIM_TRACE");
    }

    Chaos begin(const BuiltInLab* lab, unsigned seed) const {
        KT_API_Finalize();
        const BuiltInLab stopped = {lab->name, lab->text, START};
        replaceStore(path, fillFromLab, &stopped);
        EXPECT_EQ(KT_API_Initialize(), KT_OK);
        return {std::minstd_rand(seed), openExistingStore(path), START};
    }
    // The digest of what was done since the last one, and of what there is.
    std::string digest(const Chaos& run, const std::string& name) const {
        lookAround();
        std::ostringstream past;
        past << std::ifstream(trace).rdbuf() << stateToLab(*run.store);
        std::ofstream(trace, std::ios::trunc);
        if (const char* kept = getenv("PASTS")) std::ofstream(std::string(kept) + "/" + name) << past.str();
        const std::string text = past.str();
        char digits[8];
        snprintf(digits, sizeof digits, "%04lx ",
                 crc32_z(0, reinterpret_cast<const unsigned char*>(text.data()), text.size()) & 0xFFFF);
        return digits;
    }
    // Kills a child that repeats the work after a while.
    static void killAtWork(unsigned round, const std::function<bool()>& work) {
        const pid_t child = startChild([&] {
            if (KT_API_Initialize() != KT_OK) return 1;
            while (work())
                ;
            return 2;
        });
        std::minstd_rand delay(round + 1000);
        usleep(static_cast<useconds_t>(500 + delay() % 20000));
        kill(child, SIGKILL);
        EXPECT_EQ(waitFor(child), -1);
    }
};

// A lab may hold what calls do not lead to.
TEST_P(Crash, WhatHoldsAlwaysHoldsAndThePastStays) {
    setenv("KTRAID_SIM_TRACE", trace.c_str(), 1);
    std::string past;
    for (const BuiltInLab* lab : {&LAB, labNamed("default"), labNamed("empty"), labNamed("troubled")}) {
        Chaos run = begin(lab, GetParam() + 1);
        const auto note = [&](int step) {
            past += digest(run, std::to_string(GetParam()) + "." + lab->name + "." + std::to_string(step));
        };
        note(0);
        for (int step = 1; step <= (lab == &LAB ? 600 : 200); ++step) {
            run.doAnything();
            ASSERT_EQ(findViolations(*run.store, lab == &LAB), std::vector<std::string>())
                << "lab " << lab->name << ", step " << step;
            if (step % 100 == 0) note(step);
        }
        if (lab == &LAB) {
            EXPECT_GT(run.boots, 0);
            EXPECT_GT(run.shelvesPulled + run.cablesPulled, 0);
        }
        closeStore(run.store);
    }
    EXPECT_EQ(past, PASTS[GetParam()]);
}
INSTANTIATE_TEST_SUITE_P(Seeds, Crash, testing::Range(0U, 12U));

TEST_F(Crash, KeepsTheInvariants) {
    closeStore(begin(&LAB, 0).store);
    KT_API_Finalize();
    for (unsigned round = 0; round < 60; ++round) {
        Chaos run{std::minstd_rand(round + 1), nullptr, START};
        killAtWork(round, [&] {
            if (run.store == nullptr) run.store = openExistingStore(path);
            run.doAnything();
            return true;
        });
        Store* store = openExistingStore(path);
        ASSERT_EQ(findViolations(*store), std::vector<std::string>()) << "round " << round;
        closeStore(store);
    }
}

TEST_F(Crash, LosesNoCallThatReturned) {
    closeStore(begin(&LAB, 0).store);
    KT_API_Finalize();
    auto* done = static_cast<std::atomic<KT_U32>*>(
        mmap(nullptr, sizeof(KT_U32), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(static_cast<void*>(done), MAP_FAILED);
    for (unsigned round = 0; round < 30; ++round) {
        killAtWork(round, [&] { return KT_API_RescanAdapter() == KT_OK && ++*done != 0; });
        ASSERT_EQ(KT_API_Initialize(), KT_OK);
        const KT_U32 kept = KT_API_GetRescanCount(0);
        KT_API_Finalize();
        ASSERT_GE(kept, done->load());
        ASSERT_LE(kept, done->load() + 1);
        *done = kept;
    }
    munmap(done, sizeof(KT_U32));
}
