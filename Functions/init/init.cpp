#include "Functions/init/init.h"

const char init_sh[] = ":Start, stop, pause or resume VD initialization.";
const char init_help[] = "\n\n";
static const option init_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet initOptions = {"\1:h", init_long};

int doInit(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
