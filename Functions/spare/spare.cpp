#include "Functions/spare/spare.h"

const char spare_sh[] = ":Assign a disk as spare drive.";
const char spare_help[] = "\n\n";
static const option spare_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet spareOptions = {"\1:h", spare_long};

int doAssign(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
