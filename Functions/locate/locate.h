#pragma once

#include "Public/optionRows.h"

int doLocate(int argc, char** argv, _cmd_struct* row);

inline constexpr char locate_sh[] = ":Locate the specified PD.";
inline constexpr OptionRow locateRows[] = {
    {'i', "id", "<PD id>", Takes::Disk, ONCE, "ID of the physical disk, decimal or hexadecimal (0x...)."},
    {'a', "action", "<on|off>", Takes::Words, ONCE, "Turn the disk's locate LED on or off. Default: on."},
    {'o', "object", "<pd>", Takes::Words, ONCE, "Object to locate; only physical disks have a locate LED."},
    HELP_ROW,
};
inline constexpr CommandWords locateWords = {.usage = "\nlocate -i <PD id> [-a <on|off>] [-h]\n",
                                             .rows = locateRows,
                                             .examples = "locate -i 3 -a on\n\n"
                                                         "Turn on the locate LED of physical disk 3.\n"};
inline constexpr const char* locate_help = helpOf<locateWords>;
inline constexpr const OptionSet& locateOptions = optionSet<locateWords>;
