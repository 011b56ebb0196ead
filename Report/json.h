// The document's type, and how bytes of records become values of it.
#pragma once

#include <cstring>
#include <nlohmann/json.hpp>
#include <string>

#include "ktraid.h"

// Words stay in the order they were written in, so that the same adapters give the same bytes.
using Json = nlohmann::ordered_json;

// A text field of a record: its bytes without the NULs at its end, those beyond ASCII as U+0080 to U+00FF.
std::string textOfBytes(const void* bytes, size_t size);
template <size_t N>
std::string textOf(const KT_U8 (&field)[N]) {
    return textOfBytes(field, N);
}

// Bytes as lower-case hexadecimal digits, byte 0 first.
std::string hexOfBytes(const void* bytes, size_t size);
template <size_t N>
std::string hexOf(const KT_U8 (&field)[N]) {
    return hexOfBytes(field, N);
}

template <size_t N>
bool isZero(const KT_U8 (&field)[N]) {
    static constexpr KT_U8 zero[N] = {};
    return memcmp(field, zero, N) == 0;
}

// Seconds since 1970 as RFC 3339 in UTC: "2026-11-21T22:10:00Z".
std::string timeText(KT_U64 seconds);

// What a person is shown of a text from an adapter or a file: up to its first NUL, without the blanks at its end, every
// character that is not printable ASCII as '?'.
std::string shown(const std::string& text);

// Gives the words of an object the room they take and no more; a report of many disks is made of many small objects.
void fitObject(Json& object);
