// What each level takes, holds and survives, over all numbers of disks and all sets of lost ones.
#include "raid/levels.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <string>

using namespace sim;

// The numbers of disks, up to nine, that make the level with so much parity.
static std::string counts(KT_U8 level, KT_U8 parity, bool array) {
    _Adapter_Info adapter = {};
    adapter.LogicalDriverMode = 0xFFFF;
    adapter.MaxParityDisks = 3;
    std::string good;
    for (KT_U8 disks = 1; disks < 10; ++disks)
        if (checkGeometry(adapter, {level, disks, parity}, array) == KT_OK) good += std::to_string(disks);
    return good;
}

// For one lost disk, two and so on: how many of the ways to lose them leave it (p)artly optimal, (d)egraded, (o)ffline.
static std::string losses(const Geometry& geometry) {
    std::string seen;
    for (int lost = 1; lost <= std::min<int>(geometry.disks, 3); ++lost) {
        std::map<KT_U8, int> ways;
        for (unsigned set = 0; set < 1U << geometry.disks; ++set) {
            bool slots[8] = {};
            bool hdd[8] = {};
            hdd[geometry.disks - 1] = true;
            for (int i = 0; i < geometry.disks; ++i)
                slots[i] = (set >> i & 1) != 0;
            if (std::count(slots, slots + 8, true) == lost) ++ways[statusWithLost(geometry, slots, hdd)];
        }
        for (const auto& [status, letter] :
             {std::pair{KT_VD_PARTIALLY_OPTIMAL, "p"}, {KT_VD_DEGRADED, "d"}, {KT_VD_OFFLINE, "o"}})
            if (ways[status]) seen += letter + std::to_string(ways[status]);
        seen += ' ';
    }
    return seen;
}

TEST(Levels, HaveTheirOwnNumbers) {
    static const struct {
        Geometry geometry;
        const char* counts;
        const char* inArrays;
        KT_U32 halves;
        int rank;
        const char* losses;
    } ROWS[] = {
        {{KT_RAID0, 3, 0}, "23456789", "23456789", 6, 0, "o3 o3 o1 "},
        {{KT_RAID1, 2, 0}, "2", "2", 2, 1, "d2 o1 "},
        {{KT_RAID10, 6, 0}, "468", "468", 6, 1, "d6 d12o3 d8o12 "},
        {{KT_RAID1E, 5, 0}, "3579", "3579", 5, 1, "d5 d5o5 o10 "},
        {{KT_RAID5, 4, 0}, "3456789", "3456789", 6, 5, "d4 o6 o4 "},
        {{KT_RAID50, 6, 0}, "68", "68", 8, 5, "d6 d9o6 o20 "},
        {{KT_RAID6, 5, 2}, "3456789", "456789", 6, 6, "p5 d10 o10 "},
        {{KT_RAID6, 6, 3}, "456789", "6789", 6, 6, "p6 p15 d20 "},
        {{KT_RAID60, 8, 4}, "68", "8", 8, 6, "p8 p16d12 d48o8 "},
        {{KT_JBOD, 2, 0}, "123456789", "123456789", 4, 0, "o2 o1 "},
        {{KT_TANDEM_CAPACITY, 3, 0}, "23456789", "", 6, 0, "o3 o3 o1 "},
        {{KT_TANDEM_SAFE, 3, 0}, "23456789", "", 6, 0, "d2o1 d1o2 o1 "},
        {{KT_HYBRID, 3, 0}, "23456789", "", 6, 0, "d2o1 d1o2 o1 "},
        {{0x77, 3, 0}, "", "", 6, 0, "o3 o3 o1 "},
    };
    for (const auto& row : ROWS) {
        const auto& [level, disks, parity] = row.geometry;
        SCOPED_TRACE(int{level});
        EXPECT_EQ(counts(level, parity, false), row.counts);
        EXPECT_EQ(counts(level, parity, true), row.inArrays);
        EXPECT_EQ(dataHalves(row.geometry), row.halves);
        EXPECT_EQ(redundancyRank(level), row.rank);
        EXPECT_EQ(losses(row.geometry), row.losses);
        EXPECT_EQ(isRedundant(level), row.rank != 0);
        for (KT_U64 size = 1; size < 3000; size += 7) {
            const KT_U64 share = shareFor(row.geometry, size, 16);
            EXPECT_EQ(share % 16, 0U);
            EXPECT_GE(capacityOf(row.geometry, share), size);
            EXPECT_LT(capacityOf(row.geometry, share - 16), size) << "a stripe less would not hold it";
        }
    }
    EXPECT_EQ(shareFor({KT_RAID0, 2, 0}, 5, 0), 3U) << "a damaged record may have no stripe";
    EXPECT_EQ(counts(KT_RAID6, 1, false) + counts(KT_RAID6, 4, false) + counts(KT_RAID60, 3, false), "");
}
