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
    "3edc 2c5d 8ab7 55b5 c938 0fbd 1dea b3a3 4cd9 f3ca 4bc6 1fd2 9e98 7ae0 49ef 4d44 ",
    "3edc 0d71 14ab 5ec0 f697 0065 b98a b3a3 5bea 2090 4bc6 ce44 4a26 7ae0 9427 5094 ",
    "3edc a9d6 7af7 ae61 df50 57a3 9c0b b3a3 4e9c df76 4bc6 7862 95d9 7ae0 17da a6ca ",
    "3edc 47c4 20a9 bb88 1872 06a7 80e8 b3a3 c7c0 bc3d 4bc6 8337 3ea3 7ae0 010d 7f60 ",
    "3edc 45d1 7d21 2e31 04b6 1481 06ee b3a3 a730 78bf 4bc6 71d8 d0a4 7ae0 8c69 6162 ",
    "3edc 45e4 b0c0 329c 40e0 4126 6e14 b3a3 4744 3482 4bc6 1b8b 6a90 7ae0 2bac 7c4a ",
    "3edc 5d02 7b75 74af 627b 6840 16af b3a3 2c16 9ffd 4bc6 b4fb c8a5 7ae0 568f eec6 ",
    "3edc 14ad d06d b2b2 2d6f 60f1 4fae b3a3 d28c 70b0 4bc6 045b 8299 7ae0 ee7c e233 ",
    "3edc d07a d045 4eee df85 972a 67aa b3a3 4e79 1101 4bc6 5d4a 5a98 7ae0 630d d99e ",
    "3edc 7d85 20d8 def5 277f ef2a 606e b3a3 2373 4528 4bc6 f83c 861f 7ae0 f9c7 cd68 ",
    "3edc 6788 c94b ab05 cb9f 4480 41b5 b3a3 0c83 1f4f 4bc6 8514 cd57 7ae0 4fc3 0f46 ",
    "3edc d2c2 bf36 1efe c60e 759e 29ad b3a3 6d6c dd78 4bc6 0e47 c519 7ae0 221b 61d8 ",
    "3edc 75a5 478c 2c9b 9332 f3d3 df9a b3a3 fb63 fde5 4bc6 b521 3ec6 7ae0 db38 62a1 ",
    "3edc bd18 cfaf 36f2 b782 7d34 58dd b3a3 2b2f be6d 4bc6 446c 6a01 7ae0 88a8 09b0 ",
    "3edc 5445 1bc2 cec2 88c4 70fc 4682 b3a3 d2b4 b65e 4bc6 fa11 fa6e 7ae0 c375 3660 ",
    "3edc fdf6 dc53 ab17 7581 daa6 c3cf b3a3 fe99 cfab 4bc6 4414 b764 7ae0 33f6 bce3 ",
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
INSTANTIATE_TEST_SUITE_P(Seeds, Crash, testing::Range(0U, 16U));

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
