// How fields of the library's records become words of the document.
#pragma once

#include "Report/json.h"
#include "Report/words.h"

// Adds a word to an object that does not have it yet.
template <class Value>
void add(Json& object, const char* word, Value&& value) {
    object.get_ref<Json::object_t&>().emplace_back(word, std::forward<Value>(value));
}

// Adds the word of a code; a code without a word stands under the record's own field name.
void addCode(Json& object, const char* word, CodeWords words, unsigned code, const char* field);
// The words of the bits that are set.
Json wordsOfBits(CodeWords words, unsigned bits);
// Adds units times unit, unless that is more than 64 bits hold.
void addProduct(Json& object, const char* word, KT_U64 units, KT_U64 unit);
