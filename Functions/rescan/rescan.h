#pragma once

#include "Public/options.h"

int doRescan(int argc, char** argv, _cmd_struct* row);
extern const char rescan_sh[];
extern const char rescan_help[];
extern const OptionSet rescanOptions;
