// A library on a scratch state made from a lab, its clock stopped, for each test.
#pragma once

#include "../support/scratch.h"
#include "outside.h"

#include <cstring>
#include <gtest/gtest.h>

struct ContractTest : testing::Test {
    ScratchFolder folder;

    void SetUp() override;
    void TearDown() override { KT_API_Finalize(); }
};

// Starts over with the lab (as ktsim create takes it) and opens the library.
void start(const std::string& lab);
// Moves the stopped clock on, or lets it run, at `speed` thousandths of real time; KT_OK.
KT_U8 advance(uint64_t seconds);
KT_U8 runClock(uint32_t speed);
// Another process: everything that the library keeps in memory is gone; KT_OK.
KT_U8 reopen();
// The state as ktsim show prints it.
std::string show();

// A test that begins with a lab.
template <const char* LAB>
struct LabTest : ContractTest {
    void SetUp() override {
        ContractTest::SetUp();
        start(LAB);
    }
};

using Ids = std::vector<KT_U16>;
using Ints = std::vector<int>;
using Config = _Adapter_Config_V2;
static const uint64_t MINUTE = 60, HOUR = 60 * MINUTE, DAY = 24 * HOUR;

// Where a helper was called, which a failed expectation names.
struct Caller {
    const char* file;
    int line;
};

// Calls that, one after the other, all give the same answer; for succeed() it is KT_OK.
void answer(KT_U8 expected, std::initializer_list<KT_U8> calls, Caller at = {__builtin_FILE(), __builtin_LINE()});
void succeed(std::initializer_list<KT_U8> calls, Caller at = {__builtin_FILE(), __builtin_LINE()});

// "class/code:device(parameters)" of each event, oldest first, that was logged since the last call of it on that
// adapter; parameters from the first one on up to the last that is not zero.
std::string newEvents(KT_U8 adapter = 0);
// What calls that go well log.
#define LOG_OF(adapter, ...) (newEvents(adapter), succeed({__VA_ARGS__}), newEvents(adapter))

// What makes a virtual disk or an array of the level on the disks; of size 0: as large as possible.
_Create_LD_Param ldParam(KT_U8 level, const Ids& disks, KT_U64 kib = 0);
_CreateOrModify_DG_Param dgParam(KT_U8 level, const Ids& disks, KT_U64 megabytes = 0);

// Hands the bytes, page by page from page `first` on, to a call; the last one may end the file. The last call's answer.
using PageCall = std::function<KT_U8(_Flash_Data* page)>;
KT_U8 sendPages(const std::string& bytes, const PageCall& call, KT_U16 first = 0, bool ends = true);

// Starts a migration of a virtual disk or of an array.
KT_U8 migrateLd(KT_U8 adapter, KT_U16 id, KT_U8 level, const Ids& disks);
KT_U8 migrateDg(KT_U8 adapter, KT_U16 id, KT_U8 level, const Ids& disks);

// All records of a list call, read page by page of `page` records.
template <class Request, class Record>
std::vector<Record> readList(KT_U8 (*list)(KT_U8, Request*), KT_U8 adapter, Record (Request::*)[1], KT_U16 page = 3) {
    std::vector<Record> all;
    std::vector<unsigned char> buffer(sizeof(_RequestHeader) + page * sizeof(Record));
    KT_U16 from = 0;
    while (from != KT_LIST_END) {
        std::fill(buffer.begin(), buffer.end(), static_cast<unsigned char>(0));
        _RequestHeader header = {0, KT_REQUEST_LIST, from, page, 0, 0, {}};
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
// What a list call answers to a request for one id, and the record.
template <class Request>
KT_U8 askItem(KT_U8 (*list)(KT_U8, Request*), KT_U8 adapter, KT_U16 id, Request& request) {
    request.header = {0, KT_REQUEST_ITEM, id, 1, 0, 0, {}};
    return list(adapter, &request);
}

// What reads records by the adapter and their id.
template <class Request, class Record>
auto reader(KT_U8 (*list)(KT_U8, Request*), Record (Request::*records)[1]) {
    return [=](KT_U8 adapter, KT_U16 id) {
        Request request = {};
        EXPECT_EQ(askItem(list, adapter, id, request), KT_OK);
        return (request.*records)[0];
    };
}
inline const auto vdInfo = reader(KT_LD_GetInfo, &_LD_Info_Request::ldInfo);
inline const auto vdStatus = reader(KT_LD_GetStatus, &_LD_Status_Request::ldStatus);
inline const auto dgInfo = reader(KT_DG_GetInfo, &_DG_Info_Request::dgInfo);
inline const auto pdInfo = reader(KT_PD_GetHDInfo, &_HD_Info_Request::hdInfo);
inline const auto pdConfig = reader(KT_PD_GetConfig, &_HD_Config_Request::hdConfig);
inline const auto blockInfo = reader(KT_BLK_GetInfo, &_BLK_Info_Request::blkInfo);
KT_U8 roleOf(KT_U8 adapter, KT_U16 pd); // KT_PD_*
// A virtual disk at a glance, after calls that go well: its status, the disks in its slots ("-": none), and what goes
// on: "activity/state percent".
std::string look(KT_U8 adapter, KT_U16 vd, std::initializer_list<KT_U8> calls = {},
                 Caller at = {__builtin_FILE(), __builtin_LINE()});
_SMART_Attribute attribute(KT_U8 adapter, KT_U16 pd, KT_U8 id);
_Adapter_Info adapterInfo(KT_U8 adapter);
Config adapterConfig(KT_U8 adapter);
// Changes one setting of the adapter.
KT_U8 configure(KT_U8 adapter, KT_U8 Config::*setting, KT_U8 value);
// The text of a field that ends at a NUL or where it is full.
template <size_t SIZE>
std::string textOf(const KT_U8 (&field)[SIZE]) {
    return std::string(reinterpret_cast<const char*>(field), strnlen(reinterpret_cast<const char*>(field), SIZE));
}
