#include "lab/labReader.h"

#include "lab/labValues.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <nlohmann/json.hpp>

namespace sim {

LabReader readObject(const Json& object, const std::string& path) {
    if (!object.is_object()) throw LabError{path + ": should be an object"};
    return LabReader{object, path, {}};
}

void failLab(const LabReader& reader, const char* word, const std::string& what) {
    throw LabError{(reader.path.empty() ? "" : reader.path + ".") + word + ": " + what};
}

bool hasWord(const LabReader& reader, const char* word) {
    return reader.object.contains(word);
}

bool isNumber(const LabReader& reader, const char* word) {
    return hasWord(reader, word) && reader.object[word].is_number();
}

bool isFlag(const LabReader& reader, const char* word) {
    return hasWord(reader, word) && reader.object[word].is_boolean();
}

size_t wordCount(const LabReader& reader) {
    return reader.object.size();
}

LabReader objectIn(const LabReader& reader, const char* word) {
    return readObject(reader.object[word], reader.path + "." + word);
}

std::optional<double> amountOf(const Json& value) {
    return value.is_number() ? std::optional(value.get<double>()) : std::nullopt;
}

bool isList(const Json& value) {
    return value.is_array();
}

KT_U64 wholeNumber(const Json& value) {
    return value.is_number_unsigned() ? value.get<KT_U64>() : NEVER;
}

std::vector<KT_U64> wholeNumbers(const Json& value) {
    std::vector<KT_U64> numbers;
    for (const Json& each : value.is_array() ? value : Json::array({value}))
        numbers.push_back(wholeNumber(each));
    return numbers;
}

const Json* take(LabReader& reader, const char* word) {
    const auto found = reader.object.find(word);
    if (found == reader.object.end()) return nullptr;
    reader.taken.insert(word);
    return &*found;
}

KT_U64 takeNumber(LabReader& reader, const char* word, KT_U64 absent, KT_U64 largest) {
    const Json* value = take(reader, word);
    if (!value) return absent;
    if (!value->is_number_unsigned()) failLab(reader, word, "should be a whole number");
    const KT_U64 number = value->get<KT_U64>();
    if (number > largest) failLab(reader, word, "is larger than " + std::to_string(largest));
    return number;
}

bool takeFlag(LabReader& reader, const char* word, bool absent) {
    const Json* value = take(reader, word);
    if (!value) return absent;
    if (!value->is_boolean()) failLab(reader, word, "should be true or false");
    return value->get<bool>();
}

std::string takeText(LabReader& reader, const char* word, const std::string& absent) {
    const Json* value = take(reader, word);
    if (!value) return absent;
    if (!value->is_string()) failLab(reader, word, "should be a text");
    return value->get<std::string>();
}

KT_U64 takeSize(LabReader& reader, const char* word, KT_U64 absent) {
    static const struct {
        const char* unit;
        double bytes;
    } UNITS[] = {{"KB", 1e3},           {"MB", 1e6},
                 {"GB", 1e9},           {"TB", 1e12},
                 {"KiB", 1024.0},       {"MiB", 1048576.0},
                 {"GiB", 1073741824.0}, {"TiB", 1099511627776.0},
                 {"PB", 1e15},          {"PiB", 1125899906842624.0}};
    const Json* value = take(reader, word);
    if (!value) return absent;
    if (value->is_number_unsigned()) return value->get<KT_U64>();
    const std::string text = value->is_string() ? value->get<std::string>() : "";
    char* end = nullptr;
    const double amount = strtod(text.c_str(), &end);
    for (const auto& unit : UNITS) {
        const double bytes = amount * unit.bytes;
        if (end != text.c_str() && strcmp(end, unit.unit) == 0 && std::isfinite(bytes) && bytes >= 0 && bytes < 9e18)
            return static_cast<KT_U64>(bytes);
    }
    failLab(reader, word, "should be an amount such as \"500GB\" or \"64MiB\", or a number of bytes");
}

KT_U64 takeUnits(LabReader& reader, const char* word, KT_U64 unit, KT_U64 absent) {
    const Json* value = take(reader, word);
    if (!value) return absent;
    if (!value->is_number_unsigned()) failLab(reader, word, "should be a number of bytes");
    const KT_U64 bytes = value->get<KT_U64>();
    if (unit == 0 || bytes % unit != 0) failLab(reader, word, "is no multiple of " + std::to_string(unit) + " bytes");
    return bytes / unit;
}

std::vector<KT_U16> takeIds(LabReader& reader, const char* word) {
    std::vector<KT_U16> ids;
    const Json* value = take(reader, word);
    if (!value) return ids;
    if (!value->is_array()) failLab(reader, word, "should be a list of ids");
    for (const Json& id : *value) {
        if (!id.is_null() && (!id.is_number_unsigned() || id.get<KT_U64>() >= KT_NO_ID))
            failLab(reader, word, "should be a list of ids");
        ids.push_back(id.is_null() ? KT_U16{KT_NO_ID} : id.get<KT_U16>());
    }
    return ids;
}

int takeWord(LabReader& reader, const char* word, const LabWord* words, size_t count, int absent) {
    const Json* value = take(reader, word);
    if (!value) return absent;
    std::string known;
    for (size_t i = 0; i < count; ++i) {
        if (value->is_string() && *value == words[i].word) return words[i].value;
        known += (i ? ", " : "") + std::string(words[i].word);
    }
    failLab(reader, word, "should be one of: " + known);
}

KT_U32 takeBits(LabReader& reader, const char* word, std::span<const WordBit> words) {
    const Json* value = take(reader, word);
    KT_U32 bits = 0;
    if (!value) return bits;
    if (!value->is_array()) failLab(reader, word, "should be a list of words");
    for (const Json& one : *value) {
        bool known = false;
        for (const WordBit& each : words) {
            if (!one.is_string() || one != each.word) continue;
            bits |= each.bit;
            known = true;
        }
        if (!known) failLab(reader, word, "has a word that is not known: " + one.dump(-1, ' ', true));
    }
    return bits;
}

std::vector<LabReader> takeObjects(LabReader& reader, const char* word) {
    std::vector<LabReader> objects;
    const Json* value = take(reader, word);
    if (!value) return objects;
    const std::string path = reader.path.empty() ? word : reader.path + "." + word;
    if (value->is_object()) {
        objects.push_back(readObject(*value, path));
        return objects;
    }
    if (!value->is_array()) failLab(reader, word, "should be a list of objects");
    for (size_t i = 0; i < value->size(); ++i)
        objects.push_back(readObject((*value)[i], path + "[" + std::to_string(i) + "]"));
    return objects;
}

std::vector<LabReader> repeatObjects(LabReader& reader, const char* word) {
    std::vector<LabReader> repeated;
    for (LabReader& object : takeObjects(reader, word)) {
        const KT_U64 copies = takeNumber(object, "count", 1, 65000);
        for (KT_U64 copy = 0; copy < copies; ++copy)
            repeated.push_back(object);
    }
    return repeated;
}

void putText(const LabReader& reader, const char* word, const std::string& text, KT_U8* field, size_t size) {
    const std::string bytes = textToBytes(text, reader.path + "." + word);
    if (bytes.size() > size) failLab(reader, word, "is longer than " + std::to_string(size) + " characters");
    memset(field, 0, size);
    std::copy(bytes.begin(), bytes.end(), field);
}

void takeFields(LabReader& reader, Kind kind, void* record) {
    const RecordFields* table = fieldsOf(kind);
    for (const auto& [name, value] : reader.object.items()) {
        if (reader.taken.count(name)) continue;
        if (table && setField(*table, record, name, value, reader.path)) reader.taken.insert(name);
    }
}

void takeNothingElse(const LabReader& reader) {
    for (const auto& item : reader.object.items())
        if (!reader.taken.count(item.key())) failLab(reader, item.key().c_str(), "is not a word that labs know here");
}

} // namespace sim
