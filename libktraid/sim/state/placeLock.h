// Who opens or closes a state, and who puts another file in its place, keep out of each other's way. SQLite finds the
// journal by the state's name: opened a moment too early, or removed a moment too late, it would be another file's.
#pragma once

#include "state/store.h"

namespace sim {

// Locks the folder of the state's file (of the one that a link leads to) for as long as it lives: Read shares it with
// others who open and close, Write is alone. Waits a few seconds at most and then throws; a folder that cannot be read
// is not locked.
struct PlaceLock {
    PlaceLock(const std::string& path, Access access);
    ~PlaceLock();
    PlaceLock(const PlaceLock&) = delete;
    PlaceLock& operator=(const PlaceLock&) = delete;

  private:
    int folder;
};

} // namespace sim
