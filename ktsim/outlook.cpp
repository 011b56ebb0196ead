#include "outlook.h"

#include "changes/health.h"
#include "commands.h"
#include "raid/activityRecords.h"
#include "state/simClock.h"

#include <algorithm>

using namespace sim;

static bool worksIn(const Context& context, KT_U16 id) {
    const auto vd = find<_LD_Info>(context, id);
    return vd && isUsable(*vd);
}

// Working virtual disks that one loss more than before may take offline.
static std::vector<Vd> frailVds(const Context& context) {
    std::vector<Vd> frail;
    forEachVd(context, [&](const Vd& vd) {
        const bool changing = shownActivity(context, vd).kind != 0 || vd.info.Status != KT_VD_ONLINE;
        if (isUsable(vd.info) && isRedundant(vd.info.RaidMode) && changing) frail.push_back(vd);
    });
    return frail;
}

// The disks that hold parts of the virtual disk, or will.
static std::set<KT_U16> disksUnder(const Context& context, const Vd& vd) {
    std::set<KT_U16> disks;
    forEach<_Block_Info>(context, 0, [&](KT_U64, const _Block_Info& block) {
        if (block.LDID == vd.info.ID) disks.insert(block.HDID);
        return true;
    });
    return disks;
}

static std::vector<Risk> risksOf(Context& context) {
    std::vector<Risk> risks;
    for (const Vd& vd : frailVds(context)) {
        Risk risk{context.adapter, vd.info.ID, {}, {}};
        for (const KT_U16 pd : disksUnder(context, vd)) {
            setMark(context.store);
            const bool fails = failDisk(context, pd) == KT_OK && !worksIn(context, vd.info.ID);
            rollbackToMark(context.store);
            if (fails) risk.disks.insert(pd);
        }
        if (!risk.disks.empty()) risks.push_back(std::move(risk));
    }
    return risks;
}

std::vector<Risk> risksNow(Store& store) {
    std::vector<Risk> all;
    for (unsigned i = 0; i < adapterCount(store); ++i) {
        Context context{store, static_cast<KT_U8>(i), simulatedNow(store)};
        for (Risk& risk : risksOf(context))
            all.push_back(std::move(risk));
    }
    return all;
}

static bool isSame(const Risk& one, const Risk& other) {
    return one.adapter == other.adapter && one.vd == other.vd;
}

Outlook lookAhead(Store& store) {
    Outlook outlook;
    const KT_U64 start = simulatedNow(store);
    outlook.risks = risksNow(store);
    const auto look = [&] {
        const std::vector<Risk> now = risksNow(store);
        for (Risk& risk : outlook.risks) {
            const bool holds =
                std::any_of(now.begin(), now.end(), [&](const Risk& other) { return isSame(risk, other); });
            if (!holds && !risk.seconds) risk.seconds = wholeSeconds(simulatedNow(store) - start);
        }
    };
    outlook.idleAfter = wholeSeconds(passUntilIdle(store, look));
    return outlook;
}
