#pragma once

#include "Public/options.h"

int doRegister(int argc, char** argv, _cmd_struct* row);
extern const char register_sh[];
extern const char register_help[];
extern const OptionSet registerOptions;
