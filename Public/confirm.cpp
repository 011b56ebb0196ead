#include "Public/confirm.h"

#include <cerrno>
#include <unistd.h>

#include "Public/interrupt.h"
#include "Public/output.h"

int readInputByte() {
    unsigned char byte = 0;
    ssize_t got;
    do {
        if (!waitForInput(STDIN_FILENO)) return EOF;
        got = read(STDIN_FILENO, &byte, 1);
    } while (got < 0 && errno == EINTR);
    return got == 1 ? byte : EOF;
}

// The first character of the next line of standard input ('\n' for an empty one), or EOF.
static int readAnswer() {
    flushOutput();
    int first = readInputByte();
    for (int next = first; next != '\n' && next != EOF;) {
        next = readInputByte();
    }
    if (!interrupted()) return first;
    // Declining is all that it does. The terminal has left the cursor behind its "^C".
    forgetInterrupt();
    out("\n");
    return EOF;
}

bool confirmUnlessNo() {
    int answer = readAnswer();
    return answer != EOF && answer != 'n' && answer != 'N';
}

bool confirmYesOrNo() {
    for (;;) {
        int answer = readAnswer();
        if (answer == 'y' || answer == 'Y') return true;
        if (answer == 'n' || answer == 'N' || answer == EOF) return false;
        out("Please input y or n.\n");
    }
}
