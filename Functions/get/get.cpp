#include "Functions/get/get.h"

const char get_sh[] = ":Get configuration information of VD, PD, Array, HBA or Driver.";
const char get_help[] = "\n\n";
static const option get_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet getOptions = {"\1:h", get_long};

int doGet(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
