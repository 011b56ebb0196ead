#pragma once

#include "Public/optionRows.h"

int doGetMaxsize(int argc, char** argv, _cmd_struct* row);

inline constexpr char getmaxsize_sh[] = ":Get maxsize that vd can create with.";
inline constexpr OptionRow getmaxsizeRows[] = {
    {'r', "raidmode", "<0|1|10|1E|5|50|6|60>", Takes::Words, ONCE | REQUIRED, "RAID level."},
    {'q', "paritydisks", "<# parity disks>", Takes::Text, ONCE,
     "Number of parity disks; RAID6 and RAID60 only. Default: 2 and 4."},
    {'d', "pdid", "<PD id list>", Takes::Disks, ONCE | REQUIRED,
     "IDs of the physical disks to use, separated by commas."},
    {'g', "gbrounding", "<0|1|10>", Takes::Words, 0,
     "Round the size down to a multiple of 1 or 10 GB. Default: 0, no\n"
     "rounding."},
    HELP_ROW,
    {'n', "", "<value>", Takes::Text, UNNAMED},
    {'b', "", "<value>", Takes::Text, UNNAMED},
    {'s', "", "<value>", Takes::Text, UNNAMED},
    {'w', "", "<value>", Takes::Text, UNNAMED},
    {'p', "", "<value>", Takes::Text, UNNAMED},
    {'i', "", "<value>", Takes::Text, UNNAMED},
};
inline constexpr CommandWords getmaxsizeWords = {
    .usage = "\n\nmaxcreatesize -r <0|1|10|1E|5|50|6|60> [-q <# parity disks>] -d <PD id list>\n"
             "              [-g <0|1|10>] [-h]\n",
    .rows = getmaxsizeRows,
    .examples = "maxcreatesize  -r0 -d 0,5,10\n\n"
                "Display the largest size of a RAID0 virtual disk on physical disks 0, 5 and\n"
                "10.\n",
    .helpStyle = HelpStyle::LongOnly,
    .helpOnUnknown = true};
inline constexpr const char* getmaxsize_help = helpOf<getmaxsizeWords>;
inline constexpr const OptionSet& getmaxsizeOptions = optionSet<getmaxsizeWords>;
