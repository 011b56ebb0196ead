// Looking things up in a document, whoever wrote it: what is not there, or is of another type, is not known.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Report/json.h"
#include "events/events.h"

// The value of a word; null when the object has none, or is none.
const Json& in(const Json& object, const char* word);
// The same, as a list; empty when it is none.
const Json& listIn(const Json& object, const char* word);
// A text, "" without one.
std::string textIn(const Json& object, const char* word);
// A whole number that is not negative.
std::optional<KT_U64> numberIn(const Json& object, const char* word);
// Any number.
std::optional<double> amountIn(const Json& object, const char* word);
// Whether the word is there and true.
bool isTrue(const Json& object, const char* word);
bool isFalse(const Json& object, const char* word);

// The name of an event in the document's log; it need not be one that the list knows.
std::optional<EventName> nameOfEvent(const Json& event);

// The adapter of the document with the id; null without one.
const Json* findAdapter(const Json& document, KT_U64 id);
// The item of a list ("disks", "arrays", "enclosures" ...) with the id; null without one.
const Json* findItem(const Json& owner, const char* list, KT_U64 id);

// A virtual disk and the array that it is in; null outside arrays.
struct VdInArray {
    const Json* vd;
    const Json* array;
};
// All virtual disks of an adapter by their ids.
std::vector<VdInArray> virtualDisksOf(const Json& adapter);
// The virtual disks that have data on the disk.
std::vector<VdInArray> virtualDisksOn(const Json& adapter, KT_U64 disk);

// Whether an item of "unread" is a refusal; what an adapter or a library lacks altogether it need not tell of.
bool isRefusal(const Json& unread);
// Whether only disks, or hybrid virtual disks, that are offline were silent, which is a problem by itself.
bool isOfWhatIsOffline(const Json& document, const Json& unread);

// How things are called in sentences; texts from adapters are made safe to print.
std::string placeOf(const Json& disk);                     // "slot 3 of enclosure 1", "port 6", "port 2 of PM 1"
std::string nameOfDisk(const Json& disk);                  // "disk 3 (slot 3 of enclosure 1, FX2000, serial S12)"
std::string nameOfVd(const Json& vd);                      // "virtual disk 2 \"orders\""
std::string nameOfArray(const Json& array);                // "array 1 \"databases\""
std::string statusOfArray(const Json& array);              // its word; a code without one means that it is offline
std::string nameOfAdapter(const Json& adapter);            // "adapter 0 (Tarn R8i, serial KS26)"
std::string namesOfVds(const std::vector<VdInArray>& vds); // "virtual disks 0 \"a\" and 1 \"b\""; at most 4 by name

// A size in bytes for people: "2.0 TB", thousands. A span of seconds: "3 h 20 min".
std::string sizeText(KT_U64 bytes);
std::string spanText(KT_U64 seconds);
