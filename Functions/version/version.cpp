#include "Functions/version/version.h"

const char version_sh[] = ":Get application version.";
const char version_help[] = "\nversion \n\nOptions: N/A\n\n";

static const LongOption version_long[] = {END_OF_OPTIONS};
const OptionSet versionOptions = {.letters = "", .longOptions = version_long};

int doVersion(int, char**, _cmd_struct*) {
    out("CLI Version: %s\nRaidAPI Version: %s\n", CLI_VERSION, LibraryVersion().text);
    return 0;
}
