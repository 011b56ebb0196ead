// Spares: where in the plan an adapter takes them.
#include <algorithm>

#include "Plan/chooseDisks.h"
#include "Plan/planner.h"
#include "Report/look.h"
#include "Report/words.h"

static void assignSpare(Planner& planner, KT_U64 id, const WantedArray* array, bool waits) {
    PresentDisk& disk = planner.now.disks.at(id);
    StepDraft draft = {{"assign", "-d", std::to_string(id)}, "", "at once"};
    if (array != nullptr) {
        const PresentArray& there = arrayWith(planner.now, planner.matching.arrays.at(array));
        draft.words = {"assign", "-o", "array", "-d", std::to_string(id), "-a", std::to_string(there.id)};
        draft.idAt = 6;
        draft.object = array->name;
        disk.spareOf = there.id;
    }
    draft.waits = waits;
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

namespace {
// What a disk can stand by for. An adapter takes a global spare that is large enough for something redundant of its
// kind, or when there is nothing of its kind.
struct Use {
    bool any = false;
    bool fits = false;
    KT_U64 least = 0; // bytes that the least demanding one takes of each disk
};
} // namespace

// migrated: what is to be redundant only behind its migration counts as well.
static Use useOf(const PresentAdapter& now, const PresentDisk& disk, bool migrated) {
    Use use;
    const auto consider = [&](const auto& owner, KT_U64 share) {
        const std::vector<KT_U64> members = presentDisks(owner.layout);
        if (!owner.redundant && !(migrated && isRedundant(owner.layout.level))) return;
        if (!members.empty() && !isAlike(now, now.disks.at(members.front()), disk)) return;
        use.least = use.any ? std::min(use.least, share) : share;
        use.any = true;
        use.fits = use.fits || disk.room >= share;
    };
    for (const PresentArray& array : now.arrays)
        consider(array, array.memberSize);
    for (const PresentVd& vd : now.vds)
        consider(vd, shareOf(vd.layout, vd.size));
    return use;
}

static bool isTaken(const Use& use) {
    return use.fits || !use.any;
}

// Global spares that are wanted and not there.
static std::vector<KT_U64> missingSpares(const Planner& planner) {
    std::vector<KT_U64> missing;
    for (const KT_U64 id : disksFor(planner.matching, planner.wanted.spares)) {
        const PresentDisk& disk = planner.now.disks.at(id);
        if (!disk.spare || disk.spareOf) missing.push_back(id);
    }
    return missing;
}

void planEarlySpares(Planner& planner) {
    planner.creations = planner.plan.steps.size();
    for (const KT_U64 id : missingSpares(planner)) {
        if (isTaken(useOf(planner.now, planner.now.disks.at(id), false))) planner.earlySpares.insert(id);
    }
}

// The array's own spares, once its level has a use for them.
static void planSparesOf(Planner& planner, const WantedArray& wanted, bool waits) {
    const PresentArray& array = arrayWith(planner.now, planner.matching.arrays.at(&wanted));
    const std::vector<KT_U64> members = presentDisks(array.layout);
    for (const KT_U64 id : disksFor(planner.matching, wanted.spares)) {
        const PresentDisk& disk = planner.now.disks.at(id);
        if (disk.spare && disk.spareOf == array.id) continue;
        const auto refuse = [&](const std::string& text, const std::string& nearest) {
            addUnreachable(planner, wanted.place + ".spares", nameOf(disk) + text + nameOf(array), nearest);
        };
        if (disk.room < array.memberSize) {
            refuse(" is smaller than the disks of ", "a disk of at least " + sizeText(array.memberSize));
        } else if (!members.empty() && !isAlike(planner.now, planner.now.disks.at(members.front()), disk)) {
            refuse(" is of another kind than the disks of ", "a disk like disk " + std::to_string(members.front()));
        } else {
            assignSpare(planner, id, &wanted, waits);
        }
    }
}

// Those of arrays that are redundant now, or behind their migration.
static void planDedicatedSpares(Planner& planner, bool redundant) {
    for (const WantedArray& wanted : planner.wanted.arrays) {
        const auto at = planner.matching.arrays.find(&wanted);
        if (at == planner.matching.arrays.end()) continue;
        if (arrayWith(planner.now, at->second).redundant == redundant) planSparesOf(planner, wanted, !redundant);
    }
}

void planSpares(Planner& planner) {
    planDedicatedSpares(planner, true);
    for (const KT_U64 id : missingSpares(planner)) {
        const bool taken = isTaken(useOf(planner.now, planner.now.disks.at(id), false));
        if (!taken && !planner.earlySpares.contains(id)) continue;
        assignSpare(planner, id, nullptr, false);
        if (taken) continue;
        // It stands by for nothing that will be there, and is taken only as long as that is not there.
        std::vector<PlannedStep>& steps = planner.plan.steps;
        std::rotate(steps.begin() + static_cast<std::ptrdiff_t>(planner.creations), steps.end() - 1, steps.end());
        ++planner.creations;
    }
}

void planLateSpares(Planner& planner) {
    planDedicatedSpares(planner, false);
    for (const KT_U64 id : missingSpares(planner)) {
        const PresentDisk& disk = planner.now.disks.at(id);
        const Use use = useOf(planner.now, disk, true);
        if (isTaken(use)) {
            assignSpare(planner, id, nullptr, true);
        } else {
            addUnreachable(planner, planner.wanted.place + ".disks",
                           nameOf(disk) + " is too small to stand by for anything on " + planner.now.name +
                               ", which takes no such spare",
                           "a disk of at least " + sizeText(use.least));
        }
    }
}
