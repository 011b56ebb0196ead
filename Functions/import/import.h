#pragma once

#include "Public/options.h"

int doImport(int argc, char** argv, _cmd_struct* row);
extern const char import_sh[];
extern const char import_help[];
extern const OptionSet importOptions;
