#pragma once

#include "Public/optionRows.h"

int doRescan(int argc, char** argv, _cmd_struct* row);

inline constexpr char rescan_sh[] = ":Rescan the adapters";
inline constexpr OptionRow rescanRows[] = {
    {'a', "action", "<action>", Takes::Text, REQUIRED | UNNAMED},
    {'h', "help", "", Takes::Nothing, UNNAMED},
    {'f', "force", "", Takes::Nothing, UNNAMED},
};
inline constexpr CommandWords rescanWords = {.rows = rescanRows};
inline constexpr char rescan_help[] = "\nrescan [-a ][-h]\n\n"
                                      "Options:\n"
                                      "    -a, --action  scan/getcount\n"
                                      "    -h, --help\n\n"
                                      "Examples:\n"
                                      "    rescan -a scan\n"
                                      "    Rescan the adapters.\n"
                                      "    rescan -a getcount --force\n"
                                      "    Get the rescan count, force unlock API.\n\n";
inline constexpr const OptionSet& rescanOptions = optionSet<rescanWords>;
