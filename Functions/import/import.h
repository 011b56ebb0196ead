#pragma once

#include "Public/optionRows.h"

int doImport(int argc, char** argv, _cmd_struct* row);

inline constexpr char import_sh[] = ":Import a virtual disk.";
inline constexpr OptionRow importRows[] = {
    {'i', "id", "<VD id>", Takes::Vd, ONCE, "ID of the foreign virtual disk, decimal or hexadecimal (0x...)."},
    HELP_ROW,
};
inline constexpr CommandWords importWords = {.usage = "\nimport -i <VD id> [-h]\n",
                                             .rows = importRows,
                                             .examples = "import -i 2\n\n"
                                                         "Import virtual disk 2.\n"};
inline constexpr const char* import_help = helpOf<importWords>;
inline constexpr const OptionSet& importOptions = optionSet<importWords>;
