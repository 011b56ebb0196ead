#include "Functions/delete/delete.h"

const char delete_sh[] = ":Delete virtual disk or spare drive.";
const char delete_help[] = "\n\n";
static const option delete_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet deleteOptions = {"\1:h", delete_long};

int doDelete(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
