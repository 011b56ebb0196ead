#include "Functions/aes/aesPort.h"

const char aesport_sh[] = "AES operations";
const char aesport_help[] = "\n\n";
static const option aesport_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet aesportOptions = {"\1:h", aesport_long};

int doAESPort(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
