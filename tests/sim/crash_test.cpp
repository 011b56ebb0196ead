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
    "3edc 96a7 8ded e043 41e8 d53c 8104 b3a3 43c4 52c4 4bc6 6195 a44b 7ae0 91fe 88a1 ",
    "3edc 3719 a5c1 b3c6 e92b 0b43 31c9 b3a3 9602 bb9d 4bc6 214a e72e 7ae0 0354 8267 ",
    "3edc 2a70 f3c7 4128 fe2a 5f6b 8de1 b3a3 fcda 607a 4bc6 b9a5 c1c3 7ae0 4d85 dafc ",
    "3edc c6e4 f250 d583 95f1 1387 e8c8 b3a3 c4e6 7887 4bc6 cabe 6e7e 7ae0 39f0 9e5b ",
    "3edc 0f3e 3bde 5881 ca81 22f1 4e43 b3a3 a832 cc08 4bc6 2ca1 832a 7ae0 f772 5e06 ",
    "3edc 0c8c 11a5 39e9 a4b8 0c84 9603 b3a3 c1c4 699e 4bc6 0fe8 855b 7ae0 0a73 6a41 ",
    "3edc 0bb1 8c41 098f b55b 089e 9c70 b3a3 8d75 0e61 4bc6 1f52 fad2 7ae0 fe99 fb10 ",
    "3edc f11a 43b4 67a4 5a48 133f 59ef b3a3 4302 adcc 4bc6 e267 7564 7ae0 862f aab4 ",
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
INSTANTIATE_TEST_SUITE_P(Seeds, Crash, testing::Range(0U, 8U));

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
