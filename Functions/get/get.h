// The get command: the settings of virtual disks, arrays, disks or the adapter, and the links of hybrid virtual disks.
#pragma once

#include "Public/options.h"

int doGet(int argc, char** argv, _cmd_struct* row);
extern const char get_sh[];
extern const char get_help[];
extern const OptionSet getOptions;
