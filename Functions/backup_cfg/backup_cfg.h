#pragma once

#include "Public/optionRows.h"

int doBackUp_CFG(int argc, char** argv, _cmd_struct* row);

inline constexpr char backup_cfg_sh[] = ":Backup current HBA,RAID configuration and autoload data.";
inline constexpr OptionRow backup_cfgRows[] = {
    {'i', "id", "<adapter id>", Takes::Adapter, REFUSED, "The adapter is always the current one."},
    {'f', "filename", "<filename>", Takes::File, ONCE,
     "File to create; double quotes around it may hold blanks. An existing\n"
     "file is never overwritten. Default: hbaN_cfg.txt, N being the ID of\n"
     "the adapter."},
    {'t', "type", "phy", Takes::Words, ONCE, "Back up the PHY tuning of the ports only."},
    HELP_ROW,
};
inline constexpr CommandWords backup_cfgWords = {.usage = "\n\nbackup_cfg [-f <filename>][-t ][-h]\n",
                                                 .rows = backup_cfgRows,
                                                 .examples =
                                                     "backup_cfg -f \"my adapter.txt\"\n\n"
                                                     "Save settings, ports, virtual disks and spares to a file.\n\n"
                                                     "backup_cfg -t phy\n\n"
                                                     "Save the PHY tuning of the ports.\n"};
inline constexpr const char* backup_cfg_help = helpOf<backup_cfgWords>;
inline constexpr const OptionSet& backupCfgOptions = optionSet<backup_cfgWords>;
