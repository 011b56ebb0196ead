#include "Functions/aes/aesOp.h"

const char aesop_sh[] = "AES operations";
const char aesop_help[] = "\n\n";
static const option aesop_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet aesopOptions = {"\1:h", aesop_long};

int doAESOp(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
