#pragma once

#include "Public/options.h"

int doWipe(int argc, char** argv, _cmd_struct* row);
extern const char wipe_sh[];
extern const char wipe_help[];
extern const OptionSet wipeOptions;
