#pragma once

#include "Public/options.h"

int doForceOnline(int argc, char** argv, _cmd_struct* row);
extern const char forceonline_sh[];
extern const char forceonline_help[];
extern const OptionSet forceonlineOptions;
