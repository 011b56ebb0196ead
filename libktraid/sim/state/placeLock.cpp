#include "state/placeLock.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace sim {

static std::string folderOf(const std::string& path) {
    char* whole = realpath(path.c_str(), nullptr);
    const std::string place = whole != nullptr ? whole : path;
    free(whole);
    const size_t slash = place.rfind('/');
    return slash == std::string::npos ? "." : place.substr(0, slash + 1);
}

PlaceLock::PlaceLock(const std::string& path, Access access)
    : folder(open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    static const int TRIES = 2500;
    static const useconds_t PAUSE = 2000;
    const int operation = (access == Access::Write ? LOCK_EX : LOCK_SH) | LOCK_NB;
    for (int i = 0; folder >= 0 && flock(folder, operation) != 0; ++i) {
        const bool busy = errno == EWOULDBLOCK || errno == EINTR;
        if (busy && i < TRIES) {
            usleep(PAUSE);
            continue;
        }
        close(folder);
        folder = -1;
        // Some file systems know no locks.
        if (busy) throw StoreFailure{KT_ERR_NO_RESOURCE, path + ": another process keeps it busy"};
    }
}

PlaceLock::~PlaceLock() {
    if (folder >= 0) close(folder);
}

} // namespace sim
