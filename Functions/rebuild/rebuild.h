#pragma once

#include "Public/optionRows.h"

int doRebuild(int argc, char** argv, _cmd_struct* row);

inline constexpr char rebuild_sh[] = ":Start, stop, pause, resume or restart rebuilding VD.";
inline constexpr OptionRow rebuildRows[] = {
    {'a', "action", "<start|stop|pause|resume|restart>", Takes::Words, ONCE,
     "What to do. If -a is not specified, rebuilding is started.\n"
     "A paused rebuild can be resumed, an aborted one restarted."},
    {'l', "id", "<VD id>", Takes::Vd, ONCE | REQUIRED, "ID of the virtual disk."},
    {'d', "pdid", "<PD id>", Takes::Disk, ONCE, "ID of the free physical disk to rebuild on. Needed to start."},
    HELP_ROW,
};
inline constexpr CommandWords rebuildWords = {
    .usage = "\n\nrebuild [-a <start|stop|pause|resume|restart>] -l <VD id> [-d <PD id>] [-h]\n",
    .rows = rebuildRows,
    .examples = "rebuild -l 1 -d 4\n\n"
                "Rebuild virtual disk 1 on physical disk 4.\n\n"
                "rebuild -a pause -l 1\n\n"
                "Pause rebuilding virtual disk 1.\n"};
inline constexpr const char* rebuild_help = helpOf<rebuildWords>;
inline constexpr const OptionSet& rebuildOptions = optionSet<rebuildWords>;
