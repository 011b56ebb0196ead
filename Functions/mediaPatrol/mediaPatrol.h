#pragma once

#include "Public/optionRows.h"

int doMP(int argc, char** argv, _cmd_struct* row);

inline constexpr char mp_sh[] = ":Start, stop, pause or resume media patrol for a physical disk.";
inline constexpr OptionRow mpRows[] = {
    {'a', "action", "<start|stop|pause|resume|restart>", Takes::Words, ONCE,
     "What to do. If -a is not specified, media patrol is started.\n"
     "A paused media patrol can be resumed, an aborted one restarted."},
    {'d', "pdid", "<PD id>", Takes::Disk, ONCE | REQUIRED,
     "ID of the physical disk: a spare drive, or a disk of a VD or an array."},
    HELP_ROW,
};
inline constexpr CommandWords mpWords = {.usage = "\n\nmp [-a <start|stop|pause|resume|restart>] -d <PD id> [-h]\n",
                                         .rows = mpRows,
                                         .examples = "mp -d 3\n\n"
                                                     "Start media patrol on physical disk 3.\n\n"
                                                     "mp -a stop -d 3\n\n"
                                                     "Stop media patrol on physical disk 3.\n"};
inline constexpr const char* mp_help = helpOf<mpWords>;
inline constexpr const OptionSet& mpOptions = optionSet<mpWords>;
