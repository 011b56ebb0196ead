// Commands whose one option is the id of a virtual disk.
#pragma once

#include "Public/options.h"

// Reads and checks `-i <id>`, decimal or hexadecimal, 0 to 254. True when vd is set; otherwise the command is over and
// `result` is what its handler returns.
bool readVdId(const CommandCall& call, const OptionSet& set, KT_U16& vd, int& result);
