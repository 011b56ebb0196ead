#pragma once

#include "Public/options.h"

int doTandem(int argc, char** argv, _cmd_struct* row);
extern const char tandem_sh[];
extern const char tandem_help[];
extern const OptionSet tandemOptions;
