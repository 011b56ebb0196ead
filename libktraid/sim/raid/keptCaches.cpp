#include "raid/keptCaches.h"

#include "raid/cacheMode.h"
#include "state/due.h"
#include "state/events.h"

#include <cstring>

namespace sim {

static std::optional<KT_U64> rowOf(const Context& context, const KT_U8* guid) {
    std::optional<KT_U64> row;
    forEach<KeptCache>(context, 0, [&](KT_U64 id, const KeptCache& kept) {
        if (memcmp(kept.guid, guid, sizeof kept.guid) == 0) row = id;
        return !row;
    });
    return row;
}

void keepCache(const Context& context, const KT_U8* guid) {
    if (rowOf(context, guid)) return;
    KeptCache kept = {};
    memcpy(kept.guid, guid, sizeof kept.guid);
    save(context, lastRow(context.store, context.adapter, KIND_KEPT_CACHE).value_or(0) + 1, kept);
}

bool hasKeptCache(const Context& context, const _LD_Info& vd) {
    return rowOf(context, vd.LD_GUID).has_value();
}

static void logFlush(const Context& context, KT_U32 virtualDisks) {
    logEvent(context, EVT_ADAPTER_FLUSH_STARTED, context.adapter);
    logEvent(context, EVT_ADAPTER_FLUSH_PROGRESS, context.adapter, {virtualDisks, virtualDisks});
    logEvent(context, EVT_ADAPTER_FLUSH_FINISHED, context.adapter);
}

void writeKeptCache(const Context& context, const _LD_Info& vd) {
    const auto row = isDown(context) ? std::nullopt : rowOf(context, vd.LD_GUID);
    if (!row) return;
    erase<KeptCache>(context, *row);
    logFlush(context, 1);
}

// Takes out the rows of which `test` holds.
static std::vector<KeptCache> takeWhere(const Context& context, const KeptTest& test) {
    std::vector<KT_U64> ids;
    std::vector<KeptCache> taken;
    forEach<KeptCache>(context, 0, [&](KT_U64 id, const KeptCache& kept) {
        if (!test(kept)) return true;
        ids.push_back(id);
        taken.push_back(kept);
        return true;
    });
    for (const KT_U64 id : ids)
        erase<KeptCache>(context, id);
    return taken;
}

void writeKeptCaches(const Context& context, const KeptTest& works) {
    const auto written = static_cast<KT_U32>(takeWhere(context, works).size());
    if (written != 0) logFlush(context, written);
}

std::vector<KeptCache> takeLostCaches(const Context& context) {
    return takeWhere(context, [](const KeptCache& kept) { return kept.lost != 0; });
}

void dropKeptCache(const Context& context, const _LD_Info& vd) {
    if (const auto row = rowOf(context, vd.LD_GUID)) erase<KeptCache>(context, *row);
}

static bool setLost(const Context& context, bool lost) {
    bool keeps = false;
    forEach<KeptCache>(context, 0, [&](KT_U64 id, KeptCache kept) {
        kept.lost = kept.lost || lost ? 1 : 0;
        keeps = keeps || !kept.lost;
        save(context, id, kept);
        return true;
    });
    return keeps;
}

bool powerOffKeptCaches(const Context& context) {
    return setLost(context, !batteryKeepsCache(context));
}

void loseKeptCaches(const Context& context) {
    setLost(context, true);
    forEach<BootVd>(context, 0, [&](KT_U64 id, BootVd vd) {
        if (vd.cache == CACHE_KEPT) vd.cache = CACHE_LOST;
        save(context, id, vd);
        return true;
    });
}

} // namespace sim
