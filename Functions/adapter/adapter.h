#pragma once

#include "Public/options.h"

int doAdapter(int argc, char** argv, _cmd_struct* row);
extern const char adapter_sh[];
extern const char adapter_help[];
extern const OptionSet adapterOptions;
