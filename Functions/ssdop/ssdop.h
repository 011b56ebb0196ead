// The ssdop command: the microcode of solid-state disks.
#pragma once

#include "Public/optionRows.h"

int doSsdOp(int argc, char** argv, _cmd_struct* row);

inline constexpr char ssdop_sh[] = ":SSD Operations.";
inline constexpr OptionRow ssdopRows[] = {
    {'d', "pdid", "<PD id>", Takes::Disk, ONCE | REQUIRED, "ID of the solid-state disk."},
    {'a', "action", "<update|version>", Takes::Words, ONCE,
     "update: download the file's microcode to the disk (default).\n"
     "version: display the version of the microcode that the disk runs."},
    {'f', "file", "<file>", Takes::File, ONCE, "The microcode file. Required for update."},
    {'m', "mode", "<now|later>", Takes::Words, ONCE,
     "When the microcode takes effect: at once (default) or at the next power\n"
     "cycle of the disk."},
    {OPT_WAIVE, "waiveconfirmation", "", Takes::Nothing, 0, "Do not ask before the download begins."},
    HELP_ROW,
};
inline constexpr CommandWords ssdopWords = {
    .usage = "\nssdop -d <PD id> -f <file> [-m <now|later>] [--waiveconfirmation] [-h]\nssdop -d <PD id> -a version\n",
    .rows = ssdopRows,
    .examples = "ssdop -d 11 -f /tmp/microcode.bin -m later\n\n"
                "Download microcode to disk 11, for its next start.\n\n"
                "ssdop -d 11 -a version\n\n"
                "Display the version of the microcode of disk 11.\n"};
inline constexpr const char* ssdop_help = helpOf<ssdopWords>;
inline constexpr const OptionSet& ssdopOptions = optionSet<ssdopWords>;
