#pragma once

#include "Public/optionRows.h"

int doForceOnline(int argc, char** argv, _cmd_struct* row);

inline constexpr char forceonline_sh[] = "Forceonline the physical disk";
inline constexpr OptionRow forceonlineRows[] = {
    {'i', "pdid", "<pd id>", Takes::Disk, ONCE | REQUIRED, "ID of the physical disk that was taken offline."},
    {'p', "", "<10|20|30|40|50|60|70|80|90|100>", Takes::Words, ONCE, "Percentage. Default: 100."},
    HELP_ROW,
};
inline constexpr CommandWords forceonlineWords = {.usage = "\n\nforceOnline -i <pd id> [-p <percentage>] [-h]\n",
                                                  .rows = forceonlineRows,
                                                  .examples = "forceOnline -i 3\n\n"
                                                              "Bring physical disk 3 back online.\n"};
inline constexpr const char* forceonline_help = helpOf<forceonlineWords>;
inline constexpr const OptionSet& forceonlineOptions = optionSet<forceonlineWords>;
