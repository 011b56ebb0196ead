#include "Functions/enclosure/enclosure.h"

const char enc_sh[] = ":Get enclosure, enclosure element or enclosure config information.";
const char enc_help[] = "\n\n";
static const option enc_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet encOptions = {"\1:h", enc_long};

int doEnclosure(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
