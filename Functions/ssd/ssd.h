// The ssd command: the health of solid-state disks and their self-tests.
#pragma once

#include "Public/optionRows.h"

int doSsdDiagnostic(int argc, char** argv, _cmd_struct* row);

inline constexpr char ssd_sh[] = ":Tolvane SSD Diagnostic functions.";
inline constexpr OptionRow ssdRows[] = {
    {'d', "pdid", "<PD id>", Takes::Disk, ONCE, "ID of the solid-state disk. Default: a table of all of them."},
    {'a', "action", "<health|start|stop|status>", Takes::Words, ONCE,
     "health: display what tells of the disk's life (default).\n"
     "start, stop: start or stop a self-test of the disk.\n"
     "status: display how its last self-test stands."},
    {'t', "test", "<short|long>", Takes::Words, ONCE,
     "Self-test to start: a few minutes, or the whole disk. Default: short."},
    HELP_ROW,
};
inline constexpr CommandWords ssdWords = {
    .usage = "\nssd [-d <PD id>] [-a <health|start|stop|status>] [-t <short|long>] [-h]\n",
    .rows = ssdRows,
    .examples = "ssd\n\n"
                "Display a table of all solid-state disks.\n\n"
                "ssd -d 11 -a start -t long\n\n"
                "Start a self-test of the whole disk 11.\n"};
inline constexpr const char* ssd_help = helpOf<ssdWords>;
inline constexpr const OptionSet& ssdOptions = optionSet<ssdWords>;
