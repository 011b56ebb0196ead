#include "Report/json.h"

#include <ctime>

std::string textOfBytes(const void* bytes, size_t size) {
    const auto* at = static_cast<const unsigned char*>(bytes);
    while (size > 0 && at[size - 1] == 0)
        --size;
    std::string text;
    for (size_t i = 0; i < size; ++i) {
        if (at[i] < 0x80) {
            text += static_cast<char>(at[i]);
            continue;
        }
        text += static_cast<char>(0xC0 | at[i] >> 6);
        text += static_cast<char>(0x80 | (at[i] & 0x3F));
    }
    return text;
}

std::string hexOfBytes(const void* bytes, size_t size) {
    static const char digits[] = "0123456789abcdef";
    std::string hex;
    hex.reserve(2 * size);
    for (size_t i = 0; i < size; ++i) {
        unsigned byte = static_cast<const unsigned char*>(bytes)[i];
        hex += digits[byte >> 4];
        hex += digits[byte & 15];
    }
    return hex;
}

std::string timeText(KT_U64 seconds) {
    auto time = static_cast<time_t>(seconds);
    tm parts = {};
    char text[40] = "";
    if (gmtime_r(&time, &parts) != nullptr) strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text;
}

std::string shown(const std::string& text) {
    std::string safe;
    for (size_t i = 0; i < text.size() && text[i] != '\0'; ++i) {
        auto byte = static_cast<unsigned char>(text[i]);
        // The bytes behind the first of a character of several are part of its one '?'.
        if ((byte & 0xC0) == 0x80) continue;
        safe += byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '?';
    }
    while (!safe.empty() && safe.back() == ' ')
        safe.pop_back();
    return safe;
}

void fitObject(Json& object) {
    object.get_ref<Json::object_t&>().shrink_to_fit();
}
