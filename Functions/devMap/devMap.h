#pragma once

#include "Public/optionRows.h"

int doDevMap(int argc, char** argv, _cmd_struct* row);

inline constexpr char devmap_sh[] = ":Map device ID to device magic number in the OS.";
inline constexpr OptionRow devmapRows[] = {
    {'o', "object", "<vd|pd>", Takes::Words, ONCE | REQUIRED,
     "Device to map: virtual disk (vd) or physical disk (pd)."},
    {'i', "id", "<id>", Takes::ObjectId, ONCE,
     "ID of the device, decimal or hexadecimal (0x...). Default: all\n"
     "virtual disks or all free physical disks."},
    HELP_ROW,
};
inline constexpr CommandWords devmapWords = {.usage = "\ndevmap -o <vd|pd> [-i <id>] [-h]\n",
                                             .rows = devmapRows,
                                             .examples = "devmap -o vd -i 0\n\n"
                                                         "Display the magic number of virtual disk 0.\n"};
inline constexpr const char* devmap_help = helpOf<devmapWords>;
inline constexpr const OptionSet& devmapOptions = optionSet<devmapWords>;
