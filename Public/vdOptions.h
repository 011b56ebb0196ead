// Options that say what a virtual disk or an array is called and how it is cached, for the commands that create one and
// the one that changes it.
#pragma once

#include "Public/options.h"

// The name fields of the library's records: filled up by a name of this length, without a terminator.
inline constexpr size_t NAME_FIELD = 16;

// The longest names that are taken, in characters.
inline constexpr int LONGEST_LD_NAME = 10;    // LD-based set
inline constexpr int LONGEST_ARRAY_NAME = 16; // array-based set

// Room for a typed name of any legal length and for one that is too long.
typedef char TypedName[NAME_FIELD + 3];

// Each reads one option's argument; on anything else it prints that option's message and answers Take::Failed. The
// policies add their bits (KT_CACHE_*) to the cache policy; `automatic`: the word "auto" is one of theirs.
Take takeName(const char* value, int longest, TypedName& name);        // -n
Take takeCacheMode(const char* value, bool automatic, KT_U8& cache);   // -c
Take takeWritePolicy(const char* value, bool automatic, KT_U8& cache); // -w
Take takeReadPolicy(const char* value, KT_U8& cache);                  // -p

// True when the name consists of letters, digits, blanks and underlines; otherwise says so.
bool checkName(const char* name);

// Copies a name into a record's field, which the longest one fills up.
void fillName(KT_U8 (&field)[NAME_FIELD], const char* name);

// True when the adapter lets virtual disks choose their write cache.
bool choosesWriteCache();

// True when the adapter says that there is a battery behind its cache. Asks the library, if there is a place for one.
bool hasBattery();
