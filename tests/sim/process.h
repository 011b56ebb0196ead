// Child processes for tests of what happens between processes.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

// A folder that is gone with the test.
struct ScratchFolder {
    std::string path = (std::filesystem::temp_directory_path() / "sim.XXXXXX").string();
    ScratchFolder() {
        if (!mkdtemp(path.data())) abort();
        setenv("KTRAID_SIM", (path + "/state.db").c_str(), 1);
    }
    ~ScratchFolder() { std::filesystem::remove_all(path); }
};

// For tests that spoil the state on purpose: the library does not look at it after each call.
inline void allowSpoiltState() {
    unsetenv("KTRAID_SIM_CHECK");
}

// Runs `work` in a child, whose exit status is work's result.
inline pid_t startChild(const std::function<int()>& work) {
    const pid_t child = fork();
    if (child == 0) _exit(work());
    return child;
}

// The child's exit status, -1 when a signal ended it.
inline int waitFor(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
