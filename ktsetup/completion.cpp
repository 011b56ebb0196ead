#include "ktsetup/completion.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <strings.h>
#include <unistd.h>
#include <vector>

#include "ktsetup/commandTables.h"
#include "ktsetup/lineEditor.h"
#include "ktsetup/values.h"

// What is offered at the moment: `kept` of the typed text stays in front of each word. Made when the shell starts, and
// never destroyed: a one-shot run has nothing to do with it.
namespace {
struct Offer {
    std::vector<Candidate> candidates;
    std::string kept;
};
} // namespace
static Offer* offered = nullptr;

// Readline asks for one candidate a call. 0 starts over.
static char* nextOffered(const char* text, int state) {
    static size_t at;
    if (state == 0) at = 0;
    const char* begun = text + offered->kept.size();
    while (at < offered->candidates.size()) {
        const std::string& word = offered->candidates[at++].word;
        if (strncasecmp(word.c_str(), begun, strlen(begun)) == 0) return strdup((offered->kept + word).c_str());
    }
    return nullptr;
}

static char** offer(const char* text, std::vector<Candidate> candidates, size_t keep = 0) {
    *offered = {std::move(candidates), std::string(text, keep)};
    return editor.completionMatches(text, nextOffered);
}

// Shows the matches without what is kept, and each object with its name beside. matches[0] is what they have in common.
static void showMatches(char** matches, int count, int) {
    std::vector<std::string> lines = {matches[0]};
    size_t longest = 0;
    for (int i = 1; i <= count; ++i) {
        std::string word = matches[i];
        if (word.compare(0, offered->kept.size(), offered->kept) == 0) word.erase(0, offered->kept.size());
        const auto& candidates = offered->candidates;
        const auto isWord = [&](const Candidate& candidate) { return candidate.word == word; };
        const auto found = std::find_if(candidates.begin(), candidates.end(), isWord);
        const bool labelled = found != candidates.end() && !found->label.empty();
        lines.push_back(labelled ? word + " (" + found->label + ")" : word);
        longest = std::max(longest, lines.back().size());
    }
    std::vector<char*> shown;
    for (std::string& line : lines) {
        shown.push_back(line.data());
    }
    shown.push_back(nullptr);
    editor.displayMatches(shown.data(), count, static_cast<int>(longest));
    editor.redisplay();
}

static const _cmd_struct& rowAt(int i) {
    return i < cmdTableSize ? pCmdTable[i] : pInCmdTable[i - cmdTableSize];
}

static std::vector<Candidate> commandWords() {
    std::vector<Candidate> words;
    for (int i = 0; i < cmdTableSize + inCmdTableSize; ++i) {
        const auto isWord = [&](const Candidate& candidate) { return candidate.word == rowAt(i).cmd; };
        if (std::none_of(words.begin(), words.end(), isWord)) words.push_back({rowAt(i).cmd, {}});
    }
    return words;
}

static std::vector<Candidate> optionWords(const OptionSet& set) {
    std::vector<Candidate> words;
    for (const LongOption* row = set.longOptions; row->value != 0; ++row) {
        if (row->name[0] != '\0') words.push_back({std::string("--") + row->name, {}});
    }
    return words;
}

// The options of a command, whole or abbreviated; null when it is none or not unique.
static const OptionSet* optionsOfCommand(const std::string& word) {
    CommandHandler found = nullptr;
    for (int i = 0; i < cmdTableSize + inCmdTableSize; ++i) {
        const _cmd_struct& row = rowAt(i);
        if (strncasecmp(row.cmd, word.c_str(), word.size()) != 0) continue;
        if (strlen(row.cmd) == word.size()) return optionsOf(row.cmdHandler);
        if (found != nullptr && found != row.cmdHandler) return nullptr;
        found = row.cmdHandler;
    }
    return found == nullptr ? nullptr : optionsOf(found);
}

// The words of a line as the shell splits it; the last one is what stands in front of the cursor, and may be empty.
static std::vector<std::string> wordsBefore(const char* line, size_t length) {
    std::vector<std::string> words = {""};
    bool quoted = false;
    for (size_t i = 0; i < length; ++i) {
        if (line[i] == '"') quoted = !quoted;
        if (quoted || (line[i] != ' ' && line[i] != '\t')) {
            words.back() += line[i];
        } else if (!words.back().empty()) {
            words.emplace_back();
        }
    }
    return words;
}

