#pragma once

#include "Public/options.h"

int doAESEntry(int argc, char** argv, _cmd_struct* row);
extern const char aesentry_sh[];
extern const char aesentry_help[];
extern const OptionSet aesentryOptions;
