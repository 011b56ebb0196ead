#include "Functions/ssd/ssd.h"

const char ssd_sh[] = ":Tolvane SSD Diagnostic functions.";
const char ssd_help[] = "\n\n";
static const LongOption ssd_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet ssdOptions = {"\1:h", ssd_long};

int doSsdDiagnostic(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}

const char ssdop_sh[] = ":SSD Operations.";
const char ssdop_help[] = "\n\n";
static const LongOption ssdop_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet ssdopOptions = {"\1:h", ssdop_long};

int doSsdOp(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
