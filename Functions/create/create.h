#pragma once

#include "Public/options.h"

int doCreate(int argc, char** argv, _cmd_struct* row);
extern const char create_sh[];
extern const char create_help[];
extern const OptionSet createOptions;
