// The get command: the settings of virtual disks, arrays, disks or the adapter, and the links of hybrid virtual disks.
#pragma once

#include "Public/optionRows.h"

int doGet(int argc, char** argv, _cmd_struct* row);

inline constexpr char get_sh[] = ":Get configuration information of VD, PD, Array, HBA or Driver.";
inline constexpr OptionRow getRows[] = {
    {'o', "object", "<vd|ld|array|pd|hd|hba|driver|link>", Takes::Words, ONCE | REQUIRED,
     "Object whose configuration is displayed: virtual disk (vd or ld),\n"
     "disk array, physical disk (pd or hd), adapter (hba), driver, or the\n"
     "ATA link of hybrid virtual disks (link)."},
    {'i', "id", "<id>", Takes::ObjectId, ONCE,
     "ID of the object. Default: all objects of the kind; for hba, the\n"
     "current adapter."},
    HELP_ROW,
};
inline constexpr CommandWords getWords = {.usage = "\nget -o <vd|ld|array|pd|hd|hba|driver|link> [-i <id>] [-h]\n",
                                          .rows = getRows,
                                          .examples = "get -o vd -i 0\n\n"
                                                      "Display the configuration of virtual disk 0.\n\n"
                                                      "get -o hba\n\n"
                                                      "Display the configuration of the current adapter.\n"};
inline constexpr const char* get_help = helpOf<getWords>;
inline constexpr const OptionSet& getOptions = optionSet<getWords>;
