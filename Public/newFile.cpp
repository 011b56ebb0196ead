#include "Public/newFile.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

#include "Public/writeFully.h"

// Async-signal-safe. The raised signal takes effect, with its default action, when this returns.
static void removeAndEnd(int number);

namespace {
struct Guarded {
    int signal;
    void (*handler)(int);
};
// The signals by which a run is ended from outside. A file grown too large is to be a failed write instead.
const Guarded guarded[] = {{SIGINT, removeAndEnd},  {SIGTERM, removeAndEnd}, {SIGHUP, removeAndEnd},
                           {SIGQUIT, removeAndEnd}, {SIGPIPE, removeAndEnd}, {SIGXFSZ, SIG_IGN}};
constexpr size_t GUARDED = sizeof guarded / sizeof guarded[0];

struct sigaction previous[GUARDED]; // what was set for them before
const char* unfinished = nullptr;   // the file that is being written
} // namespace

static void removeAndEnd(int number) {
    if (unfinished != nullptr) unlink(unfinished);
    signal(number, SIG_DFL);
    raise(number);
}

static sigset_t holdSignals() {
    sigset_t held;
    sigset_t mask;
    sigemptyset(&held);
    for (const Guarded& row : guarded) {
        sigaddset(&held, row.signal);
    }
    sigprocmask(SIG_BLOCK, &held, &mask);
    return mask;
}

static void guardSignals() {
    for (size_t i = 0; i < GUARDED; ++i) {
        sigaction(guarded[i].signal, nullptr, &previous[i]);
        // What the caller of the program ignores (nohup) stays ignored.
        if (previous[i].sa_handler == SIG_IGN) continue;
        struct sigaction action = {};
        action.sa_handler = guarded[i].handler;
        sigaction(guarded[i].signal, &action, nullptr);
    }
}

static void restoreSignals() {
    for (size_t i = 0; i < GUARDED; ++i) {
        sigaction(guarded[i].signal, &previous[i], nullptr);
    }
}

Created createNewFile(const char* path, NewFile& file, mode_t mode) {
    // A signal between the creation and its guard would leave the file behind.
    const sigset_t mask = holdSignals();
    file.fd = open(path, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    const int reason = errno;
    if (file.fd >= 0) {
        unfinished = path;
        guardSignals();
    }
    sigprocmask(SIG_SETMASK, &mask, nullptr);
    if (file.fd >= 0) return Created::Yes;
    return reason == EEXIST ? Created::Exists : Created::Failed;
}

bool writeNewFile(const NewFile& file, const void* bytes, size_t count) {
    return writeFully(file.fd, bytes, count) == count;
}

static void finish(NewFile& file, bool keep) {
    const sigset_t mask = holdSignals();
    if (!keep) unlink(unfinished);
    unfinished = nullptr;
    restoreSignals();
    file.fd = -1;
    sigprocmask(SIG_SETMASK, &mask, nullptr);
}

bool keepNewFile(NewFile& file) {
    // Some file systems know of no flushing, and some report a full disk only now.
    const bool flushed = fsync(file.fd) == 0 || errno == EINVAL || errno == EROFS;
    const bool whole = close(file.fd) == 0 && flushed;
    finish(file, whole);
    return whole;
}

void dropNewFile(NewFile& file) {
    close(file.fd);
    finish(file, false);
}
