#include "ktsetup/completion.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <strings.h>
#include <unistd.h>

#include "ktsetup/commandTables.h"
#include "ktsetup/lineEditor.h"

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
    for (size_t length = strlen(text); completing->longOptions[at].value != 0;) {
        const char* name = completing->longOptions[at++].name;
        if (*name == '\0') continue;
        std::string word = std::string("--") + name;
        if (strncmp(word.c_str(), text, length) == 0) return strdup(word.c_str());
    }
    return nullptr;
}

static const char* objects; // "<vd|pd>"

static char* nextObject(const char* text, int state) {
    static const char* at;
    if (state == 0) at = objects;
    std::string_view word;
    for (size_t length = strlen(text); nextWord(at, word);) {
        if (strncasecmp(word.data(), text, length) == 0) return strndup(word.data(), word.size());
    }
    return nullptr;
}

// The options of the command that the line begins with, whole or abbreviated; null when it is none or not unique.
static const OptionSet* optionsOfLine() {
    size_t length = strcspn(*editor.lineBuffer, " \t");
    CommandHandler found = nullptr;
    for (int i = 0; i < cmdTableSize + inCmdTableSize; ++i) {
        const _cmd_struct& row = i < cmdTableSize ? pCmdTable[i] : pInCmdTable[i - cmdTableSize];
        if (strncasecmp(row.cmd, *editor.lineBuffer, length) != 0) continue;
        if (strlen(row.cmd) == length) return optionsOf(row.cmdHandler);
        if (found != nullptr && found != row.cmdHandler) return nullptr;
        found = row.cmdHandler;
    }
    return found == nullptr ? nullptr : optionsOf(found);
}

// True when the word before `start` is -o or a long option that stands for it.
static bool behindObjectOption(int start) {
    std::string before(*editor.lineBuffer, static_cast<size_t>(start));
    before.erase(before.find_last_not_of(" \t") + 1);
    size_t word = before.find_last_of(" \t");
    before.erase(0, word == std::string::npos ? 0 : word + 1);
    for (const LongOption* row = completing->longOptions; row->value != 0; ++row) {
        if (row->value != 'o' || (before != "-o" && before != std::string("--") + row->name)) continue;
        objects = shownArgument(*completing, *row);
        return true;
    }
    return false;
}

static char** complete(const char* text, int start, int) {
    if (start == 0) {
        *editor.completionOver = 1;
        return editor.completionMatches(text, nextCommand);
    }
    completing = optionsOfLine();
    if (completing == nullptr) return nullptr;
    if (behindObjectOption(start)) {
        *editor.completionOver = 1;
        return editor.completionMatches(text, nextObject);
    }
    // Anything else is a value; file names are completed, which is what readline does by itself.
    return *text == '-' ? editor.completionMatches(text, nextOption) : nullptr;
}

void installCompletion() {
    *editor.name = "ktsetup";
    if (isatty(STDIN_FILENO) == 0) {
        // Nobody is there to be offered words: in a script's line a tab stands between two words, as a blank does.
        editor.bindKey('\t', editor.insert);
        return;
    }
    *editor.attemptedCompletion = complete;
}
