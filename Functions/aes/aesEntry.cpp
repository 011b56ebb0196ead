#include "Functions/aes/aesEntry.h"

const char aesentry_sh[] = "AES operations";
const char aesentry_help[] = "\n\n";
static const option aesentry_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet aesentryOptions = {"\1:h", aesentry_long};

int doAESEntry(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
