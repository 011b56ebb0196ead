#pragma once

#include "Public/optionRows.h"

int doWipe(int argc, char** argv, _cmd_struct* row);

inline constexpr char wipe_sh[] = ":Wipe out disk drive MDD data.";
inline constexpr OptionRow wipeRows[] = {
    {'d', "pdid", "<PDid>", Takes::Disk, ONCE | REQUIRED, "ID of the physical disk, 0 to 254."},
    {'f', "force", "", Takes::Nothing, 0, "force wipe out if VD exist on this PD"},
    HELP_ROW,
};
inline constexpr CommandWords wipeWords = {.usage = "\n\nwipe -d <PDid> [-f] [-h]\n",
                                           .rows = wipeRows,
                                           .examples = "wipe -d 3\n\n"
                                                       "Wipe out the MDD data of physical disk 3.\n"};
inline constexpr const char* wipe_help = helpOf<wipeWords>;
inline constexpr const OptionSet& wipeOptions = optionSet<wipeWords>;
