// From the request to the library and back.
#pragma once

#include "Functions/set/changes.h"

// Reads the object's settings, asks where data may be lost, changes what was asked for and nothing else, and shows what
// the adapter made of it. Returns the handler's result: 0 also when there is nothing to change or the user declines, 1
// for what the object lacks or did not take, else the library's status.
int changeSettings(const SetRequest& request);
