#pragma once

#include "Public/options.h"

int doCopyBack(int argc, char** argv, _cmd_struct* row);
extern const char copyback_sh[];
extern const char copyback_help[];
extern const OptionSet copybackOptions;
