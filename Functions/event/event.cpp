#include "Functions/event/event.h"

const char event_sh[] = ":Get the current events.";
const char event_help[] = "\n\n";
static const option event_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet eventOptions = {"\1:h", event_long};

int doEvent(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
