#pragma once

#include "Public/optionRows.h"

int doPause(int argc, char** argv, _cmd_struct* row);

inline constexpr char pause_sh[] = ":Pause all background activities on specified controller.";
inline constexpr OptionRow pauseRows[] = {
    {'c', "controller", "<adapter id>", Takes::Adapter, ONCE | REQUIRED,
     "ID of the adapter whose background activities are paused."},
    HELP_ROW,
};
inline constexpr CommandWords pauseWords = {.usage = "\n\npause -c <adapter id> [-h]\n",
                                            .rows = pauseRows,
                                            .examples = "pause -c 0\n\n"
                                                        "Pause all background activities on adapter 0.\n"};
inline constexpr const char* pause_help = helpOf<pauseWords>;
inline constexpr const OptionSet& pauseOptions = optionSet<pauseWords>;
