// The walk over the library's lists: page sizes, and libraries that misbehave.
#include "Public/listing.h"
#include "tests/seam/seam.h"

namespace {

std::vector<int> seen;
ListEnd walk(KT_U16 perPage, size_t stopAfter = SIZE_MAX) {
    seen.clear();
    return walkList<_HD_RAID_STATUS>(KT_PD_GetHDRaidStatus, EVERYTHING, perPage, [&](const _HD_RAID_STATUS& record) {
        seen.push_back(record.HDID);
        return seen.size() < stopAfter;
    });
}

using Listing = SeamTest;

TEST_F(Listing, PageSizeFollowsTheAdapter) {
    EXPECT_EQ(recordsPerPage(312), 32);
    EXPECT_EQ(recordsPerPage(32, 512), 512);
    gAdapterInfo[0].MaxBufferSize = 64;
    EXPECT_EQ(recordsPerPage(312), 210);
    gAdapterInfo[0].MaxBufferSize = 65535;
    EXPECT_EQ(recordsPerPage(8), 65535);
}

TEST_F(Listing, ReadsEveryPageOnceDownToAFailureOrTheVisitorsWish) {
    addDisks(70);
    const ListEnd whole = walk(32);
    EXPECT_EQ(whole.status, KT_OK);
    EXPECT_EQ(whole.total, 70U);
    EXPECT_EQ(seen.back(), 69);
    EXPECT_EQ((Calls{"KT_PD_GetHDRaidStatus", "KT_PD_GetHDRaidStatus from 32", "KT_PD_GetHDRaidStatus from 64"}),
              seam.calls);
    seam.calls.clear();
    EXPECT_TRUE(walk(10, 13).stopped);
    EXPECT_EQ(seen.size(), 13U);
    EXPECT_EQ(seam.calls.size(), 2U);
    seam.statuses["KT_PD_GetHDRaidStatus from 10"] = KT_ERR_OUT_OF_RANGE;
    const ListEnd failed = walk(10);
    EXPECT_EQ(failed.status, KT_ERR_OUT_OF_RANGE);
    EXPECT_EQ(failed.total, 10U);
    EXPECT_FALSE(failed.stopped);
}

TEST_F(Listing, EndsWhateverTheLibraryAnswers) {
    addDisks(100);
    for (int stuckAt : {0, 10}) {
        seam.stuckAt = stuckAt;
        const ListEnd end = walk(10);
        EXPECT_EQ(end.total, 20U);
        EXPECT_TRUE(end.cut);
        EXPECT_EQ(end.status, KT_ERR_FAILED) << "the rest is not known";
        EXPECT_EQ(completeResult(0), 0);
    }
    // Who shows what came of it fails all the same, but not the next command.
    const auto go = [](const _HD_RAID_STATUS&) { return true; };
    const ListEnd shown = walkList<_HD_RAID_STATUS, Cut::Shows>(KT_PD_GetHDRaidStatus, EVERYTHING, 10, go);
    EXPECT_EQ(shown.status, KT_OK);
    EXPECT_EQ(completeResult(0), 1);
    EXPECT_EQ(completeResult(0), 0);
    walkList<_HD_RAID_STATUS, Cut::Shows>(KT_PD_GetHDRaidStatus, EVERYTHING, 10, go);
    EXPECT_EQ(completeResult(7), 7);
    seam = {};
    addDisks(5);
    seam.overclaims = 60000;
    EXPECT_EQ(walk(8).total, 8U);
}

} // namespace
