#pragma once

#include "Public/options.h"

int doFlash(int argc, char** argv, _cmd_struct* row);
extern const char flash_sh[];
extern const char flash_help[];
extern const OptionSet flashOptions;
