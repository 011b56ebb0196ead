#pragma once

#include "Public/options.h"

int doGetMaxsize(int argc, char** argv, _cmd_struct* row);
extern const char getmaxsize_sh[];
extern const char getmaxsize_help[];
extern const OptionSet getmaxsizeOptions;
