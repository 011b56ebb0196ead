#pragma once

#include "Public/optionRows.h"

int doRebuildV2(int argc, char** argv, _cmd_struct* row);

inline constexpr char rebuildV2_sh[] = ":Start, pause or resume rebuilding array.";
inline constexpr OptionRow rebuildV2Rows[] = {
    {'a', "action", "<start|stop|pause|resume|restart>", Takes::Words, ONCE,
     "What to do. If -a is not specified, rebuilding is started.\n"
     "A paused rebuild can be resumed, an aborted one restarted."},
    {'l', "id", "<array id>", Takes::Array, ONCE | REQUIRED, "ID of the array."},
    {'d', "pdid", "<PD id list>", Takes::Disks, ONCE,
     "IDs of the physical disks to rebuild on, separated by commas: free\n"
     "disks, or spare drives of this array. Needed to start."},
    HELP_ROW,
};
inline constexpr CommandWords rebuildV2Words = {.usage =
                                                    "\n\nrebuild [-a <start|stop|pause|resume|restart>] -l <array id>\n"
                                                    "        [-d <PD id list>] [-h]\n",
                                                .rows = rebuildV2Rows,
                                                .examples = "rebuild -l 0 -d 4\n\n"
                                                            "Rebuild array 0 on physical disk 4.\n\n"
                                                            "rebuild -a pause -l 0\n\n"
                                                            "Pause rebuilding array 0.\n"};
inline constexpr const char* rebuildV2_help = helpOf<rebuildV2Words>;
inline constexpr const OptionSet& rebuildV2Options = optionSet<rebuildV2Words>;
