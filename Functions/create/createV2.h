#pragma once

#include "Public/options.h"

int doCreateV2(int argc, char** argv, _cmd_struct* row);
extern const char createV2_sh[];
extern const char createV2_help[];
extern const OptionSet createV2Options;
