// What the create commands of both command sets have in common: the initialisation, the cache default and the question
// about file systems.
#pragma once

#include "Public/raidOptions.h"
#include "Public/vdOptions.h"

// Reads the argument of -i, the initialisation, into `init`. A word that is none of them is refused with the option's
// message and Take::Failed; foreground: whether the command takes that one.
Take takeInit(const char* value, bool foreground, KT_U8& init);

// True unless a number of parity disks was given for a level that has none of its own; otherwise says so, and the
// command's result is KT_ERR_NOT_SUPPORTED.
bool checkParityAllowed(KT_U8 level, bool given);

// Adds write-through to the cache policy where the write cache cannot be chosen or has no battery behind it.
void addDefaultCache(KT_U8 level, KT_U8& cache);

// Warns of file systems on the disks and asks. False when the command is over: declined (result 0), or the disks
// could not be looked at (result 1).
bool acceptFileSystems(const PdList& disks, bool forArray, int& result);
