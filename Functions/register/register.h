#pragma once

#include "Public/optionRows.h"

int doRegister(int argc, char** argv, _cmd_struct* row);

inline constexpr char register_sh[] = ":operation the register on adapter.";
inline constexpr OptionRow registerRows[] = {
    {'t', "type", "<mailbox>", Takes::Words, ONCE, "Type of the register. The default is mailbox, the only type."},
    {'a', "operation", "<read|write>", Takes::Words, ONCE, "Read or write the register. The default is read."},
    {'d', "address", "<address>", Takes::Text, ONCE,
     "Number of the register, 0 or 1, in decimal or in hexadecimal behind 0x.\n"
     "The default is 0."},
    {'v', "value", "<value>", Takes::Text, ONCE,
     "Value to write, in decimal or in hexadecimal behind 0x. Required for\n"
     "write."},
    HELP_ROW,
};
inline constexpr CommandWords registerWords = {
    .usage = "\nregister [-t type] -a <read|write> [-d address] [-v value] [-h]\n",
    .rows = registerRows,
    .examples = "register -a read -d 1\n\n"
                "Read mailbox register 1.\n\n"
                "register -a write -d 0 -v 0xff\n\n"
                "Write 255 to mailbox register 0.\n"};
inline constexpr const char* register_help = helpOf<registerWords>;
inline constexpr const OptionSet& registerOptions = optionSet<registerWords>;
