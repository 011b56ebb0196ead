#pragma once

#include "Public/optionRows.h"

int doAdapter(int argc, char** argv, _cmd_struct* row);

inline constexpr char adapter_sh[] = ":Default adapter the following CLI commands refers to.";
inline constexpr OptionRow adapterRows[] = {
    {'i', "id", "<adapter ID>", Takes::Adapter, ONCE,
     "ID of the adapter to be selected. \n"
     "If -i is not specified, display current adapter ID"},
    HELP_ROW,
};
inline constexpr CommandWords adapterWords = {
    .usage = "\n\nadapter -i <adapter ID>\n",
    .rows = adapterRows,
    .examples = "adapter  -i 1\n\n"
                "Select adapter 1 to be the default adapter for the following CLI commands.\n"};
inline constexpr const char* adapter_help = helpOf<adapterWords>;
inline constexpr const OptionSet& adapterOptions = optionSet<adapterWords>;
