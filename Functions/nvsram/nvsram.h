#pragma once

#include "Public/optionRows.h"

// Prints `length` bytes that were read from `offset` on: eight a line, in groups of 64 with the offset above each.
void Nvsram_Byte_PrintInfo(const KT_U8* data, KT_U32 length, KT_U32 offset);

int doNvsramRW(int argc, char** argv, _cmd_struct* row);

inline constexpr char nvsram_sh[] = ":Read/write nvsram contents for test.";
inline constexpr OptionRow nvsramRows[] = {
    {'a', "action", "<read|write>", Takes::Words, ONCE | REQUIRED, "Read the bytes, or write the pattern over them."},
    {'s', "offset", "<nvsram address offset>", Takes::Text, ONCE,
     "Where to start, in decimal or in hexadecimal behind 0x. The default is\n"
     "0."},
    {'c', "count", "<byte count>", Takes::Text, ONCE, "Number of bytes. The default is 1, the maximum is 128k."},
    {'p', "pattern", "<pattern>", Takes::Text, ONCE, "Byte to write, in hexadecimal behind 0x. The default is 0x5A."},
    HELP_ROW,
};
inline constexpr CommandWords nvsramWords = {.usage = "\nnvsram   -a <read|write>[-s <nvsram address offset>]\n"
                                                      "         [-c <byte count>] [-p <pattern>] [-h] \n",
                                             .rows = nvsramRows,
                                             .examples = "nvsram -a read -s 0x100 -c 64\n\n"
                                                         "Read 64 bytes from offset 0x100 on.\n\n"
                                                         "nvsram -a write -s 0x100 -c 64 -p 0xFF\n\n"
                                                         "Write 0xFF to the 64 bytes from offset 0x100 on.\n"};
inline constexpr const char* nvsram_help = helpOf<nvsramWords>;
inline constexpr const OptionSet& nvsramOptions = optionSet<nvsramWords>;