// An option in a word, and where its value begins in it: "-o", "-ovd", "--object", "--object=vd".
struct OptionUse {
    const LongOption* option = nullptr;
    size_t value = std::string::npos; // npos: the next word
};

static OptionUse optionIn(const OptionSet& set, const std::string& word) {
    const bool isLong = word.compare(0, 2, "--") == 0;
    if (word.size() < 2 || word[0] != '-' || word == "--") return {};
    const size_t equals = isLong ? word.find('=') : std::string::npos;
    const std::string name = isLong ? word.substr(2, equals == std::string::npos ? equals : equals - 2) : std::string();
    OptionUse use;
    for (const LongOption* row = set.longOptions; row->value != 0; ++row) {
        const bool fits = isLong ? strncmp(row->name, name.c_str(), name.size()) == 0 : row->value == word[1];
        if (!fits || row->takes == Takes::Nothing) continue;
        use.option = row;
        if (!isLong || name == row->name) break;
    }
    if (use.option != nullptr && isLong && equals != std::string::npos) use.value = equals + 1;
    if (use.option != nullptr && !isLong && word.size() > 2) use.value = 2;
    return use;
}

// The word that -o has on the line.
static std::string objectOf(const OptionSet& set, const std::vector<std::string>& words) {
    for (size_t i = 1; i + 1 < words.size(); ++i) {
        const OptionUse use = optionIn(set, words[i]);
        if (use.option == nullptr || use.option->value != 'o') continue;
        return use.value == std::string::npos ? words[i + 1] : words[i].substr(use.value);
    }
    return {};
}

// A name with a quote in it cannot be typed in this shell.
static char* nextFileName(const char* text, int state) {
    char* name = editor.nextFileName(text, state);
    while (name != nullptr && strchr(name, '"') != nullptr) {
        free(name);
        name = editor.nextFileName(text, 1);
    }
    return name;
}

static char** offerValues(const char* text, const OptionSet& set, const LongOption& option, const std::string& object) {
    if (option.takes == Takes::File) {
        *editor.sortMatches = 1;
        return editor.completionMatches(text, nextFileName);
    }
    std::vector<Candidate> values = valuesOf(set, option, object);
    if (option.takes != Takes::Disks) return offer(text, std::move(values));
    // Behind each disk of a list may come another, and none comes twice.
    const size_t keep = std::string(text).find_last_of(',') + 1;
    const std::string listed = "," + std::string(text, keep);
    const auto isListed = [&](const Candidate& disk) {
        return listed.find("," + disk.word + ",") != std::string::npos;
    };
    values.erase(std::remove_if(values.begin(), values.end(), isListed), values.end());
    *editor.appended = '\0';
    return offer(text, std::move(values), keep);
}

static char** complete(const char* text, int start, int) {
    *editor.completionOver = 1;
    *editor.sortMatches = 0;
    *offered = {};
    std::vector<std::string> words = wordsBefore(*editor.lineBuffer, static_cast<size_t>(start));
    // Readline begins the text behind a quote or an equals sign; what stands there belongs to the word.
    const std::string glued = words.back();
    if (words.size() == 1 && glued.empty()) return offer(text, commandWords());
    const OptionSet* set = optionsOfCommand(words[0]);
    if (set == nullptr) return nullptr;
    const std::string object = objectOf(*set, words);
    if (!glued.empty() && glued[0] == '-') {
        const OptionUse use = optionIn(*set, glued);
        return use.option == nullptr ? nullptr : offerValues(text, *set, *use.option, object);
    }
    if (words.size() >= 3) {
        const OptionUse use = optionIn(*set, words[words.size() - 2]);
        if (use.option != nullptr && use.value == std::string::npos)
            return offerValues(text, *set, *use.option, object);
    }
    if (*text == '-') return offer(text, optionWords(*set));
    return set == optionsOf(pCmdTable[0].cmdHandler) ? offer(text, commandWords()) : nullptr;
}

void installCompletion() {
    *editor.name = "ktsetup";
    offered = new Offer;
    if (isatty(STDIN_FILENO) == 0) {
        // Nobody is there to be offered words: in a script's line a tab stands between two words, as a blank does.
        editor.bindKey('\t', editor.insert);
        return;
    }
    // As the shell splits its lines: a file name with a blank is put in quotes and stays one word.
    *editor.wordBreaks = " \t\"=";
    *editor.quotes = "\"";
    *editor.quotedInFileNames = " \t=";
    *editor.attemptedCompletion = complete;
    *editor.displayHook = showMatches;
}
