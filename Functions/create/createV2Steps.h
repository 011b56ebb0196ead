// What the array-based create command was asked for, and its three ways to do it.
#pragma once

#include "Functions/create/createShared.h"
#include "Functions/create/createV2.h"

enum class CreateObject { VirtualDisk, Array, Auto };

inline constexpr int ANY_SLOT = 255;

struct CreateV2Options {
    OptionCounts given;
    CreateObject object = CreateObject::VirtualDisk;
    KT_U16 array = KT_NO_ID;
    int slot = ANY_SLOT;
    TypedName name = {};
    KT_U8 level = KT_RAID0;
    int parity = 0;
    PdList disks = {};
    KT_U16 stripe = 64; // KB
    KT_U8 cache = 0;
    KT_U64 size = 0; // MB; 0: all there is
    KT_U8 rounding = KT_ROUND_NONE;
    KT_U8 init = KT_INIT_QUICK;
    KT_BOOLEAN arrayCache = 1;
    KT_U8 autoType = 0;
};

// Each checks what concerns its object, creates it, says what came of it and returns the command's result.
int createArray(const char* command, CreateV2Options& o);
int createVdInArray(const char* command, CreateV2Options& o);
