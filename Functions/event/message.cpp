#include "Functions/event/message.h"

const char message_sh[] = ":Get the current events.";
const char message_help[] = "\n\n";
static const option message_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet messageOptions = {"\1:h", message_long};

int doMessage(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
