#include "ktsetup/historyLine.h"

#include <cstring>
#include <strings.h>

namespace {
struct Span {
    size_t from;
    size_t to; // behind the last character
};
// What follows an option's word.
enum class Follows { Nothing, Secret };
} // namespace

// The next word from `at` on, quotes included; an open quote reaches to the end of the line. Empty behind the last one.
static Span nextWord(const std::string& line, size_t at) {
    size_t from = line.find_first_not_of(" \t", at);
    if (from == std::string::npos) return {line.size(), line.size()};
    bool quoted = false;
    size_t to = from;
    for (; to < line.size() && (quoted || strchr(" \t", line[to]) == nullptr); ++to) {
        if (line[to] == '"') quoted = !quoted;
    }
    return {from, to};
}

// A line with a slip of the pen in its command holds the secret all the same.
static bool takesSecrets(const std::string& command) {
    if (command.empty()) return false;
    for (const char* name : {"aesop", "aesentry", "aesport", "forceonline"}) {
        if (strncasecmp(name, command.c_str(), command.size()) == 0) return true;
    }
    return strncasecmp(command.c_str(), "aes", 3) == 0 || strncasecmp(command.c_str(), "forceo", 6) == 0;
}

// A long name may be cut short.
static bool isSecretName(const std::string& name) {
    for (const char* secret : {"password", "oldpassword", "key"}) {
        if (!name.empty() && strncmp(secret, name.c_str(), name.size()) == 0) return true;
    }
    return false;
}

// Where a secret begins in a word with an option; its end when there is none. Follows says whether the next word is
// one.
static size_t secretStart(const std::string& word, Follows& follows) {
    follows = Follows::Nothing;
    if (word.compare(0, 2, "--") == 0) {
        const size_t equals = word.find('=');
        if (!isSecretName(word.substr(2, equals == std::string::npos ? equals : equals - 2))) return word.size();
        if (equals != std::string::npos) return equals + 1;
        follows = Follows::Secret;
        return word.size();
    }
    // Letters stand together until one of them takes what is left of the word as its value.
    const size_t valued = word[0] == '-' ? word.find_first_of("oiepwk", 1) : std::string::npos;
    if (valued == std::string::npos || strchr("pwk", word[valued]) == nullptr) return word.size();
    if (valued + 1 == word.size()) follows = Follows::Secret;
    return valued + 1;
}

std::string withoutSecrets(const std::string& line) {
    Span word = nextWord(line, 0);
    if (!takesSecrets(line.substr(word.from, word.to - word.from))) return line;
    std::string kept = line.substr(0, word.to);
    Follows follows = Follows::Nothing;
    for (size_t at = word.to; at < line.size(); at = word.to) {
        word = nextWord(line, at);
        kept.append(line, at, word.from - at);
        if (follows == Follows::Secret) {
            follows = Follows::Nothing;
            continue;
        }
        const std::string text = line.substr(word.from, word.to - word.from);
        kept.append(text, 0, secretStart(text, follows));
    }
    return kept;
}
