#include "Functions/aes/forceOnline.h"

const char forceonline_sh[] = "Forceonline the physical disk";
const char forceonline_help[] = "\n\n";
static const option forceonline_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet forceonlineOptions = {"\1:h", forceonline_long};

int doForceOnline(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
