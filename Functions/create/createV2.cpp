#include "Functions/create/createV2.h"

const char createV2_sh[] = ":Create virtual disk or array.";
const char createV2_help[] = "\n\n";
static const option createV2_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet createV2Options = {"\1:h", createV2_long};

int doCreateV2(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
