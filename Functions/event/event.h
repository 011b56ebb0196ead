#pragma once

#include "Public/options.h"

int doEvent(int argc, char** argv, _cmd_struct* row);
extern const char event_sh[];
extern const char event_help[];
extern const OptionSet eventOptions;
