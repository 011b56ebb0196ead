// What the programs with passing calls share: their commands.
#pragma once

#include <iterator>
#include <string>

#include "Functions/backup_cfg/backup_cfg.h"
#include "Functions/restore_cfg/checkConfig.h"
#include "Functions/restore_cfg/restore_cfg.h"
#include "ktsetup/commandTables.h"

// Puts the commands in place that a line is for: those of ktcfg when it names one of them.
inline void chooseCommandsFor(const std::string& line) {
    static _cmd_struct rows[] = {{"backup_cfg", 11, doBackUp_CFG, backup_cfg_help, backup_cfg_sh},
                                 {"restore_cfg", 12, doRestore_CFG, restore_cfg_help, restore_cfg_sh},
                                 {"check", 6, doCheck_CFG, check_help, check_sh}};
    static const CommandSet config = {rows, std::size(rows), nullptr, 0};
    const bool configures = line.find("_cfg") != std::string::npos || line.starts_with("check");
    setCommandSets(configures ? config : ldBasedCommands, configures ? config : arrayBasedCommands);
}
