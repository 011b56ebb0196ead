#include "ktsetup/completion.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <readline/readline.h>
#include <string>
#include <strings.h>
#include <unistd.h>

#include "ktsetup/commandTables.h"

// Readline asks for one candidate a call; `at` counts through all of them. 0 starts over.
static char* nextCommand(const char* text, int state) {
    static int at;
    if (state == 0) at = 0;
    for (size_t length = strlen(text); at < cmdTableSize + inCmdTableSize;) {
        const char* word = at < cmdTableSize ? pCmdTable[at].cmd : pInCmdTable[at - cmdTableSize].cmd;
        ++at;
        if (strncasecmp(word, text, length) == 0) return strdup(word);
    }
    return nullptr;
}

static const OptionSet* completing;

static char* nextOption(const char* text, int state) {
    static int at;
    if (state == 0) at = 0;
    for (size_t length = strlen(text); completing->longOptions[at].name != nullptr;) {
        std::string word = std::string("--") + completing->longOptions[at].name;
        ++at;
        if (strncmp(word.c_str(), text, length) == 0) return strdup(word.c_str());
    }
    return nullptr;
}

static char* nextObject(const char* text, int state) {
    static int at;
    if (state == 0) at = 0;
    for (size_t length = strlen(text); completing->objects[at] != nullptr;) {
        const char* word = completing->objects[at++];
        if (strncasecmp(word, text, length) == 0) return strdup(word);
    }
    return nullptr;
}

// The options of the command that the line begins with, whole or abbreviated; null when it is none or not unique.
static const OptionSet* optionsOfLine() {
    size_t length = strcspn(rl_line_buffer, " \t");
    CommandHandler found = nullptr;
    for (int i = 0; i < cmdTableSize + inCmdTableSize; ++i) {
        const _cmd_struct& row = i < cmdTableSize ? pCmdTable[i] : pInCmdTable[i - cmdTableSize];
        if (strncasecmp(row.cmd, rl_line_buffer, length) != 0) continue;
        if (strlen(row.cmd) == length) return optionsOf(row.cmdHandler);
        if (found != nullptr && found != row.cmdHandler) return nullptr;
        found = row.cmdHandler;
    }
    return found == nullptr ? nullptr : optionsOf(found);
}

// True when the word before `start` is -o or a long option that stands for it.
static bool behindObjectOption(int start) {
    std::string before(rl_line_buffer, static_cast<size_t>(start));
    before.erase(before.find_last_not_of(" \t") + 1);
    size_t word = before.find_last_of(" \t");
    before.erase(0, word == std::string::npos ? 0 : word + 1);
    if (before == "-o") return true;
    for (const option* row = completing->longOptions; row->name != nullptr; ++row) {
        if (row->val == 'o' && before == std::string("--") + row->name) return true;
    }
    return false;
}

static char** complete(const char* text, int start, int) {
    if (start == 0) {
        rl_attempted_completion_over = 1;
        return rl_completion_matches(text, nextCommand);
    }
    completing = optionsOfLine();
    if (completing == nullptr) return nullptr;
    if (completing->objects != nullptr && behindObjectOption(start)) {
        rl_attempted_completion_over = 1;
        return rl_completion_matches(text, nextObject);
    }
    // Anything else is a value; file names are completed, which is what readline does by itself.
    return *text == '-' ? rl_completion_matches(text, nextOption) : nullptr;
}

void installCompletion() {
    rl_readline_name = "ktsetup";
    if (isatty(STDIN_FILENO) == 0) {
        // Nobody is there to be offered words: in a script's line a tab stands between two words, as a blank does.
        rl_bind_key('\t', rl_insert);
        return;
    }
    rl_attempted_completion_function = complete;
}
