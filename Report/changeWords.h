// How a difference between two reports is worded.
#pragma once

#include <string>

#include "Report/json.h"

// Whether the word of an object ("disk", "adapter" ...) has another value all the time (temperatures, progress, hours,
// time), follows from others (blocks, problems), or says what another word says already (fields of the library's
// records).
bool changesByItself(const std::string& object, const std::string& word);

// "cacheInForce" as "cache in force".
std::string wordsOf(const std::string& word);

// What happened to the word of the object that is called `name`; "" when that is not worth a sentence. all: also
// progress.
std::string changeText(const std::string& name, const std::string& word, const Json& before, const Json& after,
                       bool all);

// "(RAID5, 2.0 TB) " of a virtual disk or an array, "" of what has neither.
std::string aboutItem(const Json& item);
