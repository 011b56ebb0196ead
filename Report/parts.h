// The parts of the document, each made in a file of its own.
#pragma once

#include "Report/document.h"
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

Json adapterOf(const AdapterReading& adapter, const ReadOptions& options);
// Disks without what addDetails adds: the table of attributes and the records.
Json diskOf(const AdapterReading& adapter, KT_U16 id, const DiskReading& disk, const std::vector<KT_U16>& blocks);
void addDetails(Json& object, const DiskReading& disk, const ReadOptions& options);
void addDisks(Json& object, const AdapterReading& adapter);
void addVolumes(Json& object, const AdapterReading& adapter, const ReadOptions& options);
void addParts(Json& object, const AdapterReading& adapter, const ReadOptions& options);
void addEvents(Json& object, const AdapterReading& adapter);
// One event in the words of the log.
Json eventOf(const _Event& event);
