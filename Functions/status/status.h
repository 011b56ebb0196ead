#pragma once

#include "Public/optionRows.h"

int doStatus(int argc, char** argv, _cmd_struct* row);

inline constexpr char status_sh[] = ":Get SMART return status of a PD.";
inline constexpr OptionRow statusRows[] = {
    {'o', "object", "<pd|hd>", Takes::Words, ONCE | REQUIRED,
     "Object whose status is displayed: physical disk (pd or hd)."},
    {'i', "id", "<PD id>", Takes::Disk, ONCE, "ID of the physical disk. Default: all physical disks."},
    HELP_ROW,
};
inline constexpr CommandWords statusWords = {.usage = "\nstatus -o <pd|hd> [-i <PD id>] [-h]\n",
                                             .rows = statusRows,
                                             .examples =
                                                 "status -o pd -i 3\n\n"
                                                 "Display whether physical disk 3 has exceeded a SMART threshold.\n"};
inline constexpr const char* status_help = helpOf<statusWords>;
inline constexpr const OptionSet& statusOptions = optionSet<statusWords>;

void hdStatus_printf(const _HD_SMART_STATUS* status);
