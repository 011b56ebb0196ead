#pragma once

#include "Public/optionRows.h"

int doAESEntry(int argc, char** argv, _cmd_struct* row);

inline constexpr char aesentry_sh[] = "AES operations";
inline constexpr OptionRow aesentryRows[] = {
    {'o', "operation", "<getInfo|getCfg|setCfg>", Takes::Words, ONCE | REQUIRED,
     "Show the entries with their ports, show the configuration of an entry or\n"
     "give an entry a key and a password."},
    {'i', "id", "<entry id>", Takes::Text, ONCE, "ID of the AES entry. Default with getInfo: all entries."},
    {'p', "password", "<password>", Takes::Secret, ONCE,
     "Password of the entry, at most 32 characters. For getCfg and setCfg."},
    {'k', "key", "<key>", Takes::Secret, ONCE, "Key of the entry, at most 32 characters. For setCfg."},
    HELP_ROW,
};
inline constexpr CommandWords aesentryWords = {
    .usage = "\n\naesEntry -o <getInfo|getCfg|setCfg>  [-i id<entryid>] [-p <password>] [-k <key>] [-h]\n",
    .settledUsage = true,
    .rows = aesentryRows,
    .examples = "aesEntry -o getInfo\n\n"
                "Show all entries and the ports linked to them.\n\n"
                "aesEntry -o setCfg -i 1 -p secret -k \"my key\"\n\n"
                "Put a key into entry 1, guarded by a password.\n",
    .secrets = true};
inline constexpr const char* aesentry_help = helpOf<aesentryWords>;
inline constexpr const OptionSet& aesentryOptions = optionSet<aesentryWords>;
