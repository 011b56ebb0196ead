#include "Functions/copyBack/copyBack.h"

const char copyback_sh[] = ":Pause or resume copy back on an array.";
const char copyback_help[] = "\n\n";
static const option copyback_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet copybackOptions = {"\1:h", copyback_long};

int doCopyBack(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
