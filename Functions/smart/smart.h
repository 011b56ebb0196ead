#pragma once

#include "Public/optionRows.h"

int doSmart(int argc, char** argv, _cmd_struct* row);

inline constexpr char smart_sh[] = ":Display the smart info of physical disk.";
inline constexpr OptionRow smartRows[] = {
    {'p', "phyId", "<PD id>", Takes::Disk, ONCE | REQUIRED, "ID of the physical disk."},
    HELP_ROW,
};
inline constexpr CommandWords smartWords = {.usage = "\nsmart -p <PD id> [-h]\n",
                                            .rows = smartRows,
                                            .examples = "smart -p 0\n\n"
                                                        "Display the SMART status and attributes of physical disk 0.\n",
                                            .helpStyle = HelpStyle::OwnLine};
inline constexpr const char* smart_help = helpOf<smartWords>;
inline constexpr const OptionSet& smartOptions = optionSet<smartWords>;
