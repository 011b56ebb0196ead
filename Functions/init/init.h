#pragma once

#include "Public/options.h"

int doInit(int argc, char** argv, _cmd_struct* row);
extern const char init_sh[];
extern const char init_help[];
extern const OptionSet initOptions;
