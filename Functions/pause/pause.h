#pragma once

#include "Public/options.h"

int doPause(int argc, char** argv, _cmd_struct* row);
extern const char pause_sh[];
extern const char pause_help[];
extern const OptionSet pauseOptions;
