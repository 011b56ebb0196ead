#pragma once

#include "Public/optionRows.h"

int doAssign(int argc, char** argv, _cmd_struct* row);

inline constexpr char spare_sh[] = ":Assign a disk as spare drive.";
inline constexpr OptionRow spareRows[] = {
    {'o', "object", "<hba|array>", Takes::Words, ONCE,
     "Assign a global spare of the adapter (default) or a dedicated spare of\n"
     "one array."},
    {'d', "pdid", "<PD id>", Takes::Disk, ONCE | REQUIRED, "ID of the physical disk."},
    {'a', "arrayid", "<array id>", Takes::Array, ONCE, "ID of the array. Dedicated spare only."},
    {OPT_WAIVE, "waiveconfirmation", "", Takes::Nothing, 0, "Do not ask when the disk has a file system on it."},
    HELP_ROW,
};
inline constexpr CommandWords spareWords = {
    .usage = "\n\nassign -o <hba|array> -d <PD id> [-a <array id>] [--waiveconfirmation] [-h]\n",
    .rows = spareRows,
    .examples = "assign -d 1\n\n"
                "Assign physical disk 1 as a global spare.\n\n"
                "assign -o array -d 2 -a 4\n\n"
                "Assign physical disk 2 as a dedicated spare of array 4.\n"};
inline constexpr const char* spare_help = helpOf<spareWords>;
inline constexpr const OptionSet& spareOptions = optionSet<spareWords>;
