#include "Functions/report/report.h"

const char report_sh[] = ":report a conflicted virtual disk to OS.";
const char report_help[] = "\n\n";
static const option report_long[] = {OUTPUT_OPTION, HELP_OPTION, END_OF_OPTIONS};
const OptionSet reportOptions = {"\1:h", report_long};

int doReport(int, char** argv, _cmd_struct*) {
    return notAvailable(argv[0]);
}
