#include "Functions/set/set.h"

const char set_sh[] = ":Set configuration parameters of VD, PD, HBA or Driver.";
const char set_help[] = "\n\n";
static const LongOption set_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet setOptions = {"\1:h", set_long};

int doSet(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}

const char setV2_sh[] = ":Set configuration parameters of VD, PD, Array, HBA or BBU.";
const char setV2_help[] = "\n\n";
static const LongOption setV2_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet setV2Options = {"\1:h", setV2_long};

int doSetV2(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
