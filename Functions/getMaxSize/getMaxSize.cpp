#include "Functions/getMaxSize/getMaxSize.h"

const char getmaxsize_sh[] = ":Get maxsize that vd can create with.";
const char getmaxsize_help[] = "\n\n";
static const option getmaxsize_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet getmaxsizeOptions = {"\1:h", getmaxsize_long};

int doGetMaxsize(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
