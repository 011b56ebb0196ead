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
    "5b39 3430 2614 1271 0ff2 e5a6 c9a8 c7e7 4e22 916e b137 681e 2544 a53a 70af 8c8e ",
    "5b39 ca08 ae52 ba09 4a64 8f64 6981 c7e7 09f5 27a2 b137 9249 474d a53a e34a 57d3 ",
    "5b39 e758 7dfd f3cb d41b 87e8 ae6f c7e7 261f 6e35 b137 4e50 b106 a53a 18f8 ae77 ",
    "5b39 2bbd bd53 2437 9ec5 7a44 d54e c7e7 d76c ad99 b137 b8a4 de7c a53a aff6 0a9c ",
    "5b39 7ddc 8ca3 a413 d7ab 60c8 725f c7e7 d514 06d0 b137 56b5 c932 a53a 1272 42b8 ",
    "5b39 cc6b de19 07ab ddf0 e87b be60 c7e7 b2b6 17dd b137 6bb8 b21c a53a 3dac 8df0 ",
    "5b39 58f5 a5c9 676f 9abd f3c9 1d5f c7e7 6ca4 5de1 b137 0a4f 3e42 a53a 279e bd9e ",
    "5b39 f9f4 a776 767b c169 cb89 ef88 c7e7 f1a6 0a0f b137 601d 70b9 a53a 0547 bb2c ",
    "5b39 a853 9f04 6a0c fffa 9c34 937c c7e7 4275 333a b137 c20c 6edb a53a 4051 1b90 ",
    "5b39 bc20 1b1a 546d d5d7 d306 7bb4 c7e7 b274 23b7 b137 2ce1 58e1 a53a 9f50 02c8 ",
    "5b39 83d3 c4fe c48f 461d b39e 75a7 c7e7 faac 3a10 b137 3e77 384c a53a 042b b92d ",
    "5b39 674a ad6a 0606 5d95 85f0 de61 c7e7 84fa 79ed b137 e703 1c06 a53a c884 36d8 ",
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

static std::string lookAround() {
    std::string seen;
    for (KT_U8 adapter = 0; adapter < KT_Adapter_GetCount(); ++adapter) {
        const auto lists = [adapter](auto... calls) { (list(adapter, calls), ...); };
        lists(KT_LD_GetInfo, KT_LD_GetStatus, KT_LD_GetConfig, KT_DG_GetInfo, KT_DG_GetConfig, KT_PD_GetHDInfo,
              KT_PD_GetHDInfo_Ext, KT_PD_GetHDRaidStatus, KT_PD_GetConfig, KT_PD_GetBGAStatus, KT_PD_GetSmartStatus,
              KT_PD_GetPMInfo, KT_PD_GetExpanderInfo, KT_BLK_GetInfo, KT_ENC_GetEnclosureInfo);
        seen += lookAtDevices(adapter);
    }
    return seen;
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
        std::ostringstream past;
        past << lookAround() << std::ifstream(trace).rdbuf() << stateToLab(*run.store);
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
