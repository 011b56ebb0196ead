// The walk over the library's lists: page sizes, single items, and libraries that misbehave.
#include <gtest/gtest.h>
#include <vector>

#include "Public/listing.h"

namespace {

// A library with `available` records. Each kind of misbehaviour replaces one of its answers.
struct FakeList {
    unsigned available = 0;
    unsigned overclaim = 0; // added to numReturned
    int stuckAt = -1;       // next index answered from the second page on
    unsigned failAt = 0;    // the call that fails, from 1
    std::vector<_RequestHeader> calls = {};
};
FakeList fake;

KT_U8 readFake(KT_U8, _HD_RAID_Status_Request* request) {
    _RequestHeader& header = request->header;
    fake.calls.push_back(header);
    if (fake.calls.size() == fake.failAt) return KT_ERR_OUT_OF_RANGE;
    unsigned start = header.startingIndexOrId;
    unsigned left = start < fake.available ? fake.available - start : 0;
    unsigned count =
        header.requestType == KT_REQUEST_ITEM ? (left > 0 ? 1 : 0) : std::min<unsigned>(left, header.numRequested);
    for (unsigned i = 0; i < count; ++i) {
        EXPECT_EQ(request->hdRaidStatus[i].HDID, 0) << "records are not zeroed before the call";
        request->hdRaidStatus[i].HDID = static_cast<KT_U16>(start + i);
    }
    header.numReturned = static_cast<KT_U16>(count + fake.overclaim);
    bool more = header.requestType == KT_REQUEST_LIST && start + count < fake.available;
    header.nextStartingIndex = more ? static_cast<KT_U16>(start + count) : KT_U16{KT_LIST_END};
    if (fake.stuckAt >= 0 && fake.calls.size() > 1) header.nextStartingIndex = static_cast<KT_U16>(fake.stuckAt);
    return KT_OK;
}

std::vector<int> seen;
ListEnd walk(ListRange range, KT_U16 perPage, size_t stopAfter = SIZE_MAX) {
    seen.clear();
    return walkList<_HD_RAID_STATUS>(readFake, range, perPage, [&](const _HD_RAID_STATUS& record) {
        seen.push_back(record.HDID);
        return seen.size() < stopAfter;
    });
}

class Listing : public ::testing::Test {
  protected:
    void SetUp() override { fake = {}; }
    void TearDown() override { gAdapterInfo[0] = {}; }
};

TEST_F(Listing, PageSizeFollowsTheAdapter) {
    gCurrentAdapter = 0;
    EXPECT_EQ(recordsPerPage(312), 32);
    EXPECT_EQ(recordsPerPage(32, 512), 512);
    gAdapterInfo[0].MaxBufferSize = 64;
    EXPECT_EQ(recordsPerPage(312), 210);
    gAdapterInfo[0].MaxBufferSize = 65535;
    EXPECT_EQ(recordsPerPage(8), 65535);
}

TEST_F(Listing, ReadsEveryPageOnce) {
    fake.available = 70;
    ListEnd end = walk(EVERYTHING, 32);
    EXPECT_EQ(end.status, KT_OK);
    EXPECT_EQ(end.total, 70U);
    EXPECT_EQ(seen.back(), 69);
    ASSERT_EQ(fake.calls.size(), 3U);
    EXPECT_EQ(fake.calls[2].startingIndexOrId, 64);
    EXPECT_EQ(fake.calls[2].numRequested, 32);
    EXPECT_EQ(fake.calls[2].numReturned, 0);
    EXPECT_EQ(fake.calls[2].nextStartingIndex, 0);
}

TEST_F(Listing, EndsWhateverTheLibraryAnswers) {
    for (int stuckAt : {0, 10}) {
        fake = {.available = 100, .stuckAt = stuckAt};
        const ListEnd end = walk(EVERYTHING, 10);
        EXPECT_EQ(end.total, 20U);
        EXPECT_TRUE(end.cut);
        EXPECT_EQ(end.status, KT_ERR_FAILED) << "the rest is not known";
        EXPECT_EQ(completeResult(0), 0);
    }
    // Who shows what came of it fails all the same, but not the next command.
    fake.calls.clear();
    const auto go = [](const _HD_RAID_STATUS&) { return true; };
    EXPECT_EQ((walkList<_HD_RAID_STATUS, Cut::Shows>(readFake, EVERYTHING, 10, go).status), KT_OK);
    EXPECT_EQ(completeResult(0), 1);
    EXPECT_EQ(completeResult(0), 0);
    fake = {.available = 5, .overclaim = 60000};
    EXPECT_EQ(walk(EVERYTHING, 8).total, 8U);
    fake = {.available = 100, .failAt = 2};
    const ListEnd failed = walk(EVERYTHING, 10);
    EXPECT_EQ(failed.status, KT_ERR_OUT_OF_RANGE);
    EXPECT_EQ(failed.total, 10U);
    EXPECT_FALSE(failed.stopped);
    fake = {.available = 100};
    EXPECT_TRUE(walk(EVERYTHING, 10, 13).stopped);
    EXPECT_EQ(seen.size(), 13U);
    EXPECT_EQ(fake.calls.size(), 2U);
}

} // namespace
