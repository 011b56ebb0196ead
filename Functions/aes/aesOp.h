#pragma once

#include "Public/options.h"

int doAESOp(int argc, char** argv, _cmd_struct* row);
extern const char aesop_sh[];
extern const char aesop_help[];
extern const OptionSet aesopOptions;
