#pragma once

#include "Public/options.h"

int doRebuild(int argc, char** argv, _cmd_struct* row);
extern const char rebuild_sh[];
extern const char rebuild_help[];
extern const OptionSet rebuildOptions;
