#pragma once

#include "Public/optionRows.h"

int doCopyBack(int argc, char** argv, _cmd_struct* row);

inline constexpr char copyback_sh[] = ":Pause or resume copy back on an array.";
inline constexpr OptionRow copybackRows[] = {
    {'a', "action", "<pause|resume>", Takes::Words, ONCE,
     "What to do. Copy back starts by itself when a failed disk is replaced."},
    {'l', "id", "<array id>", Takes::Array, ONCE | REQUIRED, "ID of the array."},
    HELP_ROW,
    {'d', "", "<value>", Takes::Text, UNNAMED},
};
inline constexpr CommandWords copybackWords = {.usage = "\n\ncopyback -a <pause|resume> -l <array id> [-h]\n",
                                               .rows = copybackRows,
                                               .examples = "copyback -a pause -l 0\n\n"
                                                           "Pause copy back on array 0.\n"};
inline constexpr const char* copyback_help = helpOf<copybackWords>;
inline constexpr const OptionSet& copybackOptions = optionSet<copybackWords>;
