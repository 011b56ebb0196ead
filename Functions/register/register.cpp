#include "Functions/register/register.h"

const char register_sh[] = ":operation the register on adapter.";
const char register_help[] = "\n\n";
static const option register_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet registerOptions = {"\1:h", register_long};

int doRegister(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
