#pragma once

#include "Public/optionRows.h"

int doReport(int argc, char** argv, _cmd_struct* row);

inline constexpr char report_sh[] = ":report a conflicted virtual disk to OS.";
inline constexpr OptionRow reportRows[] = {
    {'i', "id", "<VD id>", Takes::Vd, ONCE, "ID of the conflicted virtual disk, decimal or hexadecimal (0x...)."},
    HELP_ROW,
};
inline constexpr CommandWords reportWords = {.usage = "\nreport -i <VD id> [-h]\n",
                                             .rows = reportRows,
                                             .examples = "report -i 2\n\n"
                                                         "Report virtual disk 2 to the operating system.\n"};
inline constexpr const char* report_help = helpOf<reportWords>;
inline constexpr const OptionSet& reportOptions = optionSet<reportWords>;
