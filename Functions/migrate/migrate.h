#pragma once

#include "Public/options.h"

int doMigrate(int argc, char** argv, _cmd_struct* row);
extern const char migrate_sh[];
extern const char migrate_help[];
extern const OptionSet migrateOptions;
