#pragma once

#include "Public/optionRows.h"

int doInit(int argc, char** argv, _cmd_struct* row);

inline constexpr char init_sh[] = ":Start, stop, pause or resume VD initialization.";
inline constexpr OptionRow initRows[] = {
    {'o', "object", "<vd>", Takes::Words, ONCE, "What is initialized: a virtual disk."},
    {'a', "action", "<start|stop|pause|resume|restart>", Takes::Words, ONCE,
     "What to do. If -a is not specified, the initialization is started.\n"
     "A paused initialization can be resumed, an aborted one restarted."},
    {'l', "id", "<VD id>", Takes::Vd, ONCE | REQUIRED, "ID of the virtual disk."},
    HELP_ROW,
    {'t', "", "<value>", Takes::Text, UNNAMED},
};
inline constexpr CommandWords initWords = {
    .usage = "\n\ninit [-o <vd>] [-a <start|stop|pause|resume|restart>] -l <VD id> [-h]\n",
    .rows = initRows,
    .examples = "init -l 2\n\n"
                "Start the initialization of virtual disk 2.\n\n"
                "init -a pause -l 2\n\n"
                "Pause the initialization of virtual disk 2.\n"};
inline constexpr const char* init_help = helpOf<initWords>;
inline constexpr const OptionSet& initOptions = optionSet<initWords>;
