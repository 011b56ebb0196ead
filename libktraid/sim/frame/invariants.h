// What holds in every state, whatever calls, crashes and times made it.
#pragma once

#include "state/store.h"

#include <string>
#include <vector>

namespace sim {

// What is wrong with the state, one line each: rows that are not whole or say more than they hold, blocks that overlap
// or reach beyond their disk, lists of blocks that do not agree with the blocks, virtual disks whose blocks are not
// theirs, arrays and spares that disagree with their disks, events out of sequence. By rules: also what holds only
// where the adapters' rules made the state, not a lab.
std::vector<std::string> findViolations(Store& store, bool byRules = false);

// The same of one adapter in a transaction that is open, without its events, which are many.
std::vector<std::string> findViolations(const Context& context);

// Ends the program, with what is wrong on standard error, when the adapter's state is not as it must be and
// KTRAID_SIM_CHECK is set, as it is for tests. `call` says who left it so.
void checkAfterCall(const char* call, const Context& context);

} // namespace sim
