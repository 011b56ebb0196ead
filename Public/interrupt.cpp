#include "Public/interrupt.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <unistd.h>

static volatile sig_atomic_t noted = 0;

static void noteInterrupt(int) {
    noted = 1;
}

// Puts the handler in place of whatever there was, which is answered. A call of the library is not to be cut short.
static struct sigaction handleInterrupt() {
    struct sigaction before = {};
    sigaction(SIGINT, nullptr, &before);
    if (before.sa_handler == SIG_IGN) return before;
    struct sigaction action = {};
    action.sa_handler = noteInterrupt;
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    return before;
}

void catchInterrupts() {
    handleInterrupt();
}

bool interrupted() {
    return noted != 0;
}

void forgetInterrupt() {
    noted = 0;
}

// False when Ctrl-C came first or before: then nothing is to be read.
static bool waitForTerminal(void (*atSignal)()) {
    const struct sigaction before = handleInterrupt();
    if (atSignal != nullptr) {
        // A signal that came while the editor was at work, in a completion say, was only noted by the editor. Its look
        // at it puts its own handler back.
        atSignal();
        handleInterrupt();
    }
    sigset_t interrupt;
    sigset_t mask;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    // One that comes between the question whether there was one and the waiting would be missed.
    pthread_sigmask(SIG_BLOCK, &interrupt, &mask);
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    while (!interrupted() && ppoll(&input, 1, nullptr, &mask) < 0 && errno == EINTR) {
        if (atSignal != nullptr) atSignal();
    }
    pthread_sigmask(SIG_SETMASK, &mask, nullptr);
    sigaction(SIGINT, &before, nullptr);
    return !interrupted();
}

// The terminal of standard input opened once more, such that reading from it never waits.
static int openUnwaiting() {
    const int fd = open("/proc/self/fd/0", O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    return fd < 0 ? STDIN_FILENO : fd;
}

// Between the waiting and the reading Ctrl-C may come and throw away what there was to read. A read that waits would
// not return before the next key.
static ssize_t readTyped(unsigned char& byte, void (*atSignal)()) {
    static int terminal = -1;
    if (terminal < 0) terminal = openUnwaiting();
    ssize_t got = -1;
    while (got < 0 && waitForTerminal(atSignal)) {
        got = read(terminal, &byte, 1);
        if (got < 0 && errno != EINTR && errno != EAGAIN) return got;
    }
    return got;
}

int readInputByte(void (*atSignal)()) {
    unsigned char byte = 0;
    ssize_t got = -1;
    if (isatty(STDIN_FILENO) != 0) {
        got = readTyped(byte, atSignal);
    } else {
        do {
            got = read(STDIN_FILENO, &byte, 1);
        } while (got < 0 && errno == EINTR);
    }
    return got == 1 ? byte : EOF;
}
