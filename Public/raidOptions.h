// Options that commands choosing a level, disks or sizes share. Each reads one option's argument; for anything else it
// prints that option's message and answers Take::Failed.
#pragma once

#include "Public/options.h"
#include "Public/utility.h"

Take takeLevel(const char* value, KT_U8& level);       // -r
Take takeParity(const char* value, KT_U8& parity);     // -q
Take takeDisks(const char* value, PdList& disks);      // -d, repeated ids skipped
Take takeRounding(const char* value, KT_U8& rounding); // -g, KT_ROUND_*
