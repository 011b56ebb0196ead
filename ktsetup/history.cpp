#include "ktsetup/history.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "ktsetup/lineEditor.h"

// Every name that the program imports costs each one-shot run its look-up, so this file makes do with few of them.

// Null: there is no file.
static char* path = nullptr;
// The file whose lines up to here are in the editor's list.
static ino_t knownFile = 0;
static off_t known = 0;

// Makes the folders of the file that are missing, for the owner alone.
static void makeFolders() {
    for (char* slash = strchr(path + 1, '/'); slash != nullptr; slash = strchr(slash + 1, '/')) {
        *slash = '\0';
        mkdir(path, 0700);
        *slash = '/';
    }
}

static int openFile(const char* name, int flags) {
    return open(name, O_RDWR | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | flags, 0600);
}

// Others have the lock for as long as it takes to add a line.
static bool lock(int fd) {
    struct flock whole = {};
    whole.l_type = F_WRLCK;
    for (int tries = 0; fcntl(fd, F_OFD_SETLK, &whole) != 0; ++tries) {
        if ((errno != EAGAIN && errno != EACCES) || tries == 50) return false;
        usleep(10000);
    }
    return true;
}

static ino_t inodeOf(const char* name) {
    struct stat info = {};
    const int fd = openFile(name, 0);
    if (fd < 0) return 0;
    const bool read = fstat(fd, &info) == 0;
    close(fd);
    return read ? info.st_ino : 0;
}

// The file, locked, and what there is of it; -1 when it cannot be used.
static int openLocked(struct stat& info) {
    for (int tries = 0; path != nullptr && tries < 50; ++tries) {
        const int fd = openFile(path, 0);
        if (fd < 0) return -1;
        const bool usable = lock(fd) && fstat(fd, &info) == 0 && S_ISREG(info.st_mode);
        if (usable && inodeOf(path) == info.st_ino) return fd;
        close(fd);
        if (!usable) return -1;
        // Another shell has replaced the file by a shorter one meanwhile.
    }
    return -1;
}

static std::string readFrom(int fd, off_t at) {
    std::string text;
    char piece[4096];
    for (ssize_t got; (got = pread(fd, piece, sizeof piece, at)) > 0; at += got) {
        text.append(piece, static_cast<size_t>(got));
    }
    return text;
}

static bool append(int fd, const std::string& text) {
    return write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

// Puts the lines that this shell does not know yet into the editor's list.
static void takeOver(int fd, const struct stat& info) {
    if (info.st_ino != knownFile || info.st_size < known) {
        editor.clearHistory();
        known = 0;
    }
    knownFile = info.st_ino;
    const std::string text = readFrom(fd, known);
    size_t at = 0;
    for (size_t end; (end = text.find('\n', at)) != std::string::npos; at = end + 1) {
        editor.addHistory(text.substr(at, end - at).c_str());
    }
    known += static_cast<off_t>(at);
}

// Replaces a file with too many lines by one with the last of them. fd is the file that has the lock.
static void shorten(int fd) {
    const std::string text = readFrom(fd, 0);
    auto lines = std::count(text.begin(), text.end(), '\n');
    size_t at = 0;
    for (; lines > HISTORY_LINES; --lines) {
        at = text.find('\n', at) + 1;
    }
    if (at == 0) return;
    const std::string name = std::string(path) + ".new";
    const int shorter = openFile(name.c_str(), O_TRUNC);
    if (shorter < 0) return;
    struct stat info = {};
    if (append(shorter, text.substr(at)) && fstat(shorter, &info) == 0 && rename(name.c_str(), path) == 0) {
        knownFile = info.st_ino;
        known = info.st_size;
    }
    close(shorter);
}

void openHistory() {
    editor.stifleHistory(HISTORY_LINES);
    const char* state = getenv("XDG_STATE_HOME");
    const char* home = getenv("HOME");
    // Both are to be absolute; a relative one would mean another file in every folder.
    if (state != nullptr && state[0] == '/') {
        path = strdup((std::string(state) + "/ktsetup/history").c_str());
    } else if (home != nullptr && home[0] == '/') {
        path = strdup((std::string(home) + "/.local/state/ktsetup/history").c_str());
    }
    if (path != nullptr) makeFolders();
}

void refreshHistory() {
    struct stat info = {};
    const int fd = openLocked(info);
    if (fd < 0) return;
    takeOver(fd, info);
    close(fd);
}

void addToHistory(const std::string& line) {
    struct stat info = {};
    const int fd = line.empty() ? -1 : openLocked(info);
    if (fd >= 0) takeOver(fd, info);
    editor.addHistory(line.c_str());
    if (fd < 0) return;
    if (append(fd, line + "\n") && fstat(fd, &info) == 0) {
        known = info.st_size;
        shorten(fd);
    }
    close(fd);
}
