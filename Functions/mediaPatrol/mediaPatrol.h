#pragma once

#include "Public/options.h"

int doMP(int argc, char** argv, _cmd_struct* row);
extern const char mp_sh[];
extern const char mp_help[];
extern const OptionSet mpOptions;
