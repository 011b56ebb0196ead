#pragma once

#include "Public/options.h"

int doDevMap(int argc, char** argv, _cmd_struct* row);
extern const char devmap_sh[];
extern const char devmap_help[];
extern const OptionSet devmapOptions;
