#include "Public/hold.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <pthread.h>
#include <sys/uio.h>
#include <unistd.h>

// A signal that reaches the thread that calls would interrupt the driver in the middle of a transfer, which is then
// made twice or fails. So that thread blocks them, and another one does nothing but wait for them. Threads of the
// library, which this program knows nothing of, may get one as well: then the handler notes it.
namespace {
constexpr int sent[] = {SIGINT, SIGTERM, SIGHUP}; // by a person or the system
constexpr size_t SENT = sizeof sent / sizeof sent[0];

unsigned depth = 0;
std::atomic<const char*> atStake = nullptr;
std::atomic<int> first = 0; // the signal that came first
sigset_t waitedFor;         // those of `sent` that are not ignored
sigset_t held;              // and SIGPIPE, unless it is ignored
sigset_t maskBefore;
struct sigaction before[SENT];
struct sigaction fileLimitBefore;
pthread_t waiter;
bool waiting = false; // there is a waiter
} // namespace

static iovec piece(const char* text) {
    return {const_cast<char*>(text), strlen(text)};
}

// Async-signal-safe.
static void note(int number) {
    const int reason = errno;
    int none = 0;
    if (!first.compare_exchange_strong(none, number)) {
        // On a terminal, the echo of the key or a bar stands in the line.
        const iovec pieces[] = {piece(isatty(STDERR_FILENO) != 0 ? "\n" : ""), piece(program_invocation_short_name),
                                piece(": still changing the adapter; ended now, "), piece(atStake), piece("\n")};
        [[maybe_unused]] const ssize_t said = writev(STDERR_FILENO, pieces, sizeof pieces / sizeof pieces[0]);
    }
    errno = reason;
}

// Ends by a signal that carries the address of `waiter`.
static void* waitForSignals(void*) {
    for (;;) {
        siginfo_t info = {};
        const int number = sigwaitinfo(&waitedFor, &info);
        if (number > 0 && info.si_code == SI_QUEUE && info.si_value.sival_ptr == &waiter) return nullptr;
        if (number > 0) note(number);
    }
}

static bool isIgnored(int number) {
    struct sigaction action = {};
    sigaction(number, nullptr, &action);
    return action.sa_handler == SIG_IGN;
}

static void handleSent() {
    struct sigaction action = {};
    action.sa_handler = note;
    action.sa_flags = SA_RESTART;
    for (size_t i = 0; i < SENT; ++i) {
        if (sigismember(&waitedFor, sent[i]) == 1) sigaction(sent[i], &action, &before[i]);
    }
}

static void begin() {
    sigemptyset(&waitedFor);
    for (int number : sent) {
        if (!isIgnored(number)) sigaddset(&waitedFor, number);
    }
    held = waitedFor;
    if (!isIgnored(SIGPIPE)) sigaddset(&held, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &held, &maskBefore);
    handleSent();
    struct sigaction ignore = {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGXFSZ, &ignore, &fileLimitBefore);
    // Without a thread the signals wait all the same, and nothing is said.
    waiting = sigisemptyset(&waitedFor) == 0 && pthread_create(&waiter, nullptr, waitForSignals, nullptr) == 0;
}

static void stopWaiting() {
    for (int number : sent) {
        if (sigismember(&waitedFor, number) == 0) continue;
        sigval mark = {};
        mark.sival_ptr = &waiter;
        pthread_sigqueue(waiter, number, mark);
        break;
    }
    pthread_join(waiter, nullptr);
}

static void end() {
    if (waiting) stopWaiting();
    const timespec atOnce = {};
    for (int number = 0; (number = sigtimedwait(&held, nullptr, &atOnce)) > 0;) {
        int none = 0;
        first.compare_exchange_strong(none, number);
    }
    for (size_t i = 0; i < SENT; ++i) {
        if (sigismember(&waitedFor, sent[i]) == 1) sigaction(sent[i], &before[i], nullptr);
    }
    sigaction(SIGXFSZ, &fileLimitBefore, nullptr);
    // After the first SIGPIPE it stays blocked: further output to the broken pipe fails instead of ending the program.
    if (first == SIGPIPE) sigaddset(&maskBefore, SIGPIPE);
    pthread_sigmask(SIG_SETMASK, &maskBefore, nullptr);
}

Hold::Hold(const char* loss) : outerLoss(atStake.exchange(loss)) {
    if (depth++ == 0) begin();
}

Hold::~Hold() {
    if (--depth == 0) end();
    atStake = outerLoss;
}

int heldSignal() {
    return first;
}

void forgetHeldInterrupt() {
    int interrupt = SIGINT;
    first.compare_exchange_strong(interrupt, 0);
}

void endBySignal() {
    const int number = first;
    if (number == 0) return;
    signal(number, SIG_DFL);
    sigset_t one;
    sigemptyset(&one);
    sigaddset(&one, number);
    raise(number);
    pthread_sigmask(SIG_UNBLOCK, &one, nullptr);
}
