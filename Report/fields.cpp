#include "Report/fields.h"

#include <limits>

void addCode(Json& object, const char* word, CodeWords words, unsigned code, const char* field) {
    if (const char* known = wordOf(words, code)) {
        add(object, word, known);
    } else {
        add(object, field, code);
    }
}

Json wordsOfBits(CodeWords words, unsigned bits) {
    Json list = Json::array();
    for (const CodeWord& row : words) {
        if (bits & row.code) list.push_back(row.word);
    }
    return list;
}

void addProduct(Json& object, const char* word, KT_U64 units, KT_U64 unit) {
    if (unit != 0 && units <= std::numeric_limits<KT_U64>::max() / unit) add(object, word, units * unit);
}
