#include "ktsetup/shell.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <readline/history.h>
#include <readline/readline.h>
#include <unistd.h>

#include "Public/common.h"
#include "ktsetup/completion.h"

namespace {
using Line = std::unique_ptr<char, decltype(&free)>;
using Words = std::unique_ptr<char*, decltype(&free)>;
} // namespace

// Readline takes over the user's locale, which it needs to edit a line, for the whole process. Commands are to read
// words and print alike everywhere (in Turkish, "WRITE" is not another case of "write"), so they run in the plain one.
static char* readInUsersLocale() {
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
    uselocale(LC_GLOBAL_LOCALE);
    char* line = readline("> ");
    uselocale(plain);
    return line;
}

// The next line; the end of input does not end the shell. What has ended stays ended, so the prompt comes back more and
// more slowly rather than at the full speed of a core.
static Line readLine() {
    static constexpr useconds_t LONGEST_WAIT = 1000000;
    for (useconds_t wait = 1000;; wait = wait < LONGEST_WAIT ? wait * 2 : LONGEST_WAIT) {
        flushOutput();
        Line line(readInUsersLocale(), &free);
        if (line != nullptr) return line;
        fflush(stdout);
        usleep(wait);
    }
}

// Runs one line; false when it asks to leave the shell.
static bool runLine(char* line, char** words) {
    int count = 0;
    if (parse(&count, words, line) == 0) {
        out("Invalid quoted string.\n");
        return true;
    }
    if (count == 0) {
        out("Type 'exit' to exit CLI.\n");
        return true;
    }
    words[count] = nullptr;
    return cmdDispatcher(count, words) != -1;
}

void runShell() {
    printVersionLine();
    out("Welcome to RAID Command Line Interface.\n\n");
    installCompletion();
    for (bool goOn = true; goOn;) {
        Line line = readLine();
        add_history(line.get());
        // Every word takes at least one character of the line, so this many pointers are always enough.
        Words words(static_cast<char**>(calloc(strlen(line.get()) + 2, sizeof(char*))), &free);
        if (words == nullptr) continue;
        goOn = runLine(line.get(), words.get());
    }
}
