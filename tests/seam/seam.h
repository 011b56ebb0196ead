// A library made of recordings: every call notes its name and what it was handed, and answers the status set for it.
#pragma once

#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Public/common.h"
#include "tests/support/rows.h"

using Calls = std::vector<std::string>;

struct Seam {
    Calls calls;                             // "KT_AES_ClearLink 3", in order, without those of the start
    std::map<std::string, KT_U8> statuses;   // by name, or by the first words of one of `calls`; KT_OK when absent
    std::map<std::string, std::string> sent; // the bytes of the last records handed to a call, by its name
    std::set<std::string> withoutRecord;     // item calls, by either name, that succeed and bring no record
    // What the library answers.
    _aes_entry_info aesOverview = {};
    std::vector<_LD_Info> lds;
    std::vector<_LD_STATUS> ldStatuses;
    std::vector<_HD_RAID_STATUS> disks;
    std::vector<_HD_BGA_STATUS> hdActivities;
    std::vector<_HD_CONFIG> hdConfigs;
    std::vector<_LD_Config> ldConfigs;
    KT_U64 freeSpace = 1000; // KiB, of every disk
    std::vector<_Block_Info> blocks;
    std::vector<_Event> events;
    std::vector<_Event_Message> messages;
    KT_U16 overclaims = 0;       // what a list says to bring more than it does
    int stuckAt = -1;            // the index that goes on from every page of a list but the first
    KT_U8 claimed = 0;           // how many events there are said to be; 0: as many as there are
    std::string flash;           // the image that a backup reads and an update writes
    void (*flashed)() = nullptr; // what happens when a page has been written
    KT_U32 flashClaims = 0;      // what a page that is read says of its size; 0: the truth
    bool flashEndless = false;   // no page that is read is the last
    _Adapter_Config_V2 adapterConfig = {};
    std::vector<_DG_Info> arrays;
    std::vector<_HD_Info> hds;            // known by Link.Self.DevID
    std::set<KT_U16> disksWithFileSystem; // by id
    _BBU_Info battery = {};
    _SMART_Info smart = {};
    KT_U8 driveStatus = 0;
    std::string version = "recorded";
    KT_U64 size = 0; // what sizes are answered
};
extern Seam seam;

// Each test begins with a library that knows nothing and an adapter that can do nothing.
struct SeamTest : testing::Test {
    SeamTest() {
        seam = {};
        gCurrentAdapter = 0;
        gAdapterInfo[0] = {};
        arrayBasedRaid = false;
    }
    ~SeamTest() override {
        gAdapterInfo[0] = {};
        arrayBasedRaid = false;
    }
};

// Adds free disks, with ids from 0 on.
inline void addDisks(KT_U16 count, KT_U8 type = 0) {
    for (KT_U16 id = 0; id < count; ++id) {
        seam.disks.push_back({id, KT_NO_ID, 0, {}});
        seam.hds.push_back({});
        seam.hds.back().Link.Self.DevID = id;
        seam.hds.back().BlockSize = 512;
        seam.hds.back().HDType = type;
    }
}

struct Outcome {
    std::string line;
    int result;
    std::string printed;
    std::string words; // the bytes left in the words behind the command word
};

// Runs the command of a line, as the set that arrayBasedRaid stands for knows it, or else the other one. The line is
// split as the shell splits it; questions are answered with the text.
Outcome run(const std::string& line, const std::string& answers = "");
inline std::string printed(const std::string& line, const std::string& answers = "") {
    return run(line, answers).printed;
}

// What a run printed, and its result.
void expect(const Outcome& outcome, const std::string& printed, int result = 0, const char* file = __builtin_FILE(),
            int line = __builtin_LINE());
inline void expect(const std::string& words, const std::string& printed, int result = 0,
                   const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
    expect(run(words), printed, result, file, line);
}

inline bool has(const std::string& text, const std::string& part) {
    return text.find(part) != text.npos;
}

inline Calls allCalls() {
    return seam.calls;
}
// Runs the lines, which fail with 1 where no result stands there, and make no unwanted calls.
void expectRows(Calls (*unwanted)(), const std::string& table);
inline void expectRows(const std::string& table) {
    expectRows(allCalls, table);
}

// Runs the lines, which end with 0 where no result stands there. Behind " ! " stands what calls answer, as CALL=STATUS
// with commas between them, behind " < " the answers to questions, with commas, too, and behind " | " in the message
// all calls, with semicolons. $NAME stands for a text.
void expectSteps(const std::map<std::string, std::string>& texts, const std::string& table);
inline void expectSteps(const std::string& table) {
    expectSteps({}, table);
}

// A record's bytes, for comparison with what was sent.
template <class Record>
std::string bytesOf(const Record& record) {
    return {reinterpret_cast<const char*>(&record), sizeof record};
}

// Notes a call, and answers the status set for it, or for it without its last words.
KT_U8 answer(const std::string& call);
