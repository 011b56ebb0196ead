#include "Plan/plan.h"

#include <algorithm>

#include "Plan/planner.h"
#include "Report/look.h"

// A rebuild that was stopped by hand has filled no place that a plan could see, and is taken up again by hand.
static void noteUnsound(Planner& planner) {
    const auto note = [&](const PresentVd& vd, bool busy) {
        const bool unsound = vd.status == "degraded" || vd.status == "partially optimal";
        if (!unsound || busy || vd.busy) return;
        planner.plan.notes.push_back(nameOf(vd) + " on adapter " + std::to_string(planner.now.id) + " is " + vd.status +
                                     ", and nothing rebuilds it; \"ktreport\" says what to do");
    };
    for (const PresentArray& array : planner.now.arrays) {
        for (const PresentVd& vd : array.vds)
            note(vd, array.busy);
    }
    for (const PresentVd& vd : planner.now.vds)
        note(vd, false);
}

static void noteLeftAlone(Planner& planner) {
    const auto note = [&](const std::string& what) {
        planner.plan.leftAlone.push_back(what + " on adapter " + std::to_string(planner.now.id));
    };
    const auto isMatched = [](const auto& matches, KT_U64 id) {
        return std::any_of(matches.begin(), matches.end(), [&](const auto& match) { return match.second == id; });
    };
    const auto vdsOf = [&](const std::vector<PresentVd>& vds) {
        for (const PresentVd& vd : vds) {
            if (!isMatched(planner.matching.vds, vd.id)) note(nameOf(vd));
        }
    };
    for (const PresentArray& array : planner.now.arrays) {
        if (!isMatched(planner.matching.arrays, array.id)) note(nameOf(array));
        vdsOf(array.vds);
    }
    vdsOf(planner.now.vds);
    for (const auto& [id, disk] : planner.now.disks) {
        if (disk.spare && !disk.spareInUse && !isMatched(planner.matching.disks, id)) note("spare " + nameOf(disk));
    }
}

static void planAdapter(const PresentAdapter& there, const WantedAdapter& wanted, const PlanOptions& options,
                        Plan& plan) {
    Planner planner = {there, wanted, options, plan};
    planSettings(planner);
    planDeletions(planner);
    plan.notes.insert(plan.notes.end(), planner.matching.notes.begin(), planner.matching.notes.end());
    for (const auto phase : {planEarlySpares, planArrays, planVds, planSpares, planMigrations, planLateSpares,
                             noteUnsound, noteLeftAlone}) {
        if (canBeReached(plan)) phase(planner);
    }
}

Plan makePlan(const Json& report, const Wanted& wanted, const PlanOptions& options) {
    Plan plan;
    plan.reasons = wanted.reasons;
    const std::vector<PresentAdapter> there = adaptersIn(report);
    const std::vector<AdapterPair> pairs = pairAdapters(there, wanted, options.adapter, plan.reasons);
    // What does not fit these adapters is told along with what is wrong by itself, as far as that can be said.
    for (const AdapterPair& pair : pairs) {
        if (pair.there != nullptr && wanted.reasons.empty()) planAdapter(*pair.there, *pair.wanted, options, plan);
    }
    if (!plan.reasons.empty()) plan.unreachable.clear();
    if (!canBeReached(plan)) plan.steps.clear();
    for (const PresentAdapter& adapter : there) {
        const auto is = [&](const AdapterPair& pair) { return pair.there == &adapter; };
        if (std::none_of(pairs.begin(), pairs.end(), is)) plan.leftAlone.push_back(adapter.name);
    }
    return plan;
}
