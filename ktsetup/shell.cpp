#include "ktsetup/shell.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <unistd.h>

#include "Public/common.h"
#include "Public/hold.h"
#include "Public/interrupt.h"
#include "Public/lostOutput.h"
#include "ktsetup/completion.h"
#include "ktsetup/history.h"
#include "ktsetup/historyLine.h"
#include "ktsetup/lineEditor.h"

namespace {
using Line = std::unique_ptr<char, decltype(&free)>;
using Words = std::unique_ptr<char*, decltype(&free)>;
} // namespace

// Reads a key for readline. Ctrl-C ends the line with what there is of it, which readLine drops.
static int readKey(FILE*) {
    const int key = readInputByte(editor.checkSignals);
    if (!interrupted()) return key;
    fputs("^C", stdout);
    explicit_bzero(*editor.lineBuffer, strlen(*editor.lineBuffer)); // what is dropped may be a password
    editor.replaceLine("", 0);
    return '\n';
}

// Readline takes over the user's locale, which it needs to edit a line, for the whole process. Commands are to read
// words and print alike everywhere (in Turkish, "WRITE" is not another case of "write"), so they run in the plain one.
static char* readInUsersLocale() {
    static locale_t plain;
    if (plain == nullptr) plain = newlocale(LC_ALL_MASK, "C", nullptr);
    uselocale(LC_GLOBAL_LOCALE);
    char* line = editor.readLine("> ");
    uselocale(plain);
    return line;
}

// Without the line editor: the same prompt, and the same echo of lines that nobody typed.
static char* readUnedited() {
    fputs("> ", stdout);
    flushStream(stdout);
    std::string line;
    int byte = readInputByte();
    if (byte == EOF) return nullptr;
    for (; byte != '\n' && byte != EOF; byte = readInputByte()) {
        line += static_cast<char>(byte);
    }
    if (isatty(STDIN_FILENO) == 0) printf("%s\n", line.c_str());
    char* copy = strdup(line.c_str());
    explicit_bzero(line.data(), line.size());
    return copy;
}

// The next line; the end of input does not end the shell. What has ended stays ended, so the prompt comes back more and
// more slowly rather than at the full speed of a core.
static Line readLine() {
    static constexpr useconds_t LONGEST_WAIT = 1000000;
    for (useconds_t wait = 1000;; wait = wait < LONGEST_WAIT ? wait * 2 : LONGEST_WAIT) {
        flushOutput();
        if (editor.addHistory != nullptr) refreshHistory();
        Line line(editor.readLine != nullptr ? readInUsersLocale() : readUnedited(), &free);
        if (interrupted()) {
            if (editor.readLine == nullptr) fputs("\n", stdout);
            forgetInterrupt();
            wait = 500;
            continue;
        }
        if (line != nullptr) return line;
        flushStream(stdout);
        usleep(wait);
    }
}

// A person's Ctrl-C has ended the command, or came while it changed something; either way the prompt comes back. In a
// script it ends the shell.
static void comeBack() {
    if (isatty(STDIN_FILENO) == 0) return;
    forgetHeldInterrupt();
    if (interrupted()) out("\n");
    forgetInterrupt();
}

// Runs one line; false when it asks to leave the shell, or a signal that came meanwhile does.
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
    const int result = cmdDispatcher(count, words);
    comeBack();
    return result != -1 && heldSignal() == 0;
}

static void prepareEditor() {
    const bool typed = isatty(STDIN_FILENO) != 0;
    if (typed) catchInterrupts();
    if (!loadLineEditor()) {
        static const char missing[] =
            "The readline library is not installed: lines are read without editing, history and completion.\n";
        if (typed) fputs(missing, stderr);
        return;
    }
    installCompletion();
    if (!typed) return;
    *editor.readKey = readKey;
    openHistory();
}

// Of what was typed, nobody finds a password or a key behind the up-arrow, or in the editor's memory.
static void remember(const char* line) {
    if (editor.addHistory == nullptr) return;
    addToHistory(withoutSecrets(line));
    explicit_bzero(*editor.lineBuffer, strlen(*editor.lineBuffer));
}

void runShell() {
    printVersionLine();
    out("Welcome to RAID Command Line Interface.\n\n");
    prepareEditor();
    for (bool goOn = true; goOn;) {
        Line line = readLine();
        remember(line.get());
        // Every word takes at least one character of the line, so this many pointers are always enough.
        Words words(static_cast<char**>(calloc(strlen(line.get()) + 2, sizeof(char*))), &free);
        if (words == nullptr) continue;
        const size_t length = strlen(line.get());
        goOn = runLine(line.get(), words.get());
        explicit_bzero(line.get(), length); // a password or a key may have stood in it
    }
}
