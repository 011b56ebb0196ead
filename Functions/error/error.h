#pragma once

#include "Public/options.h"

int doError(int argc, char** argv, _cmd_struct* row);
extern const char error_sh[];
extern const char error_help[];
extern const OptionSet errorOptions;
