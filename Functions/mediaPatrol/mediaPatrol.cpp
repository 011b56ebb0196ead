#include "Functions/mediaPatrol/mediaPatrol.h"

const char mp_sh[] = ":Start, stop, pause or resume media patrol for a physical disk.";
const char mp_help[] = "\n\n";
static const option mp_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet mpOptions = {"\1:h", mp_long};

int doMP(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
