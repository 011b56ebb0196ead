#include "Plan/wantedWords.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <sstream>

#include "Report/look.h"

static constexpr KT_U64 HIGHEST_ID = 65534;
static constexpr size_t MOST_REASONS = 100; // of a file that is wrong all over

std::string placeIn(const WantedObject& object, const char* word) {
    return object.place.empty() ? word : object.place + "." + word;
}

void complain(const WantedObject& object, const char* word, const std::string& text) {
    if (object.reasons.size() < MOST_REASONS) object.reasons.push_back({placeIn(object, word), text});
}

std::optional<KT_U64> takeNumber(const WantedObject& object, const char* word, KT_U64 most) {
    const Json& value = in(object.json, word);
    if (value.is_null()) return std::nullopt;
    const auto number = numberIn(object.json, word);
    if (!number) complain(object, word, "should be a whole number");
    if (number && *number > most) complain(object, word, "is larger than " + std::to_string(most));
    return number && *number <= most ? number : std::nullopt;
}

std::optional<bool> takeFlag(const WantedObject& object, const char* word) {
    const Json& value = in(object.json, word);
    if (value.is_boolean()) return value.get<bool>();
    if (!value.is_null()) complain(object, word, "should be true or false");
    return std::nullopt;
}

std::string takeText(const WantedObject& object, const char* word) {
    const Json& value = in(object.json, word);
    if (!value.is_null() && !value.is_string()) complain(object, word, "should be a text");
    return textIn(object.json, word);
}

static std::optional<KT_U64> amountOf(const std::string& text) {
    static const struct {
        const char* unit;
        double bytes;
    } units[] = {{"KB", 1e3},
                 {"MB", 1e6},
                 {"GB", 1e9},
                 {"TB", 1e12},
                 {"PB", 1e15},
                 {"KiB", 1024.0},
                 {"MiB", 1048576.0},
                 {"GiB", 1073741824.0},
                 {"TiB", 1099511627776.0},
                 {"PiB", 1125899906842624.0}};
    char* end = nullptr;
    const double amount = strtod(text.c_str(), &end);
    for (const auto& row : units) {
        const double bytes = amount * row.bytes;
        if (end == text.c_str() || strcmp(end, row.unit) != 0 || !std::isfinite(bytes)) continue;
        if (bytes >= 0 && bytes < 9e18) return static_cast<KT_U64>(bytes);
    }
    return std::nullopt;
}

std::optional<KT_U64> takeAmount(const WantedObject& object, const char* word) {
    const Json& value = in(object.json, word);
    if (value.is_null()) return std::nullopt;
    const auto bytes = value.is_string() ? amountOf(value.get<std::string>()) : numberIn(object.json, word);
    if (!bytes) complain(object, word, "should be a number of bytes, or an amount such as \"500GB\" or \"64MiB\"");
    return bytes;
}

std::vector<KT_U64> takeDisks(const WantedObject& object, const char* word) {
    std::vector<KT_U64> disks;
    const Json& list = in(object.json, word);
    if (!list.is_null() && !list.is_array()) complain(object, word, "should be a list of disks");
    for (const Json& disk : listIn(object.json, word)) {
        if (disk.is_null()) {
            complain(object, word, "names a missing disk; what is wanted has all of its disks");
        } else if (!disk.is_number_unsigned() || disk.get<KT_U64>() > HIGHEST_ID) {
            complain(object, word, "should be a list of disks by their numbers");
            return disks;
        } else {
            disks.push_back(disk.get<KT_U64>());
        }
    }
    return disks;
}

std::string takeOneOf(const WantedObject& object, const char* word, const std::vector<std::string>& words) {
    std::string text = takeText(object, word);
    if (text.empty()) return text;
    std::string known;
    for (const std::string& one : words) {
        if (text == one) return text;
        known += (known.empty() ? "" : ", ") + one;
    }
    complain(object, word, "\"" + shown(text) + "\" should be one of: " + known);
    return "";
}

std::vector<WantedObject> takeObjects(const WantedObject& object, const char* word) {
    std::vector<WantedObject> objects;
    const Json& value = in(object.json, word);
    if (value.is_object()) objects.push_back({value, placeIn(object, word), object.reasons});
    if (value.is_null() || value.is_object()) return objects;
    if (!value.is_array()) complain(object, word, "should be a list of objects");
    size_t number = 0;
    for (const Json& item : listIn(object.json, word)) {
        const std::string place = placeIn(object, word) + "[" + std::to_string(number++) + "]";
        if (item.is_object()) {
            objects.push_back({item, place, object.reasons});
        } else {
            object.reasons.push_back({place, "should be an object"});
        }
    }
    return objects;
}

static std::set<std::string> wordsIn(const char* text) {
    std::istringstream words(text);
    return {std::istream_iterator<std::string>(words), {}};
}

// What labs and reports say of each kind of object.
static const std::set<std::string>& wordsOf(WantedKind kind) {
    static const auto file =
        wordsIn("report made host library sgVersion adapterCount records unread problems adapters clock name "
                "complete");
    static const auto adapter =
        wordsIn("id type model serial wwn versions bus ports levels portAddresses portTypes stripes buzzer "
                "features limits images advancedFeatures config settings battery keys expanders disks "
                "unlinkedPorts portMultipliers arrays enclosures virtualDisks blocks events count");
    static const auto disk =
        wordsIn("id type model serial firmware size sector validSize freeSize on parent port enclosure slot "
                "address wwn state member array spare spareInUse os mbr smartTripped temperature poweredOn "
                "powerCycles reallocated pending uncorrectable linkErrors wear patrol supports writeCache smart "
                "cipher cipherPercent locateLed errorLed ssdType rotation linkSpeeds linkSpeed pio mdma udma "
                "currentPio currentMdma currentUdma blocks magic attributes count badSectors");
    static const auto array =
        wordsIn("id name level status disks parity parts stripe sector spares writeCache size freeSize "
                "memberSize activity memberPatrol slots virtualDisks count");
    static const auto vd =
        wordsIn("id name status array level disks blocks members parity parts stripe sector size cache readAhead "
                "restore cacheInForce os target linkedDisk written activity guid memberPatrol table magic count "
                "initialized");
    static const auto config = wordsIn("rawimg_update_disabled");
    switch (kind) {
    case WantedKind::File:
        return file;
    case WantedKind::Adapter:
        return adapter;
    case WantedKind::Disk:
        return disk;
    case WantedKind::Array:
        return array;
    case WantedKind::Vd:
        return vd;
    default:
        return config;
    }
}

void checkWords(const WantedObject& object, WantedKind kind) {
    const std::set<std::string>& known = wordsOf(kind);
    for (const auto& item : object.json.items()) {
        const std::string& word = item.key();
        const bool capital = !word.empty() && word.front() >= 'A' && word.front() <= 'Z';
        // Reports with all records have some fields that begin small, with a stroke further on.
        const bool field = capital || word.find('_') != std::string::npos;
        if (!field && !known.contains(word))
            complain(object, shown(word).c_str(), "is no word of labs or reports here");
    }
}
