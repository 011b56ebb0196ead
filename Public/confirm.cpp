#include "Public/confirm.h"

#include <cstdio>

#include "Public/interrupt.h"
#include "Public/output.h"

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
