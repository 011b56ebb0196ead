// Ids of what there is on an adapter.
#pragma once

#include "state/store.h"

#include <functional>
#include <vector>

using Ids = std::vector<KT_U16>;

template <class Record>
Ids idsWhere(const sim::Context& context, const std::function<bool(const Record&)>& holds) {
    Ids ids;
    sim::forEach<Record>(context, 0, [&](KT_U64 id, const Record& record) {
        if (holds(record)) ids.push_back(static_cast<KT_U16>(id));
        return true;
    });
    return ids;
}

template <class Record>
Ids all(const sim::Context& context) {
    return idsWhere<Record>(context, [](const Record&) { return true; });
}

inline Ids freeDisks(const sim::Context& context) {
    return idsWhere<sim::PdState>(context, [](const auto& disk) { return (disk.raid & KT_PD_NOT_FREE) == 0; });
}
