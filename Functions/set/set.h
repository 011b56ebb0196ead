#pragma once

#include "Public/options.h"

int doSet(int argc, char** argv, _cmd_struct* row);
extern const char set_sh[];
extern const char set_help[];
extern const OptionSet setOptions;
int doSetV2(int argc, char** argv, _cmd_struct* row);
extern const char setV2_sh[];
extern const char setV2_help[];
extern const OptionSet setV2Options;
