#pragma once

#include "Public/options.h"

int doAESPort(int argc, char** argv, _cmd_struct* row);
extern const char aesport_sh[];
extern const char aesport_help[];
extern const OptionSet aesportOptions;
