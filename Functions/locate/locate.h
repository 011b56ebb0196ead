#pragma once

#include "Public/options.h"

int doLocate(int argc, char** argv, _cmd_struct* row);
extern const char locate_sh[];
extern const char locate_help[];
extern const OptionSet locateOptions;
