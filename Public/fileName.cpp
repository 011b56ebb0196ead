#include "Public/fileName.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <sys/stat.h>
#include <wordexp.h>

std::string unquotedName(const char* value) {
    if (*value != '"') return value;
    return {value + 1, strcspn(value + 1, "\"")};
}

static std::string withBlanksKept(const std::string& name) {
    std::string kept;
    for (char c : name) {
        if (c == ' ' || c == '\t') kept += '\\';
        kept += c;
    }
    return kept;
}

// The library's expansion goes down a level for each folder of a pattern, and no file has a longer name.
static bool isTooLong(const std::string& name) {
    static constexpr auto MOST_FOLDERS = 256;
    return name.size() >= PATH_MAX || std::count(name.begin(), name.end(), '/') > MOST_FOLDERS;
}

bool expandName(const std::string& name, bool quoted, std::string& path) {
    if (isTooLong(name)) return false;
    struct stat file;
    if (quoted && lstat(name.c_str(), &file) == 0) {
        path = name;
        return true;
    }
    wordexp_t words = {};
    const int status = wordexp((quoted ? withBlanksKept(name) : name).c_str(), &words, WRDE_NOCMD);
    if (quoted && (status == WRDE_BADCHAR || status == WRDE_SYNTAX)) {
        path = name;
        return true;
    }
    const bool expanded = status == 0 && words.we_wordc > 0 && *words.we_wordv[0] != '\0';
    if (expanded) path = words.we_wordv[0];
    // Words that were found before the memory ran out are released as well.
    if (status == 0 || status == WRDE_NOSPACE) wordfree(&words);
    return expanded;
}

std::string shownName(const std::string& name) {
    std::string shown = name;
    for (char& c : shown) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '?';
    }
    return shown;
}
