#include "Public/lostOutput.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "Public/writeFully.h"

namespace {
bool lost = false;
bool told = false;
int lostFor = 0; // errno when it happened; 0 = nobody looked in time
} // namespace

void fillStandardStreams() {
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
        if (fcntl(fd, F_GETFD) >= 0) continue;
        // The stand-in can neither be read as input nor be written to.
        fd == STDIN_FILENO ? open("/dev/null", O_WRONLY) : open("/dev/null", O_RDONLY);
    }
}

void noteLostOutput() {
    const int reason = errno;
    if (!lost) lostFor = reason;
    lost = true;
}

static ssize_t writeNoting(void*, const char* bytes, size_t count) {
    const size_t done = writeFully(STDOUT_FILENO, bytes, count);
    if (done < count) noteLostOutput();
    return static_cast<ssize_t>(done);
}

void watchStandardOutput() {
    // A stream of its own: where printf fails, errno has been overwritten by the time that anybody asks.
    FILE* watched = fopencookie(nullptr, "w", {nullptr, writeNoting, nullptr, nullptr});
    if (watched == nullptr) return;
    setvbuf(watched, nullptr, isatty(STDOUT_FILENO) != 0 ? _IOLBF : _IOFBF, BUFSIZ);
    stdout = watched;
}

bool flushStream(FILE* file) {
    if (fflush(file) != 0) {
        noteLostOutput();
    } else if (ferror(file) != 0) {
        lost = true;
    }
    return !lost;
}

bool tellLostOutput() {
    if (!lost) return true;
    if (!told) {
        fprintf(stderr, "%s: cannot write the output%s%s\n", program_invocation_short_name, lostFor != 0 ? ": " : "",
                lostFor != 0 ? strerror(lostFor) : "");
    }
    told = true;
    return false;
}

int endOutput(int result) {
    flushStream(stdout);
    return !tellLostOutput() && result == 0 ? 1 : result;
}
