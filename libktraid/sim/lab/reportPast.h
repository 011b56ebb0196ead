// What became of a reported adapter before it was read.
#pragma once

#include "lab/labReader.h"
#include "state/store.h"

#include <map>
#include <set>

namespace sim {

// What the log and the refusals tell of an adapter's past, as far back as they go.
struct Past {
    std::set<KT_U16> silentDisks;             // did not answer when asked for their health
    std::set<KT_U16> deadDisks;               // the adapter has called them dead
    std::map<KT_U16, KT_U64> losses;          // by disk: which loss it went with, counted from 1
    std::map<KT_U16, KT_U64> offline;         // by virtual disk: the loss that it went offline at
    std::map<KT_U16, KT_U16> cipherComplaint; // by disk: the code of the last event about its cipher
    std::map<KT_U16, bool> initialized;       // by virtual disk
    std::map<KT_U16, KT_U8> toldTooSmall;     // by disk: TOLD_*
    KT_U64 lossCount = 0;
    bool muted = false;
};

// Adds the events of the report, and answers what they tell.
Past addReportedEvents(Context& context, LabReader& adapter, const LabReader& top);

} // namespace sim
