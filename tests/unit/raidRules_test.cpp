#include <gtest/gtest.h>

#include <string>

#include "Functions/info/info.h"
#include "Public/common.h"
#include "Public/raidRules.h"
#include "tests/support/printed.h"
#include "tests/support/rows.h"

namespace {
struct RaidRules : testing::Test {
    _Adapter_Info& adapter = gAdapterInfo[0];
    void SetUp() override {
        adapter = {};
        adapter.MaxParityDisks = 3;
    }
};
} // namespace

// The sum of which numbers of disks, and of parity disks on them, each use of a level takes, and of what is said to the
// others. Where that is to be different, read what the test prints before its sum takes the place of this one.
TEST_F(RaidRules, DiskAndParityCounts) {
    std::string texts;
    for (RaidUse use : {USE_CREATE_VD, USE_CREATE_ARRAY, USE_MAX_SIZE, USE_MIGRATE_VD, USE_MIGRATE_ARRAY}) {
        for (KT_U8 level :
             {KT_RAID0, KT_RAID1, KT_RAID10, KT_RAID1E, KT_RAID5, KT_RAID50, KT_RAID6, KT_RAID60, KT_HYBRID}) {
            for (unsigned disks = 0; disks < 17; ++disks) {
                bool takes = false;
                texts += "\n" + std::to_string(use) + " " + std::to_string(level) + " " + std::to_string(disks) +
                         printedBy([&] { takes = checkDiskCount(use, level, disks); });
                for (int given = 0; takes && given < 10; ++given) {
                    int parity = given;
                    bool takesParity = false;
                    texts += printedBy([&] { takesParity = checkParity(use, level, disks, true, parity); });
                    texts += takesParity ? "+" : "-";
                    EXPECT_EQ(given, parity);
                }
            }
        }
    }
    EXPECT_EQ(sumOf(texts), 0x6040EAE1U) << texts;
    int parity = 9;
    EXPECT_TRUE(checkParity(USE_CREATE_ARRAY, KT_RAID60, 8, false, parity));
    EXPECT_EQ(4, parity);
}

TEST_F(RaidRules, LevelsFollowTheAdaptersBits) {
    const KT_U8 levels[] = {KT_RAID0,  KT_RAID1, KT_RAID10, KT_RAID1E,          KT_RAID5,       KT_RAID6,
                            KT_RAID50, KT_JBOD,  KT_RAID60, KT_TANDEM_CAPACITY, KT_TANDEM_SAFE, KT_HYBRID};
    for (unsigned bit = 0; bit < 16; ++bit) {
        adapter.LogicalDriverMode = static_cast<KT_U16>(1U << bit);
        for (unsigned level = 0; level < std::size(levels); ++level) {
            EXPECT_EQ(bit == level, checkLevel(USE_CREATE_VD, levels[level])) << bit << " " << level;
            bool inArray = bit == level;
            if (levels[level] == KT_TANDEM_SAFE) inArray = bit == 0 || bit == 1 || bit == 3;
            if (levels[level] == KT_HYBRID) inArray = true;
            EXPECT_EQ(inArray, checkLevel(USE_VD_IN_ARRAY, levels[level])) << bit << " " << level;
        }
    }
    EXPECT_EQ("Specified RAID mode is not supported.\n", printedBy([] { checkLevel(USE_MAX_SIZE, 2); }));
}

TEST_F(RaidRules, StripesAreSumsOfSupportedSizes) {
    auto valid = [&](KT_U16 supported, KT_U32 advanced) {
        adapter.StripeSizeSupported = supported;
        adapter.AdvancedFeatures = advanced;
        std::string sizes;
        for (unsigned kb : {16U, 24U, 32U, 48U, 64U, 128U, 256U, 1024U, 2048U, 65520U, 65521U})
            sizes += isValidStripe(static_cast<KT_U16>(kb)) ? std::to_string(kb) + " " : "";
        return sizes;
    };
    EXPECT_EQ(valid(3, 0), "16 32 48 ");
    EXPECT_EQ(valid(0, 0), "16 32 48 64 128 ");
    EXPECT_EQ(adapter.StripeSizeSupported, 15);
    EXPECT_EQ(valid(0, KT_ADV_BIG_STRIPE), "16 32 48 64 128 256 1024 ");
    EXPECT_EQ(adapter.StripeSizeSupported, 127);
    EXPECT_EQ(valid(1, KT_ADV_BIG_STRIPE), "16 ");
    EXPECT_EQ(valid(0xFFFF, 0), "16 32 48 64 128 256 1024 2048 65520 ");
}

TEST_F(RaidRules, StripesOfAnAdapterThatNamesNoneAreThoseOfItsKind) {
    const auto shown = [&](KT_U16 supported, KT_U32 advanced) {
        adapter.StripeSizeSupported = supported;
        adapter.AdvancedFeatures = advanced;
        const std::string lines = printedBy([&] { Adapter_PrintInfo(&adapter, 0); });
        const size_t at = lines.find("Stripe size supported:");
        return at == lines.npos ? "" : lines.substr(at + 37, lines.find('\n', at) - at - 37);
    };
    EXPECT_EQ(shown(0, 0), "16K 32K 64K 128K ");
    EXPECT_EQ(shown(0, KT_ADV_BIG_STRIPE), "16K 32K 64K 128K 256K 512K 1024K ");
    EXPECT_EQ(shown(5, KT_ADV_BIG_STRIPE), "16K 64K ");
    EXPECT_EQ(shown(0x80, 0), "");
}

TEST_F(RaidRules, RedundancyRanks) {
    const KT_U8 ranks[][2] = {{KT_RAID0, 0},  {KT_RAID1, 1}, {KT_RAID10, 1}, {KT_RAID1E, 1}, {KT_RAID5, 5},
                              {KT_RAID50, 5}, {KT_RAID6, 6}, {KT_RAID60, 6}, {KT_JBOD, 15},  {KT_HYBRID, 12}};
    for (const auto& [level, rank] : ranks)
        EXPECT_EQ(rank, RedundencyLevel(level));
}
