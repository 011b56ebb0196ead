#pragma once

#include "Public/optionRows.h"

int doHelp(int argc, char** argv, _cmd_struct* row);
extern const char question_sh[]; // the row "?"

inline constexpr char help_sh[] = ":Get brief help for all commands or detail help for one command.";
inline constexpr OptionRow helpRows[] = {
    {'i', "internal", "", Takes::Nothing, ONCE, "List the commands for maintenance and test."},
    // Like every option that is none of its own, it prints this command's help.
    {'h', "", "", Takes::Nothing, REFUSED},
};
inline constexpr CommandWords helpWords = {.usage = "\nhelp [-i] [command ...]\n",
                                           .rows = helpRows,
                                           .examples = "help\n\n"
                                                       "List all commands.\n\n"
                                                       "help info create\n\n"
                                                       "Show the detail help of the commands info and create.\n",
                                           .helpOnUnknown = true};
inline constexpr const char* help_help = helpOf<helpWords>;
inline constexpr const OptionSet& helpOptions = optionSet<helpWords>;
