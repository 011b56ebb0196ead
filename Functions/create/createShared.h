// What the create commands of both command sets have in common: option words, names, the cache default and the
// question about file systems.
#pragma once

#include "Public/raidOptions.h"

// The name fields of the creation records: filled up by a name of this length, without a terminator.
inline constexpr size_t NAME_FIELD = 16;

// Room for a typed name of any legal length and for one that is too long.
typedef char TypedName[NAME_FIELD + 3];

// Each reads one option's argument; on anything else it prints that option's message and answers Take::Failed.
Take takeName(const char* value, int longest, TypedName& name);
Take takeWritePolicy(const char* value, bool automatic, KT_U8& cache);
Take takeReadPolicy(const char* value, KT_U8& cache);
Take takeAutomatic(KT_U8& cache); // the word "auto"
Take takeInit(const char* value, bool foreground, KT_U8& init);

// True when the adapter lets virtual disks choose their write cache.
bool choosesWriteCache();

// True when the name consists of letters, digits, blanks and underlines; otherwise says so.
bool checkName(const char* name);

// True unless a number of parity disks was given for a level that has none of its own; otherwise says so, and the
// command's result is KT_ERR_NOT_SUPPORTED.
bool checkParityAllowed(KT_U8 level, bool given);

// Adds write-through to the cache policy where the write cache cannot be chosen or has no battery behind it.
void addDefaultCache(KT_U8 level, KT_U8& cache);

// Copies a name into a record's field, which the longest one fills up.
void fillName(KT_U8 (&field)[NAME_FIELD], const char* name);

// Warns of file systems on the disks and asks. False when the command is over: declined (result 0), or the disks
// could not be looked at (result 1).
bool acceptFileSystems(const PdList& disks, bool forArray, int& result);
