#include "Functions/nvsram/nvsram.h"

const char nvsram_sh[] = ":Read/write nvsram contents for test.";
const char nvsram_help[] = "\n\n";
static const option nvsram_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet nvsramOptions = {"\1:h", nvsram_long};

int doNvsramRW(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
