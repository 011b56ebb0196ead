#include "Public/interrupt.h"

#include <cerrno>
#include <csignal>
#include <poll.h>
#include <pthread.h>
#include <unistd.h>

static volatile sig_atomic_t noted = 0;

static void note(int) {
    noted = 1;
}

// Puts the handler in place of whatever there was, which is answered. A call of the library is not to be cut short.
static struct sigaction handleInterrupt() {
    struct sigaction before = {};
    sigaction(SIGINT, nullptr, &before);
    if (before.sa_handler == SIG_IGN) return before;
    struct sigaction action = {};
    action.sa_handler = note;
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

bool waitForInput(int fd, void (*atSignal)()) {
    if (isatty(fd) == 0) return true;
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
    pollfd input = {fd, POLLIN, 0};
    while (!interrupted() && ppoll(&input, 1, nullptr, &mask) < 0 && errno == EINTR) {
        if (atSignal != nullptr) atSignal();
    }
    pthread_sigmask(SIG_SETMASK, &mask, nullptr);
    sigaction(SIGINT, &before, nullptr);
    return !interrupted();
}
