#pragma once

#include "Public/options.h"

int doAssign(int argc, char** argv, _cmd_struct* row);
extern const char spare_sh[];
extern const char spare_help[];
extern const OptionSet spareOptions;
