#pragma once

#include "Public/options.h"

int doRestore_CFG(int argc, char** argv, _cmd_struct* row);
extern const char restore_cfg_sh[];
extern const char restore_cfg_help[];
extern const OptionSet restoreCfgOptions;
