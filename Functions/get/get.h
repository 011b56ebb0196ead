#pragma once

#include "Public/options.h"

int doGet(int argc, char** argv, _cmd_struct* row);
extern const char get_sh[];
extern const char get_help[];
extern const OptionSet getOptions;
