#include "Functions/rebuild/rebuildV2.h"

const char rebuildV2_sh[] = ":Start, pause or resume rebuilding array.";
const char rebuildV2_help[] = "\n\n";
static const option rebuildV2_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet rebuildV2Options = {"\1:h", rebuildV2_long};

int doRebuildV2(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
