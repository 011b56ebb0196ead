// Prints what the command tables hold, for what is made of them.
// "help": for each row a line "command <table> <word>", the short help, the long help, and a line with a form feed.
// "ktcfg-help": the same for the commands of ktcfg.
// "completion": bash variables with the words of both sets, and each command's option words and objects.
#include <cstdio>
#include <cstring>
#include <set>
#include <string>

#include "Functions/backup_cfg/backup_cfg.h"
#include "Functions/restore_cfg/restore_cfg.h"
#include "ktsetup/commandTables.h"

namespace {
struct Table {
    const char* name;
    const _cmd_struct* rows;
    int size;
};
const Table tables[] = {
    {"ld-general", ldBasedCommands.general, ldBasedCommands.generalSize},
    {"ld-internal", ldBasedCommands.internal, ldBasedCommands.internalSize},
    {"array-general", arrayBasedCommands.general, arrayBasedCommands.generalSize},
    {"array-internal", arrayBasedCommands.internal, arrayBasedCommands.internalSize},
};
} // namespace

static void printHelp(const char* table, const char* command, const char* shortHelp, const char* help) {
    printf("command %s %s\n%s\n%s\n\f\n", table, command, shortHelp, help);
}

static void printAllHelp() {
    for (const Table& table : tables) {
        for (int i = 0; i < table.size; ++i) {
            const _cmd_struct& row = table.rows[i];
            printHelp(table.name, row.cmd, row.cmdShortHelp, row.cmdHelp);
        }
    }
}

// The words that a command takes in either set, without repeats.
static std::set<std::string> wordsOf(const char* command, bool objects) {
    std::set<std::string> words;
    for (const Table& table : tables) {
        for (int i = 0; i < table.size; ++i) {
            if (strcmp(table.rows[i].cmd, command) != 0) continue;
            const OptionSet& set = *optionsOf(table.rows[i].cmdHandler);
            for (const LongOption* row = set.longOptions; row->value != 0; ++row) {
                if (!objects && row->name[0] != '\0') words.insert(std::string("--") + row->name);
                const char* at = shownArgument(set, *row);
                std::string_view word;
                while (objects && row->value == 'o' && nextWord(at, word))
                    words.emplace(word);
            }
        }
    }
    return words;
}

static void printArray(const char* name, const std::set<std::string>& commands, bool objects) {
    printf("declare -gA %s=(\n", name);
    for (const std::string& command : commands) {
        std::set<std::string> words = wordsOf(command.c_str(), objects);
        if (words.empty()) continue;
        printf("  [%s]='", command.c_str());
        for (const std::string& word : words) {
            printf("%s ", word.c_str());
        }
        printf("'\n");
    }
    printf(")\n");
}

static void printCompletion() {
    std::set<std::string> commands = {"ver"};
    for (const Table& table : tables) {
        for (int i = 0; i < table.size; ++i) {
            if (strcmp(table.rows[i].cmd, "?") != 0) commands.insert(table.rows[i].cmd);
        }
    }
    printf("_ktsetup_words='");
    for (const std::string& command : commands) {
        printf("%s ", command.c_str());
    }
    printf("'\n");
    printArray("_ktsetup_options", commands, false);
    printArray("_ktsetup_objects", commands, true);
}

int main(int argc, char** argv) {
    const char* what = argc == 2 ? argv[1] : "help";
    if (strcmp(what, "completion") == 0) {
        printCompletion();
    } else if (strcmp(what, "ktcfg-help") == 0) {
        printHelp("ktcfg", "backup_cfg", backup_cfg_sh, backup_cfg_help);
        printHelp("ktcfg", "restore_cfg", restore_cfg_sh, restore_cfg_help);
    } else if (strcmp(what, "help") == 0) {
        printAllHelp();
    }
    return 0;
}
