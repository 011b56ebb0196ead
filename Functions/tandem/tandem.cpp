#include "Functions/tandem/tandem.h"

const char tandem_sh[] = ":Tandemix Test Command.";
const char tandem_help[] = "\n\n";
static const option tandem_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet tandemOptions = {"\1:h", tandem_long};

int doTandem(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
