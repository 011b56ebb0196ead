#include "Functions/help/help.h"

#include <cstring>

const char question_sh[] = ":Get brief help for all commands.";

// Width of the column of command words.
static constexpr int COMMAND_WIDTH = 12;

static const char legend[] = "\n"
                             "Legend: \n"
                             "  [options] - the options within [] are optional. \n"
                             "  <x|y|z>   - choose one of the x, y or z. \n"
                             "  [<x|y|z>] - choose none or one of the x, y or z. \n"
                             "\n"
                             "Abbreviation: \n"
                             "    VD  - Virtual Disk,   Array  - Disk Array \n"
                             "    PD  - Physical Disk,  BGA - BackGround Activity \n"
                             "\n"
                             "Type '-output [filename]' to output to a file. \n"
                             "Type 'help' to display this page. \n"
                             "Type 'help command' to display the help page of 'command'. \n"
                             "Type 'command -h' to display help for 'command'. \n"
                             "\n"
                             "Command name is not case sensitive and may be abbreviated if the  \n"
                             "abbreviation is unique. Most commands support both short (-) and   \n"
                             "long (--) options.Long option names may be abbreviated if the abbreviation  \n"
                             "is unique. A long option may take a parameter of the form '--arg=param'  \n"
                             "or '--arg param'. Option name is case sensitive, option parameter is not.  \n"
                             "\n"
                             "COMMAND   BRIEF DESCRIPTION \n"
                             "-----------------------------------------------------------------\n";

static void listRows(const _cmd_struct* rows, KT_U16 size) {
    for (KT_U16 i = 0; i < size; ++i) {
        printStr(COMMAND_WIDTH, rows[i].cmd, rows[i].cmdShortHelp);
    }
    out("\n");
}

static const _cmd_struct* findRow(const _cmd_struct* rows, KT_U16 size, const char* word) {
    for (KT_U16 i = 0; i < size; ++i) {
        if (strcmp(rows[i].cmd, word) == 0) return &rows[i];
    }
    return nullptr;
}

static void helpOn(const char* word) {
    const _cmd_struct* row = findRow(pCmdTable, cmdTableSize, word);
    if (row == nullptr) row = findRow(pInCmdTable, inCmdTableSize, word);
    if (row == nullptr) {
        out("No help available for '%s'\n", word);
        return;
    }
    printHelp(row);
}

int doHelp(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    auto take = [](int, const char*) { return Take::Yes; };
    if (!scanOptions({argc, argv, row}, helpOptions, given, result, take)) return result;
    if (!givenOnce(helpOptions, given)) return 1;
    if (given['i'] == 1) {
        listRows(pInCmdTable, inCmdTableSize);
        return 0;
    }
    if (optind >= argc) {
        out("%s", legend);
        listRows(pCmdTable, cmdTableSize);
        return 0;
    }
    for (int i = optind; i < argc; ++i) {
        helpOn(argv[i]);
    }
    return 0;
}
