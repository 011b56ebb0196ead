#include "Public/writeFully.h"

#include <cerrno>
#include <unistd.h>

size_t writeFully(int file, const void* bytes, size_t count) {
    size_t done = 0;
    while (done < count) {
        const ssize_t written = write(file, static_cast<const char*>(bytes) + done, count - done);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) break;
        done += static_cast<size_t>(written);
    }
    return done;
}
