// States in memory and in files, the ids of what is in them, and child processes that work on them.
#pragma once

#include "../support/scratch.h"
#include "lab/lab.h"
#include "state/storeFile.h"

#include <functional>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace sim;

using Ids = std::vector<KT_U16>;

// A folder with the file of the state that the library opens.
struct StateFolder : ScratchFolder {
    std::string state = path + "/state.db";
    StateFolder() { setenv("KTRAID_SIM", state.c_str(), 1); }
};

// Changes the state as another process would.
inline void changeState(const std::string& path, const std::function<void(Store&)>& change) {
    Store* store = openExistingStore(path);
    beginTransaction(*store, Access::Write);
    change(*store);
    commitTransaction(*store);
    closeStore(store);
}

// A state in memory, made from a lab.
struct MemoryState {
    BuiltInLab lab;
    Store* store = openMemoryStore(fillFromLab, &lab);
    Context context{*store, 0, 1800000000000};
    explicit MemoryState(const std::string& text) : lab{"lab", text.c_str()} {}
    explicit MemoryState(const BuiltInLab* builtIn) : lab(*builtIn) {}
    MemoryState(const MemoryState&) = delete;
    MemoryState& operator=(const MemoryState&) = delete;
    ~MemoryState() { closeStore(store); }
};

template <class Record>
Ids idsWhere(const Context& context, const std::function<bool(const Record&)>& holds) {
    Ids ids;
    forEach<Record>(context, 0, [&](KT_U64 id, const Record& record) {
        if (holds(record)) ids.push_back(static_cast<KT_U16>(id));
        return true;
    });
    return ids;
}

template <class Record>
Ids all(const Context& context) {
    return idsWhere<Record>(context, [](const Record&) { return true; });
}

inline Ids freeDisks(const Context& context) {
    return idsWhere<PdState>(context, [](const auto& disk) { return (disk.raid & KT_PD_NOT_FREE) == 0; });
}

// The numbers of seeds: those that are always tried, and as many more as SEEDS says.
inline unsigned seeds(size_t always) {
    const char* more = getenv("SEEDS");
    return static_cast<unsigned>(always + (more != nullptr ? strtoul(more, nullptr, 10) : 0));
}

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
inline int inChild(const std::function<int()>& work) {
    return waitFor(startChild(work));
}
