#pragma once

#include "Public/options.h"

int doCC(int argc, char** argv, _cmd_struct* row);
extern const char cc_sh[];
extern const char cc_help[];
extern const OptionSet ccOptions;
