#pragma once

#include "Public/optionRows.h"

int doCC(int argc, char** argv, _cmd_struct* row);

inline constexpr char cc_sh[] = ":Start, stop, pause or resume VD Consistency Check.";
inline constexpr OptionRow ccRows[] = {
    {'o', "object", "<vd>", Takes::Words, ONCE, "What is checked: a virtual disk."},
    {'a', "action", "<start|stop|pause|resume|restart>", Takes::Words, ONCE,
     "What to do. If -a is not specified, the check is started.\n"
     "A paused check can be resumed, an aborted one restarted."},
    {'l', "id", "<VD id>", Takes::Vd, ONCE | REQUIRED, "ID of the virtual disk."},
    {'t', "type", "<sync|check>", Takes::Words, ONCE,
     "sync  - repair what is found to be inconsistent (the default).\n"
     "check - only look."},
    HELP_ROW,
};
inline constexpr CommandWords ccWords = {.usage = "\n\ncc [-o <vd>] [-a <start|stop|pause|resume|restart>] -l <VD id>\n"
                                                  "   [-t <sync|check>] [-h]\n",
                                         .rows = ccRows,
                                         .examples =
                                             "cc -l 0 -t check\n\n"
                                             "Start a consistency check of virtual disk 0 that repairs nothing.\n\n"
                                             "cc -a stop -l 0\n\n"
                                             "Stop the consistency check of virtual disk 0.\n"};
inline constexpr const char* cc_help = helpOf<ccWords>;
inline constexpr const OptionSet& ccOptions = optionSet<ccWords>;
