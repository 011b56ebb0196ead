// Options that commands choosing a level, disks or sizes share. Each reads one option's argument; for anything else it
// prints that option's message and answers Take::Failed.
#pragma once

#include "Public/options.h"
#include "Public/utility.h"

Take takeLevel(const char* value, KT_U8& level);       // -r
Take takeParity(const char* value, int& parity);       // -q, wider than its field: checkParity() knows the range
Take takeDisks(const char* value, PdList& disks);      // -d, repeated ids skipped
Take takeRounding(const char* value, KT_U8& rounding); // -g, KT_ROUND_*
