#pragma once

#include "Public/options.h"

// Prints `length` bytes that were read from `offset` on: eight a line, in groups of 64 with the offset above each.
void Nvsram_Byte_PrintInfo(const KT_U8* data, KT_U32 length, KT_U32 offset);

int doNvsramRW(int argc, char** argv, _cmd_struct* row);
extern const char nvsram_sh[];
extern const char nvsram_help[];
extern const OptionSet nvsramOptions;
