#pragma once

#include "Public/options.h"

int doDelete(int argc, char** argv, _cmd_struct* row);
extern const char delete_sh[];
extern const char delete_help[];
extern const OptionSet deleteOptions;
