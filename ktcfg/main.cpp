// Saves an adapter's configuration to a text file and restores it: the two commands that ktsetup does not offer.
#include <iterator>

#include "Functions/backup_cfg/backup_cfg.h"
#include "Functions/help/help.h"
#include "Functions/restore_cfg/restore_cfg.h"
#include "Public/start.h"

#define ROW(word, handler, help, shortHelp)                                                                            \
    { word, static_cast<int>(sizeof(word)), handler, help, shortHelp }

static _cmd_struct commands[] = {
    ROW("help", doHelp, help_help, help_sh),
    ROW("backup_cfg", doBackUp_CFG, backup_cfg_help, backup_cfg_sh),
    ROW("restore_cfg", doRestore_CFG, restore_cfg_help, restore_cfg_sh),
};
static const CommandSet commandSet = {commands, std::size(commands), nullptr, 0};

int main(int argc, char** argv) {
    setCommandSets(commandSet, commandSet);
    CommandLine line = takeCommandLine(argc, argv);
    if (line.toOutput || line.argc >= 2) return runOneShot(line);
    chooseCommandSet();
    char* help[] = {const_cast<char*>("help"), nullptr};
    doHelp(1, help, &commands[0]);
    closeOutput();
    return 1;
}
