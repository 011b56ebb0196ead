#pragma once

#include "Public/optionRows.h"

int doDelete(int argc, char** argv, _cmd_struct* row);

inline constexpr char delete_sh[] = ":Delete virtual disk or spare drive.";
inline constexpr OptionRow deleteRows[] = {
    {'o', "object", "<vd|array|spare>", Takes::Words, ONCE | REQUIRED,
     "Object to delete: virtual disk (vd or ld), array or spare drive."},
    {'i', "id", "<id>", Takes::ObjectId, ONCE | REQUIRED, "ID of the object, 0 to 254."},
    {'f', "force", "", Takes::Nothing, ONCE, "Delete a VD that is having a background activity without asking again."},
    {OPT_WAIVE, "waiveconfirmation", "", Takes::Nothing, 0, "Ask nothing."},
    HELP_ROW,
};
inline constexpr CommandWords deleteWords = {
    .usage = "\n\ndelete -o <vd|array|spare> -i <id> [-f] [--waiveconfirmation] [-h]\n",
    .rows = deleteRows,
    .examples = "delete -o vd -i 4\n\n"
                "Delete virtual disk 4.\n"};
inline constexpr const char* delete_help = helpOf<deleteWords>;
inline constexpr const OptionSet& deleteOptions = optionSet<deleteWords>;
