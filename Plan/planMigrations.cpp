// What takes its time: migrations, one at a time, and what can only come behind them.
#include <algorithm>

#include "Plan/place.h"
#include "Report/look.h"
#include "Report/words.h"

static bool anyMigration(const PresentAdapter& now) {
    const auto migrates = [](const auto& one) { return one.migrating; };
    return std::any_of(now.arrays.begin(), now.arrays.end(), migrates) ||
           std::any_of(now.vds.begin(), now.vds.end(), migrates);
}

static std::string layoutInShort(const PresentLayout& layout, bool parity) {
    std::string text = layout.level + " on " + std::to_string(layout.disks.size()) + " disks";
    return parity ? text + " with " + std::to_string(layout.parity) + " parity disks" : text;
}

static std::string migrationReason(const std::string& name, const PresentLayout& from, const PresentLayout& to) {
    const bool parity = from.level == to.level && from.parity != to.parity;
    return name + " is " + layoutInShort(from, parity) + "; wanted is " + layoutInShort(to, parity);
}

static std::vector<std::string> migrationWords(KT_U64 id, const PresentLayout& from, const PresentLayout& to) {
    std::vector<std::string> words = {
        "migrate", "-l", std::to_string(id), "-r", typedLevel(to.level), "-d", joined(presentDisks(to))};
    const bool usual = to.parity == usualParity(to.level) && to.level != from.level;
    if (takesParity(to.level) && !usual) words.insert(words.end(), {"-q", std::to_string(to.parity)});
    return words;
}

static std::string migrationCost(const PresentLayout& from, const PresentLayout& to) {
    const std::string kept = isRedundant(from.level) ? "the redundancy of " + from.level + " is kept on the way"
                                                     : from.level + " has no redundancy on the way";
    return kept + (to.level == from.level ? "" : ", that of " + to.level + " comes at the end");
}

static void takeMembers(Planner& planner, const PresentLayout& layout) {
    for (const KT_U64 id : presentDisks(layout))
        planner.now.disks.at(id).member = true;
}

static void migrateArray(Planner& planner, const WantedArray& wanted) {
    const auto at = planner.matching.arrays.find(&wanted);
    if (at == planner.matching.arrays.end()) return;
    PresentArray& array = arrayWith(planner.now, at->second);
    const PresentLayout from = array.layout;
    const LayoutChange change = changeOf(planner, wanted.layout, from);
    if (!change.migrates) return;
    const bool busy =
        array.busy || std::any_of(array.vds.begin(), array.vds.end(), [](const PresentVd& vd) { return vd.busy; });
    addStep(planner, {migrationWords(array.id, from, change.target),
                      migrationReason(nameOf(array), from, change.target), migrationCost(from, change.target), 2,
                      wanted.place, Lasting::Migration, busy || anyMigration(planner.now)});
    array.busy = array.migrating = true;
    layOutAnew(array, change.target, slotsOf(planner.now));
    takeMembers(planner, change.target);
}

static void migrateVd(Planner& planner, const WantedVd& wanted) {
    const auto at = planner.matching.vds.find(&wanted);
    if (at == planner.matching.vds.end()) return;
    const auto is = [&](const PresentVd& vd) { return vd.id == at->second; };
    PresentVd& vd = *std::find_if(planner.now.vds.begin(), planner.now.vds.end(), is);
    const PresentLayout from = vd.layout;
    const LayoutChange change = changeOf(planner, wanted.layout, from);
    if (!change.migrates) return;
    addStep(planner, {migrationWords(vd.id, from, change.target), migrationReason(nameOf(vd), from, change.target),
                      migrationCost(from, change.target), 2, wanted.place, Lasting::Migration,
                      vd.busy || anyMigration(planner.now)});
    vd.layout = change.target;
    vd.busy = vd.migrating = true;
    takeMembers(planner, change.target);
}

void planMigrations(Planner& planner) {
    for (const WantedArray& wanted : planner.wanted.arrays) {
        const auto at = planner.matching.arrays.find(&wanted);
        if (at == planner.matching.arrays.end()) continue;
        migrateArray(planner, wanted);
        planVdsIn(planner, wanted, at->second);
    }
    for (const WantedVd& wanted : planner.wanted.vds)
        migrateVd(planner, wanted);
}
