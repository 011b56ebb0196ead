#include "Functions/report/report.h"

#include "Public/errorMsg.h"
#include "Public/vdId.h"

const char report_sh[] = ":report a conflicted virtual disk to OS.";
const char report_help[] = "\nreport -i <VD id> [-h]\n\n"
                           "Options:\n"
                           "    -i, --id <VD id>\n"
                           "        ID of the conflicted virtual disk, decimal or hexadecimal (0x...).\n"
                           "    -h, --help\n\n"
                           "Examples:\n"
                           "    report -i 2\n\n"
                           "    Report virtual disk 2 to the operating system.\n\n";

const OptionSet reportOptions = {.letters = "\1:i:h", .longOptions = vdIdLongOptions, .once = "i"};

int doReport(int argc, char** argv, _cmd_struct* row) {
    int result = 0;
    KT_U16 vd = 0;
    if (!readVdId(argc, argv, row, reportOptions, vd, result)) return result;
    KT_U8 status = KT_LD_Report(gCurrentAdapter, vd);
    if (status != KT_OK) out("Failed to report VD (error %d: %s)\n", status, ErrorMessage(status));
    return status;
}
