#include "Functions/rebuild/rebuild.h"

const char rebuild_sh[] = ":Start, stop, pause, resume or restart rebuilding VD.";
const char rebuild_help[] = "\n\n";
static const option rebuild_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet rebuildOptions = {"\1:h", rebuild_long};

int doRebuild(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
