// A library on a scratch state made from a lab, its clock stopped, for each test.
#pragma once

#include "ktraid.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

struct ContractTest : testing::Test {
    std::string folder;

    void SetUp() override;
    void TearDown() override;
    // Starts over with the lab (as ktsim create takes it) and opens the library.
    void start(const char* lab) const;
    // Moves the stopped clock on.
    static void advance(uint64_t seconds);
    // Lets the clock run, at `speed` thousandths of real time.
    static void runClock(uint32_t speed);
    // Another process: everything that the library keeps in memory is gone.
    static void reopen();
    // The state as ktsim show prints it.
    std::string show() const;
};

// A test that begins with a lab.
template <const char* LAB>
struct LabTest : ContractTest {
    void SetUp() override {
        ContractTest::SetUp();
        start(LAB);
    }
};

using Ids = std::vector<KT_U16>;
using Events = std::vector<std::string>;

// What makes a virtual disk or an array of the level on the disks; of size 0: as large as possible.
_Create_LD_Param ldParam(KT_U8 level, const Ids& disks, KT_U64 kib = 0);
_CreateOrModify_DG_Param dgParam(KT_U8 level, const Ids& disks, KT_U64 megabytes = 0);

// "class/code of device", oldest first, of the events logged since the last call of it on that adapter.
Events newEvents(KT_U8 adapter = 0);

// Starts a migration of a virtual disk or of an array.
KT_U8 migrateLd(KT_U8 adapter, KT_U16 id, KT_U8 level, const Ids& disks);
KT_U8 migrateDg(KT_U8 adapter, KT_U16 id, KT_U8 level, const Ids& disks);

// Has the adapter rebuild only what somebody tells it to.
void rebuildByHand(KT_U8 adapter);

// All records of a list call, read page by page of `page` records.
template <class Request, class Record>
std::vector<Record> readList(KT_U8 (*list)(KT_U8, Request*), KT_U8 adapter, Record (Request::*)[1], KT_U16 page = 3) {
    std::vector<Record> all;
    std::vector<unsigned char> buffer(sizeof(_RequestHeader) + page * sizeof(Record));
    KT_U16 from = 0;
    while (from != KT_LIST_END) {
        std::fill(buffer.begin(), buffer.end(), static_cast<unsigned char>(0));
        _RequestHeader header = {};
        header.requestType = KT_REQUEST_LIST;
        header.startingIndexOrId = from;
        header.numRequested = page;
        memcpy(buffer.data(), &header, sizeof header);
        EXPECT_EQ(list(adapter, reinterpret_cast<Request*>(buffer.data())), KT_OK);
        memcpy(&header, buffer.data(), sizeof header);
        for (KT_U16 i = 0; i < header.numReturned; ++i) {
            Record record;
            memcpy(&record, buffer.data() + sizeof header + i * sizeof record, sizeof record);
            all.push_back(record);
        }
        from = header.nextStartingIndex;
    }
    return all;
}
// One record by its id, and the call's status.
template <class Request, class Record>
KT_U8 readItem(KT_U8 (*list)(KT_U8, Request*), KT_U8 adapter, KT_U16 id, Record (Request::*records)[1],
               Record& record) {
    Request request = {};
    request.header.requestType = KT_REQUEST_ITEM;
    request.header.startingIndexOrId = id;
    request.header.numRequested = 1;
    const KT_U8 status = list(adapter, &request);
    if (status == KT_OK) record = (request.*records)[0];
    return status;
}

// Records by their id.
_LD_Info vdInfo(KT_U8 adapter, KT_U16 id);
_DG_Info dgInfo(KT_U8 adapter, KT_U16 id);
_HD_CONFIG pdConfig(KT_U8 adapter, KT_U16 pd);
KT_U8 roleOf(KT_U8 adapter, KT_U16 pd); // KT_PD_*
_SMART_Attribute attribute(KT_U8 adapter, KT_U16 pd, KT_U8 id);
_Adapter_Info adapterInfo(KT_U8 adapter);
_Adapter_Config_V2 adapterConfig(KT_U8 adapter);
