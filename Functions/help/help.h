#pragma once

#include "Public/options.h"

int doHelp(int argc, char** argv, _cmd_struct* row);
extern const char question_sh[]; // the row "?"
extern const char help_sh[];
extern const char help_help[];
extern const OptionSet helpOptions;
