#include "Functions/wipe/wipe.h"

const char wipe_sh[] = ":Wipe out disk drive MDD data.";
const char wipe_help[] = "\n\n";
static const option wipe_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet wipeOptions = {"\1:h", wipe_long};

int doWipe(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
