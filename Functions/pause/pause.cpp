#include "Functions/pause/pause.h"

const char pause_sh[] = ":Pause all background activities on specified controller.";
const char pause_help[] = "\n\n";
static const option pause_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet pauseOptions = {"\1:h", pause_long};

int doPause(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
