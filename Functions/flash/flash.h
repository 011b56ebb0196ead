#pragma once

#include "Public/optionRows.h"

int doFlash(int argc, char** argv, _cmd_struct* row);

inline constexpr char flash_sh[] = ":Update, backup or erase flash image and erase hba or pd page.";
inline constexpr OptionRow flashRows[] = {
    {'a', "action", "<update|backup|erase|version>", Takes::Words, ONCE | REQUIRED,
     "update: write the image file to the flash.\n"
     "backup: read the image from the flash into a new file.\n"
     "erase: erase the image, or the PD page with -p.\n"
     "version: show the version of the image file."},
    {'f', "file", "<file>", Takes::File, ONCE, "The image file. Not needed for erase."},
    {'i', "", "<adapter id>", Takes::Adapter, ONCE, "ID of the adapter. The default is the current adapter."},
    {'t', "type", "<bios|firmware|autoload|bin|raw>", Takes::Words, ONCE, "Type of the image."},
    {'p', "page", "<pd|pdforce>", Takes::Words, ONCE,
     "pd: erase the PD page but keep the PD IDs in use.\n"
     "pdforce: erase the whole PD page even if PD IDs are in use."},
    HELP_ROW,
};
inline constexpr CommandWords flashWords = {.usage = "\nflash -a <update|backup|erase|version> -f <file> -t "
                                                     "<bios|firmware|autoload|bin|raw> -p <pd|pdforce> [-h]. \n",
                                            .settledUsage = true,
                                            .rows = flashRows,
                                            .examples = "flash -a update -f /tmp/image.bin -t bios\n\n"
                                                        "Update the BIOS image of the current adapter.\n\n"
                                                        "flash -a backup -f /tmp/backup.bin -t firmware\n\n"
                                                        "Back up the firmware image to a new file.\n\n"
                                                        "flash -a erase -p pd\n\n"
                                                        "Erase the PD page.\n"};
inline constexpr const char* flash_help = helpOf<flashWords>;
inline constexpr const OptionSet& flashOptions = optionSet<flashWords>;
