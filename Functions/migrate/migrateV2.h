#pragma once

#include "Public/options.h"

int doMigrateV2(int argc, char** argv, _cmd_struct* row);
extern const char migrateV2_sh[];
extern const char migrateV2_help[];
extern const OptionSet migrateV2Options;
