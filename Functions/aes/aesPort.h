#pragma once

#include "Public/optionRows.h"

int doAESPort(int argc, char** argv, _cmd_struct* row);

enum { OPT_AES_ON = OPT_FIRST_OWN, OPT_AES_OFF };

inline constexpr char aesport_sh[] = "AES operations";
inline constexpr OptionRow aesportRows[] = {
    {'o', "operation", "<getCfg|set|mount|dismount>", Takes::Words, ONCE | REQUIRED,
     "Show the configuration of ports, switch encryption on or off, link a\n"
     "port to an entry (mount) or release it (dismount)."},
    {'i', "portid", "<port id>", Takes::Text, ONCE, "ID of the port. Default with getCfg: all ports."},
    {'e', "entryid", "<entry id>", Takes::Text, ONCE, "ID of the AES entry. For mount."},
    {'p', "password", "<password>", Takes::Secret, ONCE, "Password of the entry, at most 32 characters. For mount."},
    {OPT_AES_ON, "aeson", ""},
    {OPT_AES_OFF, "aesoff", "", Takes::Nothing, 0, "Switch encryption on or off. For set."},
    HELP_ROW,
};
inline constexpr CommandWords aesportWords = {
    .usage = "\n\naesPort -o <getCfg|set|mount|dismount> [-e<entryid>] [-i id<portid>][-p <password>] [-h]\n",
    .settledUsage = true,
    .rows = aesportRows,
    .examples = "aesPort -o mount -i 1 -e 2 -p secret\n\n"
                "Link port 1 to entry 2.\n\n"
                "aesPort -o set -i 1 --aeson\n\n"
                "Switch encryption on for port 1.\n",
    .secrets = true};
inline constexpr const char* aesport_help = helpOf<aesportWords>;
inline constexpr const OptionSet& aesportOptions = optionSet<aesportWords>;
