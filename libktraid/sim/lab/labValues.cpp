#include "lab/labValues.h"

#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>

namespace sim {

static const Field* fieldNamed(const RecordFields& table, const std::string& name) {
    for (size_t i = 0; i < table.fieldCount; ++i)
        if (name == table.fields[i].name) return &table.fields[i];
    return nullptr;
}

std::string toHex(const void* bytes, size_t size) {
    static const char DIGITS[] = "0123456789abcdef";
    std::string hex;
    for (size_t i = 0; i < size; ++i) {
        const unsigned byte = static_cast<const unsigned char*>(bytes)[i];
        hex += DIGITS[byte >> 4];
        hex += DIGITS[byte & 15];
    }
    return hex;
}

std::string textToBytes(const std::string& text, const std::string& path) {
    std::string bytes;
    for (size_t i = 0; i < text.size(); ++i) {
        const auto lead = static_cast<unsigned char>(text[i]);
        if (lead < 0x80) {
            bytes += text[i];
            continue;
        }
        // C2 and C3 lead the code points 80 to FF: one byte each in a record.
        if ((lead != 0xC2 && lead != 0xC3) || i + 1 == text.size())
            throw LabError{path + ": characters beyond U+00FF do not fit a record"};
        bytes += static_cast<char>(((lead & 3) << 6) | (text[++i] & 0x3F));
    }
    return bytes;
}

std::string bytesToText(const void* bytes, size_t size) {
    std::string text;
    for (size_t i = 0; i < size; ++i) {
        const unsigned byte = static_cast<const unsigned char*>(bytes)[i];
        if (byte < 0x80) {
            text += static_cast<char>(byte);
            continue;
        }
        text += static_cast<char>(0xC0 | (byte >> 6));
        text += static_cast<char>(0x80 | (byte & 0x3F));
    }
    return text;
}

static void setNumber(const Field& field, unsigned char* at, const Json& value, const std::string& path) {
    if (!value.is_number_integer() && !value.is_boolean()) throw LabError{path + ": should be a whole number"};
    KT_U64 number = value.is_boolean() ? KT_U64{value.get<bool>()} : 0;
    if (value.is_number_unsigned()) number = value.get<KT_U64>();
    const bool negative = value.is_number_integer() && !value.is_number_unsigned() && value.get<int64_t>() < 0;
    if (negative && field.type != FieldType::Signed) throw LabError{path + ": should not be negative"};
    if (value.is_number_integer() && !value.is_number_unsigned()) number = static_cast<KT_U64>(value.get<int64_t>());
    const unsigned bits = static_cast<unsigned>(field.size * 8);
    const KT_U64 largest = bits == 64 ? NEVER : (KT_U64{1} << (field.type == FieldType::Signed ? bits - 1 : bits)) - 1;
    if (!negative && number > largest) throw LabError{path + ": is larger than " + std::to_string(largest)};
    if (negative && bits < 64 && ~number > largest) throw LabError{path + ": is too small"};
    memcpy(at, &number, field.size);
}

static int hexDigit(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    return -1;
}

static void setHex(const Field& field, unsigned char* at, const Json& value, const std::string& path) {
    const std::string hex = value.is_string() ? value.get<std::string>() : "?";
    if (hex.size() > field.size * 2 || hex.size() % 2)
        throw LabError{path + ": should be at most " + std::to_string(field.size) + " bytes in hexadecimal"};
    memset(at, 0, field.size);
    for (size_t i = 0; i < hex.size(); ++i) {
        const int digit = hexDigit(hex[i]);
        if (digit < 0) throw LabError{path + ": should be bytes in hexadecimal"};
        at[i / 2] = static_cast<unsigned char>(at[i / 2] << 4 | digit);
    }
}

static void setText(const Field& field, unsigned char* at, const Json& value, const std::string& path) {
    if (!value.is_string()) throw LabError{path + ": should be a text"};
    const std::string bytes = textToBytes(value.get<std::string>(), path);
    if (bytes.size() > field.size)
        throw LabError{path + ": is longer than " + std::to_string(field.size) + " characters"};
    memset(at, 0, field.size);
    std::copy(bytes.begin(), bytes.end(), at);
}

static void setElement(const Field& field, unsigned char* at, const Json& value, const std::string& path) {
    if (field.type == FieldType::Text) {
        setText(field, at, value, path);
    } else if (field.type == FieldType::Hex) {
        setHex(field, at, value, path);
    } else {
        setNumber(field, at, value, path);
    }
}

// A last element "..." repeats the one before it to the end of the field.
static const char REPEATED[] = "...";

static void setList(const Field& field, unsigned char* at, const Json& value, const std::string& path) {
    if (!value.is_array() || value.size() > field.count + 1)
        throw LabError{path + ": should be a list of at most " + std::to_string(field.count)};
    size_t given = value.size();
    const bool repeated = given > 1 && value.back().is_string() && value.back() == REPEATED;
    if (repeated) given--;
    if (given > field.count) throw LabError{path + ": has more than " + std::to_string(field.count) + " entries"};
    memset(at, 0, field.size * field.count);
    for (size_t i = 0; i < given; ++i)
        setElement(field, at + i * field.size, value[i], path + "[" + std::to_string(i) + "]");
    for (size_t i = given; repeated && i < field.count; ++i)
        memcpy(at + i * field.size, at + (given - 1) * field.size, field.size);
}

bool setField(const RecordFields& table, void* record, const std::string& name, const Json& value,
              const std::string& path) {
    return setFieldAt(table, record, name, value, path + "." + name);
}

bool setFieldAt(const RecordFields& table, void* record, const std::string& name, const Json& value,
                const std::string& place) {
    const Field* field = fieldNamed(table, name);
    if (!field) return false;
    unsigned char* at = static_cast<unsigned char*>(record) + field->offset;
    if (field->count == 1) {
        setElement(*field, at, value, place);
        return true;
    }
    setList(*field, at, value, place);
    return true;
}

static bool allZero(const unsigned char* bytes, size_t size) {
    for (size_t i = 0; i < size; ++i)
        if (bytes[i]) return false;
    return true;
}

static Json elementToJson(const Field& field, const unsigned char* at) {
    if (field.type == FieldType::Hex) return toHex(at, field.size);
    if (field.type == FieldType::Text) {
        size_t length = field.size;
        while (length > 0 && at[length - 1] == 0)
            --length;
        return bytesToText(at, length);
    }
    KT_U64 number = 0;
    memcpy(&number, at, field.size);
    if (field.type == FieldType::Number) return number;
    return field.size == sizeof(KT_S16) ? static_cast<KT_S16>(number) : static_cast<int64_t>(number);
}

static Json listToJson(const Field& field, const unsigned char* at, size_t used) {
    size_t distinct = used;
    if (used == field.count) {
        while (distinct > 1 &&
               memcmp(at + (distinct - 1) * field.size, at + (distinct - 2) * field.size, field.size) == 0)
            --distinct;
    }
    Json list = Json::array();
    for (size_t i = 0; i < distinct; ++i)
        list.push_back(elementToJson(field, at + i * field.size));
    if (distinct < used) list.push_back(REPEATED);
    return list;
}

Json fieldsToJson(const RecordFields& table, const void* record) {
    Json object = Json::object();
    for (size_t f = 0; f < table.fieldCount; ++f) {
        const Field& field = table.fields[f];
        const unsigned char* at = static_cast<const unsigned char*>(record) + field.offset;
        size_t used = field.count;
        while (used > 0 && allZero(at + (used - 1) * field.size, field.size))
            --used;
        if (used == 0) continue;
        if (field.count == 1) {
            object[field.name] = elementToJson(field, at);
            continue;
        }
        object[field.name] = listToJson(field, at, used);
    }
    return object;
}

} // namespace sim
