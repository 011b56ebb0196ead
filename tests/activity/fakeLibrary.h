// One virtual disk, one array and a few disks in any state, and a log of what was asked of them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "Public/common.h"

struct FakeLibrary {
    _LD_Info ld = {};
    _LD_STATUS ldStatus = {};
    _DG_Info dg = {};
    std::map<KT_U16, _HD_RAID_STATUS> role; // a disk that is not in it is free
    _HD_BGA_STATUS pdActivity = {};
    KT_U64 pdSize = 1000;    // KiB, of every disk
    KT_U32 sectorSize = 512; // of every disk
    std::vector<_Block_Info> blocks;
    KT_U64 migratedSize = 0;
    _Create_LD_Param ldParam = {};         // of the last start of a migration
    _CreateOrModify_DG_Param dgParam = {}; // the same
    std::map<std::string, KT_U8> failing;  // a call's name, without KT_, and its status
    std::vector<std::string> calls;        // those that change something, with their numbers
    std::vector<std::string> reads;        // the others
};
extern FakeLibrary fake;

struct Outcome {
    int result;
    std::string text;
};

// Runs the handler on the words, e.g. "init -l 2"; a question is answered with `answers`.
Outcome run(CommandHandler handler, const std::string& line, const std::string& answers = "");

// Starts over: a RAID5 virtual disk on the disks 1, 2 and 3 (blocks 11, 12, 13) and an array of the same, all idle, on
// an adapter that can do everything.
void resetFake();
