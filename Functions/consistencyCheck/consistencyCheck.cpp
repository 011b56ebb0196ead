#include "Functions/consistencyCheck/consistencyCheck.h"

const char cc_sh[] = ":Start, stop, pause or resume VD Consistency Check.";
const char cc_help[] = "\n\n";
static const option cc_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet ccOptions = {"\1:h", cc_long};

int doCC(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
