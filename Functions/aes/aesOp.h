#pragma once

#include "Public/optionRows.h"

int doAESOp(int argc, char** argv, _cmd_struct* row);

enum { OPT_MOUNT = OPT_FIRST_OWN, OPT_DISMOUNT };

inline constexpr char aesop_sh[] = "AES operations";
inline constexpr OptionRow aesopRows[] = {
    {'o', "option", "<changePwd|verifyKey>", Takes::Words, ONCE | REQUIRED,
     "Change the password of an entry or verify the key in it."},
    {'e', "entryid", "<entry id>", Takes::Text, ONCE | REQUIRED, "ID of the AES entry."},
    {'p', "password", "<password>", Takes::Secret, ONCE | REQUIRED,
     "Password of the entry, the new one with changePwd. At most 32\n"
     "characters."},
    {'w', "oldpassword", "<old password>", Takes::Secret, ONCE,
     "Password of the entry until now. Only with changePwd."},
    {'k', "", "<key>", Takes::Secret, ONCE, "Key to compare, at most 32 characters. Only with verifyKey."},
    {'i', "portid", "<port id>", Takes::Text, ONCE},
    {OPT_MOUNT, "aesmount", ""},
    {OPT_DISMOUNT, "aesdismount", "", Takes::Nothing, 0, "Accepted and not used by these operations."},
    HELP_ROW,
};
inline constexpr CommandWords aesopWords = {
    .usage = "\n\naesOp -o changePWD -e <entry id> -p <password> -w<old password> [-h]\n"
             "aesOp -o verifyKey -e <entry id> -p <password> -k <key>  [-h]\n",
    .rows = aesopRows,
    .examples = "aesOp -o changePwd -e 1 -p newsecret -w oldsecret\n\n"
                "Change the password of entry 1.\n\n"
                "aesOp -o verifyKey -e 1 -p secret -k \"my key\"\n\n"
                "Compare the key of entry 1.\n",
    .secrets = true};
inline constexpr const char* aesop_help = helpOf<aesopWords>;
inline constexpr const OptionSet& aesopOptions = optionSet<aesopWords>;
