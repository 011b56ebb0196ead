/* Writers killed at random moments: the state is before or after a call, never between. */
#include "adapter/health.h"
#include "adapter/settle.h"
#include "clock.h"
#include "invariants.h"
#include "lab.h"
#include "process.h"

#include <atomic>
#include <csignal>
#include <gtest/gtest.h>
#include <random>
#include <sys/mman.h>

using namespace sim;

static const struct {
    KT_U8 level;
    KT_U8 disks;
    KT_U8 parity;
} SHAPES[] = {{KT_RAID0, 2, 0},  {KT_RAID1, 2, 0},  {KT_RAID5, 3, 0}, {KT_RAID6, 4, 2},
              {KT_RAID10, 4, 0}, {KT_HYBRID, 2, 0}, {0x77, 1, 9}};

using Random = std::minstd_rand;

static KT_U16 pick(Random& random, unsigned below) {
    return static_cast<KT_U16>(random() % below);
}

static void createVd(KT_U8 adapter, Random& random) {
    _Create_LD_Param param = {};
    const auto& shape = SHAPES[pick(random, std::size(SHAPES))];
    param.RaidMode = shape.level;
    param.NumParityDisk = shape.parity;
    param.HDCount = static_cast<KT_U8>(shape.disks + (random() % 4 == 0 ? 1 : 0));
    param.SectorCoefficient = 1;
    param.StripeBlockSize = 64;
    param.LDID = KT_NO_ID;
    const KT_U16 first = pick(random, 8);
    for (KT_U16 i = 0; i < 6; i++)
        param.HDIDs[i] = static_cast<KT_U16>(first + i);
    param.Size = random() % 3 ? 1024U * pick(random, 200) : 0;
    param.InitializationOption = static_cast<KT_U8>(pick(random, 6));
    KT_LD_Create(adapter, &param);
}

static void createArray(KT_U8 adapter, Random& random) {
    _CreateOrModify_DG_Param param = {};
    param.DGID = KT_NO_ID;
    const auto& shape = SHAPES[pick(random, std::size(SHAPES))];
    param.RaidMode = shape.level;
    param.NumParityDisk = shape.parity;
    param.StripeBlockSize = 64;
    param.BlockSize = 512;
    param.PDCount = static_cast<KT_U8>(shape.disks + (random() % 4 == 0 ? 1 : 0));
    const KT_U16 first = pick(random, 10);
    for (KT_U16 i = 0; i < 6; i++)
        param.PDIDs[i] = static_cast<KT_U16>(first + i);
    KT_CreateOrModify_DG(adapter, &param, 0);
    _CreateOrModify_VD_Param vd = {};
    vd.VDID = KT_NO_ID;
    vd.DGID = param.DGID == KT_NO_ID ? pick(random, 4) : param.DGID;
    vd.NumParityDisk = shape.parity;
    vd.SectorCoefficient = 1;
    vd.BlockSize = 512;
    vd.RaidMode = param.RaidMode;
    vd.StripeBlockSize = 64;
    vd.DGSlotNum = static_cast<KT_U8>(pick(random, 2));
    vd.Size = 1024U * pick(random, 300);
    KT_CreateOrModify_VD(adapter, &vd);
}

/* Any call that changes something, with arguments that are right now and then. */
static void callAnything(Random& random) {
    const auto adapter = static_cast<KT_U8>(pick(random, 2));
    const KT_U16 id = pick(random, 12);
    switch (pick(random, 14)) {
    case 0:
        createVd(random() % 3 ? 1 : 0, random);
        break;
    case 1:
        createArray(random() % 5 ? 0 : 1, random);
        break;
    case 2:
        KT_LD_Delete(adapter, id, 1);
        break;
    case 3:
        KT_DG_Delete(adapter, id);
        break;
    case 4:
        KT_PD_FreeHD2GlobalSpare(adapter, id);
        break;
    case 5:
        KT_PD_FreeHD2DGSpare(adapter, id, pick(random, 3));
        break;
    case 6:
        KT_PD_Spare2FreeHD(adapter, id);
        break;
    case 7:
        KT_LD_StartConsistencyCheck(adapter, id, 1);
        break;
    case 8:
        KT_LD_StartRebuild(adapter, pick(random, 4), id);
        break;
    case 9:
        KT_LD_BGAControl(adapter, id, static_cast<KT_U8>(1 + pick(random, 4)));
        break;
    case 10:
        KT_PD_SetHDStatus(adapter, id, static_cast<KT_U8>(pick(random, 3)));
        break;
    case 11:
        KT_PD_WipeHDMDD(adapter, id, 1);
        break;
    case 12:
        KT_PD_StartMediaPatrol(adapter, id);
        break;
    default:
        KT_LD_StartINIT(adapter, id, static_cast<KT_U8>(pick(random, 6)));
        break;
    }
}

