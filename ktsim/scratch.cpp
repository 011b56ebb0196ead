#include "scratch.h"

#include "commands.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

static void removeFolder(const char* folder) {
    DIR* listing = opendir(folder);
    if (!listing) return;
    while (const dirent* entry = readdir(listing))
        unlinkat(dirfd(listing), entry->d_name, 0);
    closedir(listing);
    rmdir(folder);
}

// Waits for the other end of the pipe to close, which is when nobody needs the folder any more.
[[noreturn]] static void keep(int pipe, const char* folder) {
    setsid();
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE})
        signal(number, SIG_IGN);
    // Whoever waits for the end of the command's output does not wait for this.
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        close(stream);
    char byte = 0;
    while (read(pipe, &byte, 1) < 0 && errno == EINTR) {
    }
    removeFolder(folder);
    _exit(0);
}

void makeScratch(Scratch& scratch) {
    const char* parent = getenv("TMPDIR");
    std::string pattern = (parent && *parent == '/' ? std::string(parent) : "/tmp") + "/ktsim-XXXXXX";
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw CommandFailure{std::string("no pipe: ") + strerror(errno)};
    std::vector<char> name(pattern.c_str(), pattern.c_str() + pattern.size() + 1);
    if (!mkdtemp(name.data())) {
        const int reason = errno;
        close(ends[0]);
        close(ends[1]);
        throw CommandFailure{pattern + ": " + strerror(reason)};
    }
    const pid_t pid = fork();
    if (pid == 0) {
        close(ends[1]);
        keep(ends[0], name.data());
    }
    close(ends[0]);
    if (pid < 0) {
        const int reason = errno;
        close(ends[1]);
        rmdir(name.data());
        throw CommandFailure{std::string("no process: ") + strerror(reason)};
    }
    scratch.folder = name.data();
    scratch.keeper = ends[1];
    scratch.keeperPid = pid;
}

Scratch::~Scratch() {
    if (keeperPid < 0) return;
    close(keeper);
    while (waitpid(keeperPid, nullptr, 0) < 0 && errno == EINTR) {
    }
}
