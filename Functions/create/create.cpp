#include "Functions/create/create.h"

const char create_sh[] = ":Create virtual disk.";
const char create_help[] = "\n\n";
static const option create_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet createOptions = {"\1:h", create_long};

int doCreate(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
