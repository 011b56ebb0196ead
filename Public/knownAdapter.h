// No command changes an adapter of which nobody knows what it is.
#pragma once

#include "ktraid.h"

// True unless the library counted the adapter and failed to hand out its record; then a message has been printed, and
// result is the status of that call. For every command that changes something, behind its checks of the options and
// before its first call.
bool isKnownAdapter(KT_U8 adapter, int& result);
