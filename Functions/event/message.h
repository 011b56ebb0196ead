#pragma once

#include "Public/options.h"

int doMessage(int argc, char** argv, _cmd_struct* row);
extern const char message_sh[];
extern const char message_help[];
extern const OptionSet messageOptions;
