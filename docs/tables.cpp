// Prints what the command tables hold, for what is made of them.
// "help": for each row a line "command <table> <word>", the short help, the long help, and a line with a form feed.
// "ktcfg-help": the same for the commands of ktcfg.
// "completion", "ktcfg-completion": bash variables with the program's commands, each command's option words, and what
// each option takes.
#include <cstdio>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Functions/backup_cfg/backup_cfg.h"
#include "Functions/help/help.h"
#include "Functions/restore_cfg/checkConfig.h"
#include "Functions/restore_cfg/restore_cfg.h"
#include "ktcfg/planWords.h"
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

// Each command of a program with the options it has, in either set.
using Commands = std::map<std::string, std::vector<const OptionSet*>>;

static Commands ktsetupCommands() {
    Commands commands = {{"ver", {}}};
    for (const Table& table : tables) {
        for (int i = 0; i < table.size; ++i) {
            if (strcmp(table.rows[i].cmd, "?") == 0) continue;
            commands[table.rows[i].cmd].push_back(optionsOf(table.rows[i].cmdHandler));
        }
    }
    return commands;
}

// How bash is told what a value is: the words that it may be, or "@" and the kind of thing.
static std::string valueOf(const OptionSet& set, const LongOption& row) {
    switch (row.takes) {
    case Takes::File:
        return "@file";
    case Takes::Adapter:
        return "@adapter";
    case Takes::Disk:
        return "@disk";
    case Takes::Disks:
        return "@disks";
    case Takes::Vd:
        return "@vd";
    case Takes::Array:
        return "@array";
    case Takes::Enclosure:
        return "@enclosure";
    case Takes::ObjectId:
        return "@object";
    case Takes::Words:
        break;
    default:
        return "@none";
    }
    std::string words;
    const char* at = shownArgument(set, row);
    std::string_view word;
    while (nextWord(at, word))
        words += (words.empty() ? "" : " ") + std::string(word);
    return words;
}

// Values by "<command> <option>". An option that is not the same in both sets takes what it takes in either.
static std::map<std::string, std::set<std::string>> valuesOf(const Commands& commands) {
    std::map<std::string, std::set<std::string>> values;
    for (const auto& [command, sets] : commands) {
        for (const OptionSet* set : sets) {
            for (const LongOption* row = set->longOptions; row->value != 0; ++row) {
                if (row->takes == Takes::Nothing) continue;
                const std::string value = valueOf(*set, *row);
                if (row->name[0] != '\0') values[command + " --" + row->name].insert(value);
                if (row->value > ' ' && row->value < OPT_WAIVE)
                    values[command + " -" + static_cast<char>(row->value)].insert(value);
            }
        }
    }
    return values;
}

static void printCompletion(const char* program, const Commands& commands) {
    printf("_%s_words='", program);
    for (const auto& [command, sets] : commands) {
        printf("%s ", command.c_str());
    }
    printf("'\ndeclare -gA _%s_options=(\n", program);
    for (const auto& [command, sets] : commands) {
        std::set<std::string> words;
        for (const OptionSet* set : sets) {
            for (const LongOption* row = set->longOptions; row->value != 0; ++row) {
                if (row->name[0] != '\0') words.insert(std::string("--") + row->name);
            }
        }
        printf("  [%s]='", command.c_str());
        for (const std::string& word : words) {
            printf("%s ", word.c_str());
        }
        printf("'\n");
    }
    printf(")\ndeclare -gA _%s_values=(\n", program);
    for (const auto& [option, values] : valuesOf(commands)) {
        printf("  ['%s']='", option.c_str());
        for (const std::string& value : values) {
            printf("%s ", value.c_str());
        }
        printf("'\n");
    }
    printf(")\n");
}

int main(int argc, char** argv) {
    const char* what = argc == 2 ? argv[1] : "help";
    if (strcmp(what, "completion") == 0) {
        printCompletion("ktsetup", ktsetupCommands());
    } else if (strcmp(what, "ktcfg-completion") == 0) {
        printCompletion("ktcfg", {{"help", {&helpOptions}},
                                  {"backup_cfg", {&backupCfgOptions}},
                                  {"check", {&checkOptions}},
                                  {"restore_cfg", {&restoreCfgOptions}},
                                  {"plan", {&planOptions}},
                                  {"apply", {&applyOptions}}});
    } else if (strcmp(what, "ktcfg-help") == 0) {
        printHelp("ktcfg", "backup_cfg", backup_cfg_sh, backup_cfg_help);
        printHelp("ktcfg", "check", check_sh, check_help);
        printHelp("ktcfg", "restore_cfg", restore_cfg_sh, restore_cfg_help);
        printHelp("ktcfg", "plan", plan_sh, plan_help);
        printHelp("ktcfg", "apply", apply_sh, apply_help);
    } else if (strcmp(what, "help") == 0) {
        printAllHelp();
    }
    return 0;
}
