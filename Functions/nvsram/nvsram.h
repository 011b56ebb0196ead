#pragma once

#include "Public/options.h"

int doNvsramRW(int argc, char** argv, _cmd_struct* row);
extern const char nvsram_sh[];
extern const char nvsram_help[];
extern const OptionSet nvsramOptions;
