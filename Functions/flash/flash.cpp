#include "Functions/flash/flash.h"

const char flash_sh[] = ":Update, backup or erase flash image and erase hba or pd page.";
const char flash_help[] = "\n\n";
static const option flash_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet flashOptions = {"\1:h", flash_long};

int doFlash(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