static std::vector<std::string> violationsNow(const std::string& path) {
    Store* store = openExistingStore(path);
    std::vector<std::string> wrong = findViolations(*store);
    closeStore(store);
    return wrong;
}

struct Crash : testing::Test {
    ScratchFolder folder;
    std::string path = folder.path + "/state.db";
    void SetUp() override { closeStore(openStore(path, fillFromLab, labNamed("default"))); }
    void TearDown() override { KT_API_Finalize(); }
};

TEST_F(Crash, KeepsTheInvariants) {
    for (unsigned round = 0; round < 60; round++) {
        const pid_t child = startChild([round] {
            Random random(round + 1);
            if (KT_API_Initialize() != KT_OK) return 1;
            for (;;)
                callAnything(random);
        });
        Random delay(round + 1000);
        usleep(500U + pick(delay, 20000));
        kill(child, SIGKILL);
        EXPECT_EQ(waitFor(child), -1);
        ASSERT_EQ(violationsNow(path), std::vector<std::string>()) << "round " << round;
    }
}

TEST_F(Crash, LosesNoCallThatReturned) {
    auto* done = static_cast<std::atomic<KT_U32>*>(
        mmap(nullptr, sizeof(KT_U32), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(static_cast<void*>(done), MAP_FAILED);
    for (unsigned round = 0; round < 30; round++) {
        const pid_t child = startChild([done] {
            if (KT_API_Initialize() != KT_OK) return 1;
            while (KT_API_RescanAdapter() == KT_OK)
                (*done)++;
            return 2;
        });
        Random delay(round + 1);
        usleep(500U + pick(delay, 10000));
        kill(child, SIGKILL);
        EXPECT_EQ(waitFor(child), -1);
        ASSERT_EQ(KT_API_Initialize(), KT_OK);
        const KT_U32 kept = KT_API_GetRescanCount(0);
        KT_API_Finalize();
        ASSERT_GE(kept, done->load());
        ASSERT_LE(kept, done->load() + 1);
        *done = kept;
    }
    munmap(done, sizeof(KT_U32));
}

/* What people and time do, from another process as it were. */
static void letSomethingHappen(const std::string& path, Random& random) {
    Store* store = openExistingStore(path);
    beginTransaction(*store, Access::Write);
    const KT_U64 later = simulatedNow(*store) + 60000ULL * pick(random, 240);
    setClock(*store, later, 1000, true);
    Context context{*store, static_cast<KT_U8>(pick(random, 2)), later};
    if (settleDue(context)) settle(context);
    const KT_U16 pd = pick(random, 14);
    switch (pick(random, 6)) {
    case 0:
        failDisk(context, pd);
        break;
    case 1:
        pullDisk(context, pd);
        break;
    case 2:
    case 3:
        insertDisk(context, pd);
        break;
    case 4:
        replaceDisk(context, pd, 0);
        break;
    default:
        tripSmart(context, pd, random() % 2 == 0);
        break;
    }
    commitTransaction(*store);
    closeStore(store);
}

/* Not a crash, but the same promise: whatever is called, right or wrong, and whatever happens meanwhile, the state
   holds together. */
TEST_F(Crash, RandomCallsKeepTheInvariants) {
    for (const char* lab : {"default", "empty", "troubled"}) {
        for (unsigned seed = 1; seed <= 4; seed++) {
            replaceStore(path, fillFromLab, labNamed(lab));
            Random random(seed);
            ASSERT_EQ(KT_API_Initialize(), KT_OK);
            for (int i = 0; i < 600; i++) {
                callAnything(random);
                if (i % 15 == 0) letSomethingHappen(path, random);
                if (i % 5 != 0) continue;
                ASSERT_EQ(violationsNow(path), std::vector<std::string>())
                    << "lab " << lab << ", seed " << seed << ", after call " << i;
            }
            KT_API_Finalize();
        }
    }
}
