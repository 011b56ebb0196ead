// Reading one object of a wanted file: what is wrong is noted with its place, and reading goes on.
#pragma once

#include <set>

#include "Plan/wanted.h"

// An object and where it stands.
struct WantedObject {
    const Json& json;
    std::string place;
    std::vector<Reason>& reasons;
};

void complain(const WantedObject& object, const char* word, const std::string& text);
std::string placeIn(const WantedObject& object, const char* word);

// The word's value when it is there and of the kind; what is there and is not is noted.
std::optional<KT_U64> takeNumber(const WantedObject& object, const char* word, KT_U64 most);
std::optional<bool> takeFlag(const WantedObject& object, const char* word);
std::string takeText(const WantedObject& object, const char* word);
// A number of bytes, or a text such as "2TB" or "64MiB".
std::optional<KT_U64> takeAmount(const WantedObject& object, const char* word);
// Ids or numbers of disks; a missing one is noted.
std::vector<KT_U64> takeDisks(const WantedObject& object, const char* word);
// One of the words; "" without it.
std::string takeOneOf(const WantedObject& object, const char* word, const std::vector<std::string>& words);
// The objects of a list, or a single one; "count" is the caller's.
std::vector<WantedObject> takeObjects(const WantedObject& object, const char* word);

enum class WantedKind { File, Adapter, Disk, Array, Vd, Config };
// Notes every word that neither labs nor reports have there. Words that begin with a capital are fields of the
// library's records, and pass.
void checkWords(const WantedObject& object, WantedKind kind);
