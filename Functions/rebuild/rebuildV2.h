#pragma once

#include "Public/options.h"

int doRebuildV2(int argc, char** argv, _cmd_struct* row);
extern const char rebuildV2_sh[];
extern const char rebuildV2_help[];
extern const OptionSet rebuildV2Options;
