#pragma once

#include "Public/options.h"

int doSmart(int argc, char** argv, _cmd_struct* row);
extern const char smart_sh[];
extern const char smart_help[];
extern const OptionSet smartOptions;
