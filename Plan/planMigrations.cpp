// Spares, and what takes its time: migrations, one at a time, and what can only come behind them.
#include <algorithm>

#include "Plan/planner.h"
#include "Report/look.h"
#include "Report/words.h"

static void assignSpare(Planner& planner, KT_U64 id, const WantedArray* array) {
    PresentDisk& disk = planner.now.disks.at(id);
    StepDraft draft = {{"assign", "-d", std::to_string(id)}, "", "at once"};
    if (array != nullptr) {
        const PresentArray& there = arrayWith(planner.now, planner.matching.arrays.at(array));
        draft.words = {"assign", "-o", "array", "-d", std::to_string(id), "-a", std::to_string(there.id)};
        draft.idAt = 6;
        draft.object = array->name;
        disk.spareOf = there.id;
    }
    draft.reason = nameOf(disk) + " is no spare" +
                   (array ? " of array \"" + shown(array->name) + "\"" : std::string(" of the adapter"));
    if (disk.fileSystem) {
        draft.words.push_back("--waiveconfirmation");
        draft.cost += "; the file system on it may be lost";
        draft.deletes = true;
    }
    disk.spare = true;
    addStep(planner, std::move(draft));
}

// The array's own spares, once its level has a use for them.
static void planSparesOf(Planner& planner, const WantedArray& wanted) {
    const auto at = planner.matching.arrays.find(&wanted);
    if (at == planner.matching.arrays.end()) return;
    for (const KT_U64 id : disksFor(planner.matching, wanted.spares)) {
        const PresentDisk& disk = planner.now.disks.at(id);
        if (!disk.spare || disk.spareOf != at->second) assignSpare(planner, id, &wanted);
    }
}

// An array that is to be redundant only behind its migration gets its spares there.
static bool becomesRedundant(const Planner& planner, const WantedArray& wanted) {
    const auto at = planner.matching.arrays.find(&wanted);
    return at != planner.matching.arrays.end() && !isRedundant(arrayWith(planner.now, at->second).layout.level);
}

void planSpares(Planner& planner) {
    for (const WantedArray& wanted : planner.wanted.arrays) {
        if (!becomesRedundant(planner, wanted)) planSparesOf(planner, wanted);
    }
    for (const KT_U64 id : disksFor(planner.matching, planner.wanted.spares)) {
        const PresentDisk& disk = planner.now.disks.at(id);
        if (!disk.spare || disk.spareOf) assignSpare(planner, id, nullptr);
    }
}

static bool anyMigration(const PresentAdapter& now) {
    const auto migrates = [](const auto& one) { return one.migrating; };
    return std::any_of(now.arrays.begin(), now.arrays.end(), migrates) ||
           std::any_of(now.vds.begin(), now.vds.end(), migrates);
}

static std::string describedLayout(const PresentLayout& layout, bool parity) {
    std::string text = layout.level + " on " + std::to_string(layout.disks.size()) + " disks";
    return parity ? text + " with " + std::to_string(layout.parity) + " parity disks" : text;
}

static std::string migrationReason(const std::string& name, const PresentLayout& from, const PresentLayout& to) {
    const bool parity = from.level == to.level && from.parity != to.parity;
    return name + " is " + describedLayout(from, parity) + "; wanted is " + describedLayout(to, parity);
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
    array.layout = change.target;
    array.busy = array.migrating = true;
    for (PresentSlot& slot : array.slots)
        slot.size = grown(slot.size, from, change.target);
    for (PresentVd& vd : array.vds) {
        vd.size = grown(vd.size, from, change.target);
        vd.layout = change.target;
        vd.busy = true;
    }
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
    vd.size = grown(vd.size, from, change.target);
    vd.layout = change.target;
    vd.busy = vd.migrating = true;
    takeMembers(planner, change.target);
}

void planMigrations(Planner& planner) {
    for (const WantedArray& wanted : planner.wanted.arrays) {
        const auto at = planner.matching.arrays.find(&wanted);
        if (at == planner.matching.arrays.end()) continue;
        const bool later = becomesRedundant(planner, wanted);
        migrateArray(planner, wanted);
        planVdsIn(planner, wanted, at->second);
        if (later) planSparesOf(planner, wanted);
    }
    for (const WantedVd& wanted : planner.wanted.vds)
        migrateVd(planner, wanted);
}
