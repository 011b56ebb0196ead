#include "Functions/status/status.h"

const char status_sh[] = ":Get SMART return status of a PD.";
const char status_help[] = "\n\n";
static const option status_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet statusOptions = {"\1:h", status_long};

int doStatus(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
