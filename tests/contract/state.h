// The state that the simulated library works on, for frame.cpp and outside.cpp.
#pragma once

#include "state/store.h"

#include <functional>

// Changes the state of the running test as another process would.
void changeState(const std::function<void(sim::Store&)>& change);
