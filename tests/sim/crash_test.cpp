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
    "b940 2079 4418 b8ef 778c f8e4 df9c dacd df95 9d38 5cb8 2fa4 fed0 7955 f878 d931 ",
    "b940 9dd5 1cdb c563 2bbe e073 08f1 dacd b511 35e9 5cb8 f8c0 fc78 7955 b632 dc69 ",
    "b940 cfa9 75cb 6241 7639 1283 9b87 dacd 2e45 819c 5cb8 eec0 1d84 7955 d466 10d3 ",
    "b940 45e1 7a5f 2436 24df b1ab bb82 dacd 8575 04de 5cb8 2342 c6ae 7955 8076 6f00 ",
    "b940 8bad 9548 6f82 c2ad f9e6 f485 dacd 17c4 fe61 5cb8 6010 2413 7955 d383 2777 ",
    "b940 df87 842c b348 92fb 4404 5804 dacd d372 c596 5cb8 6f06 8202 7955 6c78 8257 ",
    "b940 a624 4e70 c303 78cc 9037 6e28 dacd b123 4df6 5cb8 fc5a 825c 7955 70b9 9ba7 ",
    "b940 99db dc20 d32d d9bf 562d 89c9 dacd a04a 8513 5cb8 c3ce 45ff 7955 b212 04ae ",
    "b940 ce42 aa88 f202 ce64 52a8 a545 dacd 184b e5c3 5cb8 695a f776 7955 f3dc f4a7 ",
    "b940 c97f 5a3c adb6 e415 aa9c dad0 dacd a3fd 8bfa 5cb8 d8a8 99a0 7955 deb4 6838 ",
    "b940 c675 2171 94d5 c3ea 3ae7 8881 dacd f592 3b39 5cb8 fef5 7167 7955 9d70 6082 ",
    "b940 3a14 5e51 4568 5607 7423 8231 dacd 41e4 7ade 5cb8 a119 2e37 7955 ba9b 7d17 ",
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
        lists(KT_LD_GetInfo, KT_LD_GetStatus, KT_LD_GetConfig, KT_DG_GetInfo, KT_DG_GetConfig, KT_PD_GetHDInfo,
              KT_PD_GetHDInfo_Ext, KT_PD_GetHDRaidStatus, KT_PD_GetConfig, KT_PD_GetBGAStatus, KT_PD_GetSmartStatus,
              KT_PD_GetPMInfo, KT_PD_GetExpanderInfo, KT_BLK_GetInfo, KT_ENC_GetEnclosureInfo);
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
            // Looking at everything takes longer than the steps. What is wrong stays so; calls of test runs look, too.
            if (step % 25 == 0) {
                ASSERT_EQ(findViolations(*run.store, lab == &LAB), std::vector<std::string>())
                    << "lab " << lab->name << ", step " << step;
            }
            if (step % 100 == 0) note(step);
        }
        if (lab == &LAB) {
            EXPECT_GT(run.boots, 0);
            EXPECT_GT(run.shelvesPulled + run.cablesPulled, 0);
        }
        closeStore(run.store);
    }
    EXPECT_EQ(past, GetParam() < std::size(PASTS) ? PASTS[GetParam()] : past);
}
INSTANTIATE_TEST_SUITE_P(Seeds, Crash, testing::Range(0U, seeds(std::size(PASTS))));

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
