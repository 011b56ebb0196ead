#include "Functions/locate/locate.h"

const char locate_sh[] = ":Locate the specified PD.";
const char locate_help[] = "\n\n";
static const option locate_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet locateOptions = {"\1:h", locate_long};

int doLocate(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
