// Saves an adapter's configuration to a text file, restores it, and tells beforehand what that would do: the commands
// that ktsetup does not offer.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>
#include <strings.h>

#include "Functions/backup_cfg/backup_cfg.h"
#include "Functions/help/help.h"
#include "Functions/restore_cfg/checkConfig.h"
#include "Functions/restore_cfg/restore_cfg.h"
#include "Public/fileName.h"
#include "Public/start.h"

#define ROW(word, handler, help, shortHelp)                                                                            \
    { word, static_cast<int>(sizeof(word)), handler, help, shortHelp }

static _cmd_struct commands[] = {
    ROW("help", doHelp, help_help, help_sh),
    ROW("backup_cfg", doBackUp_CFG, backup_cfg_help, backup_cfg_sh),
    ROW("check", doCheck_CFG, check_help, check_sh),
    ROW("restore_cfg", doRestore_CFG, restore_cfg_help, restore_cfg_sh),
};
static constexpr int RESULT_USAGE = 2; // the words were not understood
static const CommandSet commandSet = {commands, std::size(commands), nullptr, 0};

// A command's word may be shortened, as everywhere; the dispatcher finds its row.
static bool isCommand(const char* word) {
    if (strcasecmp(word, "ver") == 0) return true;
    return *word != '\0' && std::any_of(std::begin(commands), std::end(commands), [&](const _cmd_struct& row) {
        return strncasecmp(row.cmd, word, strlen(word)) == 0;
    });
}

static int showHelp(int result) {
    chooseCommandSet();
    char* help[] = {const_cast<char*>("help"), nullptr};
    doHelp(1, help, &commands[0]);
    return closeOutput() ? result : 1;
}

int main(int argc, char** argv) {
    setCommandSets(commandSet, commandSet);
    CommandLine line = takeCommandLine(argc, argv);
    if (line.argc < 2) return showHelp(RESULT_USAGE);
    const std::string word = line.argv[1];
    if (word == "-h" || word == "--help") return showHelp(0);
    if (word == "--version") {
        out("ktcfg %s\n", CLI_VERSION);
        return closeOutput() ? 0 : 1;
    }
    if (isCommand(line.argv[1])) return runOneShot(line);
    if (line.toOutput && word == "-\1utput") {
        fprintf(stderr, "ktcfg: a command comes first (--help tells more)\n");
    } else {
        fprintf(stderr, "ktcfg: \"%s\" is not a command (--help tells more)\n", shownName(word).c_str());
    }
    return RESULT_USAGE;
}
