#include "Functions/devMap/devMap.h"

const char devmap_sh[] = ":Map device ID to device magic number in the OS.";
const char devmap_help[] = "\n\n";
static const option devmap_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet devmapOptions = {"\1:h", devmap_long};

int doDevMap(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
