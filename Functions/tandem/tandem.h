#pragma once

#include "Public/optionRows.h"

int doTandem(int argc, char** argv, _cmd_struct* row);

inline constexpr char tandem_sh[] = ":Tandemix Test Command.";
inline constexpr OptionRow tandemRows[] = {
    // It may be repeated.
    {'o', "object", "<empty|count|delete>", Takes::Words, REQUIRED | UNNAMED},
    {'d', "Tandemix", "<VD id>", Takes::Vd, ONCE | REQUIRED | UNNAMED},
    {'a', "adress", "<address>", Takes::Text, ONCE | UNNAMED},
    {'l', "", "<length>", Takes::Text, ONCE | UNNAMED},
    // The long form takes no value, so a length can only be given as -l.
    {'l', "length", "", Takes::Nothing, LONG | UNNAMED},
    {'h', "", "", Takes::Nothing, UNNAMED},
};
inline constexpr CommandWords tandemWords = {.rows = tandemRows, .oneMissing = true};
inline constexpr char tandem_help[] = "\ntandem -o empty -a address -l length -d vdid[-h]\n\n"
                                      "tandem -o count -d vdid[-h]\n\n"
                                      "tandem -o delete -d vdid[-h]\n\n\n"
                                      "Options:\n"
                                      "    -o, --object <empty|count|delete|system>\n"
                                      "        empty: add empty entry.\n"
                                      "        count: get entries table free information.\n"
                                      "        delete: delete entries table.\n"
                                      "    -a, entry start lba\n"
                                      "    -l, entry length\n"
                                      "    -h, --help\n\n"
                                      "Examples:\n"
                                      "    tandem -o empty -a 1073741824 -l 2147483648 -d 0\n\n"
                                      "    add 1G to 2G as empty entry to Tandemix 0.\n\n";
inline constexpr const OptionSet& tandemOptions = optionSet<tandemWords>;
