#pragma once

#include "Public/optionRows.h"

int doRestore_CFG(int argc, char** argv, _cmd_struct* row);

inline constexpr char restore_cfg_sh[] = ":Restore HBA,RAID and AutoLoad configuration from a text file.";
inline constexpr OptionRow restore_cfgRows[] = {
    {'i', "id", "<adapter id>", Takes::Adapter, REFUSED, "The adapter is always the current one."},
    {'f', "filename", "<filename>", Takes::File, ONCE,
     "File to read; double quotes around it may hold blanks. Default:\n"
     "4740.txt or 4730.txt, after the kind of the adapter."},
    {'t', "type", "phy", Takes::Words, 0, "The file holds the PHY tuning of the ports only."},
    {'a', "autoset", "", Takes::Nothing, LONG,
     "Give each port a new SAS address and the adapter a new serial number,\n"
     "taken from setcfg.txt or setcfg4.txt."},
    {'r', "raid", "", Takes::Nothing, LONG, "Delete all virtual disks and spares and create those of the file."},
    // The short forms of --autoset and --raid take an argument, which says nothing.
    {'a', "", "<any>", Takes::Text, ONCE | UNNAMED},
    {'r', "", "<any>", Takes::Text, ONCE | UNNAMED},
    HELP_ROW,
};
inline constexpr CommandWords restore_cfgWords = {
    .usage = "\n\nrestore_cfg [-f <filename>][-t<phy>][--autoset][--raid][-h]\n",
    .rows = restore_cfgRows,
    .examples = "restore_cfg -f \"my adapter.txt\"\n\n"
                "Restore the settings and ports from a file.\n\n"
                "restore_cfg -f hba0_cfg.txt --raid\n\n"
                "Restore the virtual disks and spares as well.\n"};
inline constexpr const char* restore_cfg_help = helpOf<restore_cfgWords>;
inline constexpr const OptionSet& restoreCfgOptions = optionSet<restore_cfgWords>;
