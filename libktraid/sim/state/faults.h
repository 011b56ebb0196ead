// Injected faults: rows of Fault that make calls go wrong on purpose.
#pragma once

#include "state/store.h"

namespace sim {

// The id of the first fault that concerns this call (whether or not it strikes yet). Adapter ADAPTER_GLOBAL stands for
// calls that have none.
std::optional<KT_U64> findFault(Store& store, const char* call, KT_U8 adapter);
// Counts the call; true, with the fault, when it strikes now. It goes after its last time.
bool strikeFault(Store& store, KT_U64 id, Fault& fault);
// Adds one; answers its id.
KT_U64 addFault(Store& store, const Fault& fault);

// Whether a fault of this kind shows in what the call answers: it answers texts, a count or a list.
bool canStrike(const char* call, KT_U8 kind);
// Fills every text field of a record of `call` to its last byte, with no NUL left; calls without one are unchanged.
void fillTexts(const char* call, void* record);

} // namespace sim
