#include "state/storeFile.h"

#include "state/placeLock.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace sim {

[[noreturn]] static void failSystem(const std::string& what) {
    throw StoreFailure{KT_ERR_FAILED, what + ": " + strerror(errno)};
}

// The folders on the way to a state. Those that were made for it go again unless they are kept, for a name under which
// there can be no state.
class Folders {
  public:
    explicit Folders(const std::string& path) {
        try {
            make(path);
        } catch (...) {
            remove();
            throw;
        }
    }
    Folders(const Folders&) = delete;
    Folders& operator=(const Folders&) = delete;
    ~Folders() { remove(); }
    void keep() { made.clear(); }

  private:
    std::vector<std::string> made;

    void make(const std::string& path) {
        for (size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1)) {
            const std::string folder = path.substr(0, slash);
            if (mkdir(folder.c_str(), 0700) == 0) {
                made.push_back(folder);
            } else if (errno != EEXIST && errno != EISDIR && errno != EROFS) {
                failSystem(folder);
            }
        }
    }
    void remove() {
        for (; !made.empty(); made.pop_back())
            rmdir(made.back().c_str());
    }
};

static void writeAll(int file, const std::string& bytes, const std::string& name) {
    for (size_t at = 0; at < bytes.size();) {
        const ssize_t written = write(file, bytes.data() + at, bytes.size() - at);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) failSystem(name);
        at += static_cast<size_t>(written);
    }
}

// Builds the state in memory and writes it, complete, to a new file beside `path`; answers that file's name.
static std::string writeNewFile(const std::string& path, StoreFiller fill, const void* argument) {
    const std::unique_ptr<Store, void (*)(Store*)> built(openMemoryStore(fill, argument), closeStore);
    const std::string image = imageOf(*built);
    std::string name = path + ".XXXXXX";
    const int file = mkstemp(name.data());
    if (file < 0) failSystem(path);
    try {
        writeAll(file, image, path);
        useWriteAheadJournal(name);
        if (fsync(file) != 0) failSystem(path);
    } catch (...) {
        close(file);
        unlink(name.c_str());
        throw;
    }
    close(file);
    return name;
}

// Whether a file is at `path`; throws for anything else there, which is no place for a state.
static bool isThere(const std::string& path) {
    struct stat there = {};
    if (stat(path.c_str(), &there) == 0) {
        if (S_ISREG(there.st_mode)) return true;
        throw StoreFailure{KT_ERR_FAILED, path + ": this is not a file"};
    }
    if (errno != ENOENT) failSystem(path);
    if (lstat(path.c_str(), &there) == 0) throw StoreFailure{KT_ERR_FAILED, path + ": this link leads nowhere"};
    return false;
}

// SQLite would take the journal of an old state for that of a new one with the same name.
static void removeJournal(const std::string& path) {
    unlink((path + "-wal").c_str());
    unlink((path + "-shm").c_str());
}

// A file that goes unless it got another name.
namespace {
struct NewState {
    const std::string& name;
    ~NewState() { unlink(name.c_str()); }
};
} // namespace

// Gives the file `made` the name `path` unless another process has put something there meanwhile.
static void putInPlace(const std::string& made, const std::string& path) {
    const NewState file{made};
    const PlaceLock alone(path, Access::Write);
    if (access(path.c_str(), F_OK) != 0) removeJournal(path);
    if (link(made.c_str(), path.c_str()) != 0 && errno != EEXIST) failSystem(path);
}

Store* openStore(const std::string& path, StoreFiller fill, const void* argument) {
    if (isThere(path)) return openExistingStore(path);
    Folders folders(path);
    putInPlace(writeNewFile(path, fill, argument), path);
    Store* store = openExistingStore(path);
    folders.keep();
    return store;
}

// A damaged state still says what it is, at the place where SQLite keeps the application's id.
static bool looksLikeState(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) failSystem(path);
    unsigned char head[72] = {};
    const ssize_t size = read(file, head, sizeof head);
    close(file);
    const unsigned char* id = head + 68;
    const int application = id[0] << 24 | id[1] << 16 | id[2] << 8 | id[3];
    return size == 0 || (size == sizeof head && application == STATE_APPLICATION);
}

bool stateMayGo(const std::string& path) {
    if (!isThere(path)) return false;
    if (looksLikeState(path)) return true;
    throw StoreFailure{KT_ERR_FAILED, path + ": " + NOT_A_STATE + "; it stays as it is"};
}

void replaceStore(const std::string& path, StoreFiller fill, const void* argument) {
    Folders folders(path);
    std::string place = path;
    // A link stays one.
    if (stateMayGo(path)) {
        char* whole = realpath(path.c_str(), nullptr);
        if (whole) place = whole;
        free(whole);
    }
    const std::string made = writeNewFile(place, fill, argument);
    const NewState file{made};
    const PlaceLock alone(place, Access::Write);
    removeJournal(place);
    if (rename(made.c_str(), place.c_str()) != 0) failSystem(path);
    folders.keep();
}

std::string statePath() {
    const char* path = getenv("KTRAID_SIM");
    if (path && *path) return path;
    const char* state = getenv("XDG_STATE_HOME");
    if (state && *state == '/') return std::string(state) + "/ktraid-sim/state.db";
    const char* home = getenv("HOME");
    if (home && *home) return std::string(home) + "/.local/state/ktraid-sim/state.db";
    throw StoreFailure{KT_ERR_FAILED, "no place for the state: neither KTRAID_SIM nor HOME is set"};
}

} // namespace sim
