// What Tab offers as the value of an option.
#pragma once

#include <string>
#include <vector>

#include "Public/options.h"

struct Candidate {
    std::string word;
    std::string label; // what is shown beside it, an object's name; may be empty
};

// The values that there are: the words of the option's row, or the ids of the adapter's objects, which are read now.
// None for values that cannot be known, and when the library does not answer. object: the word that -o has on the line,
// for ids that depend on it.
std::vector<Candidate> valuesOf(const OptionSet& set, const LongOption& option, const std::string& object);
