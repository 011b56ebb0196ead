#pragma once

#include "Public/optionRows.h"

int doError(int argc, char** argv, _cmd_struct* row);

inline constexpr char error_sh[] = ":Translate error code to error description.";
inline constexpr OptionRow errorRows[] = {
    {'c', "controller", "<controller>", Takes::Text, ONCE | REQUIRED | UNNAMED},
    {'h', "", "", Takes::Nothing, UNNAMED},
};
inline constexpr CommandWords errorWords = {.rows = errorRows};
inline constexpr char error_help[] = "\nerror -c [error code] [-h]\n\n"
                                     "Options:\n"
                                     "    -c, --[error code]\n"
                                     "        Error code.\n"
                                     "    -h, --help\n\n"
                                     "Examples:\n"
                                     "    error -c 1\n\n"
                                     "    Show description of error code 1.\n\n";
inline constexpr const OptionSet& errorOptions = optionSet<errorWords>;
