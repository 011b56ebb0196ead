#pragma once

#include "Public/optionRows.h"

// ktcfg check: says, reading only, what restoring a file would do. 0 when it can be restored, 1 when it cannot or that
// cannot be found out, 2 for words that are not understood.
int doCheck_CFG(int argc, char** argv, _cmd_struct* row);

inline constexpr char check_sh[] = ":Tell what restoring a text file would do, and whether it can be done.";
inline constexpr OptionRow checkRows[] = {
    {'f', "filename", "<filename>", Takes::File, ONCE | REQUIRED,
     "File to look at; double quotes around it may hold blanks."},
    {'t', "type", "phy", Takes::Words, ONCE, "The file holds the PHY tuning of the ports only."},
    {'r', "raid", "", Takes::Nothing, ONCE,
     "Also look at what restore_cfg --raid would delete and create, disk by\n"
     "disk, and at what stands in its way."},
    HELP_ROW,
};
inline constexpr CommandWords checkWords = {
    .usage = "\n\ncheck -f <filename> [--raid][-t phy][-h]\n\n"
             "Nothing is changed. The exit status is 0 when the file can be restored\n"
             "here, 1 when it cannot.\n",
    .rows = checkRows,
    .examples = "check -f hba0_cfg.txt --raid\n\n"
                "Tell what restore_cfg -f hba0_cfg.txt --raid would do.\n"};
inline constexpr const char* check_help = helpOf<checkWords>;
inline constexpr const OptionSet& checkOptions = optionSet<checkWords>;
