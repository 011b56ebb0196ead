#pragma once

#include "Public/options.h"

int doEnclosure(int argc, char** argv, _cmd_struct* row);
extern const char enc_sh[];
extern const char enc_help[];
extern const OptionSet encOptions;
