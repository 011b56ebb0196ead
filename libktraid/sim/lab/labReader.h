// Reading one object of a lab: each word is taken once, what nobody took is a mistake.
#pragma once

#include "lab/labFields.h"

#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace sim {

struct LabReader {
    const Json& object;
    std::string path; // "adapters[0].disks[3]"
    std::set<std::string> taken;
};

LabReader readObject(const Json& object, const std::string& path);
[[noreturn]] void failLab(const LabReader& reader, const char* word, const std::string& what);

// What stands under the word, which nobody takes by that.
bool hasWord(const LabReader& reader, const char* word);
bool isNumber(const LabReader& reader, const char* word);
bool isFlag(const LabReader& reader, const char* word);
// How many words there are.
size_t wordCount(const LabReader& reader);
// The object under a word that is there.
LabReader objectIn(const LabReader& reader, const char* word);

// The word's value, or null.
const Json* take(LabReader& reader, const char* word);
// A value as a number; nothing when it is none.
std::optional<double> amountOf(const Json& value);
bool isList(const Json& value);
// A whole number; NEVER for what is none. All of a list, or the one that stands alone.
KT_U64 wholeNumber(const Json& value);
std::vector<KT_U64> wholeNumbers(const Json& value);
KT_U64 takeNumber(LabReader& reader, const char* word, KT_U64 absent, KT_U64 largest);
bool takeFlag(LabReader& reader, const char* word, bool absent);
// UTF-8 as written.
std::string takeText(LabReader& reader, const char* word, const std::string& absent);
// An amount such as "500GB" (thousands), "64MiB" (1024) or "0.5TB", or a number of bytes, in bytes.
KT_U64 takeSize(LabReader& reader, const char* word, KT_U64 absent);
// An amount of bytes as a number of units of `unit` bytes; refuses what is no whole number of them.
KT_U64 takeUnits(LabReader& reader, const char* word, KT_U64 unit, KT_U64 absent);
// A list of ids; null stands for KT_NO_ID.
std::vector<KT_U16> takeIds(LabReader& reader, const char* word);
// The value that stands for the text in a table of words; refuses others.
struct LabWord {
    const char* word;
    int value;
};
int takeWord(LabReader& reader, const char* word, const LabWord* words, size_t count, int absent);
// A table of them.
struct WordList {
    const LabWord* words;
    size_t count;

    template <size_t N>
    WordList(const LabWord (&table)[N]) : words(table), count(N) {}
};
// The bit or code that stands for a word in a list of words.
struct WordBit {
    const char* word;
    KT_U32 bit;
};
// The bits of a list of words.
KT_U32 takeBits(LabReader& reader, const char* word, std::span<const WordBit> words);
// A list of objects; a single object counts as a list of one, nothing as none.
std::vector<LabReader> takeObjects(LabReader& reader, const char* word);
// The same, where an object with "count" stands for so many of it.
std::vector<LabReader> repeatObjects(LabReader& reader, const char* word);
// Writes text, not terminated when it fills the field. Throws when it does not fit.
void putText(const LabReader& reader, const char* word, const std::string& text, KT_U8* field, size_t size);

// Sets those fields of the record that the object names.
void takeFields(LabReader& reader, Kind kind, void* record);
// Nothing may be left.
void takeNothingElse(const LabReader& reader);

} // namespace sim
