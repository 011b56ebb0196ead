#pragma once

#include "Public/options.h"

int doBackUp_CFG(int argc, char** argv, _cmd_struct* row);
extern const char backup_cfg_sh[];
extern const char backup_cfg_help[];
extern const OptionSet backupCfgOptions;
