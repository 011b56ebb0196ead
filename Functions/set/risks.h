// What a change of settings may cost in data.
#pragma once

#include "Functions/set/changes.h"

// Prints what may be lost by the changes, of which `record` holds what is now. False when nothing may.
bool nameRisks(const SetRequest& request, const SetRecord& record);
