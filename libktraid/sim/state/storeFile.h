// The state's file: where it is, how it is made, and how another takes its place.
#pragma once

#include "state/store.h"

namespace sim {

// $KTRAID_SIM, or ktraid-sim/state.db in the user's XDG state folder. Throws when there is no home either.
std::string statePath();

// Opens the state at `path`; when nothing is there it is made whole by `fill` and then put in place, so that nobody
// meets a half-made one and two that start together share one. Throws as openExistingStore() does.
Store* openStore(const std::string& path, StoreFiller fill, const void* argument);
// Whether there is a state at `path`, sound or not, whose place another may take. Throws for all else that is there:
// what somebody else keeps is never replaced.
bool stateMayGo(const std::string& path);
// Puts a new state in the place of the one at `path`.
void replaceStore(const std::string& path, StoreFiller fill, const void* argument);

} // namespace sim
