#include "Functions/import/import.h"

const char import_sh[] = ":Import a virtual disk.";
const char import_help[] = "\n\n";
static const option import_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet importOptions = {"\1:h", import_long};

int doImport(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
