// Lists of a library that names an id twice, or things that are not there.
#include <gtest/gtest.h>

#include "Report/library.h"

namespace {
std::vector<KT_U16> told; // the ids of the list
KT_U8 answered = KT_OK;

KT_U8 tell(KT_U8, _HD_RAID_Status_Request* request) {
    for (size_t i = 0; i < told.size(); ++i)
        request->hdRaidStatus[i] = {told[i], 0, static_cast<KT_U8>(i + 1), {}};
    request->header.numReturned = static_cast<KT_U16>(told.size());
    request->header.nextStartingIndex = KT_LIST_END;
    return answered;
}
const auto idOf = [](const _HD_RAID_STATUS& record) { return record.HDID; };
const auto put = [](unsigned& item, const _HD_RAID_STATUS& record) { item = item * 16 + record.Status; };
} // namespace

TEST(ListOfRecords, TakesNoIdTwice) {
    using Items = std::optional<std::map<KT_U16, unsigned>>;
    const auto call = libraryCall("KT_PD_GetHDRaidStatus", tell);
    const struct {
        std::vector<KT_U16> first, more;
        KT_U8 status;
        Items items;
        std::vector<std::string> refused;
    } rows[] = {
        {{7, 8, 9}, {9, 5, 7}, KT_OK, {{{7, 0x13}, {8, 0x2}, {9, 0x31}}}, {}},
        {{7, 8, 7, 9},
         {8, 5, 5, 7},
         KT_OK,
         {{{7, 0x1}, {8, 0x21}}},
         {"KT_PD_GetHDRaidStatus: the list names an id twice"}},
        {{}, {}, KT_OK, Items(std::in_place), {}},
        {{7}, {7}, KT_ERR_FAILED, std::nullopt, {"KT_PD_GetHDRaidStatus: Failed"}},
    };
    for (const auto& row : rows) {
        Machine machine;
        AdapterReading adapter;
        Reader reader = {machine, adapter};
        Items items;
        answered = row.status;
        told = row.first;
        readItems<_HD_RAID_STATUS>(reader, call, items, idOf, put);
        told = row.more;
        if (items) readMore<_HD_RAID_STATUS>(reader, call, *items, idOf, put);
        EXPECT_EQ(items, row.items);
        std::vector<std::string> refused;
        for (const Refusal& refusal : machine.refusals)
            refused.push_back(refusal.call + ": " + refusal.text);
        EXPECT_EQ(refused, row.refused);
    }
}
