#pragma once

#include "Public/options.h"

int doVersion(int argc, char** argv, _cmd_struct* row);
extern const char version_sh[];
extern const char version_help[];
extern const OptionSet versionOptions;
