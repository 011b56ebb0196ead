#include "Functions/smart/smart.h"

const char smart_sh[] = ":Display the smart info of physical disk.";
const char smart_help[] = "\n\n";
static const option smart_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet smartOptions = {"\1:h", smart_long};

int doSmart(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
