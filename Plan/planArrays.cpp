// Arrays: their names and caches, the disks that they lack, those that are not there yet, and their virtual disks.
#include <algorithm>

#include "Plan/place.h"
#include "Report/look.h"
#include "Report/words.h"

static PresentLayout layoutOf(const Planner& planner, const WantedLayout& wanted) {
    PresentLayout layout;
    layout.level = wanted.level;
    for (const KT_U64 disk : disksFor(planner.matching, wanted.disks))
        layout.disks.emplace_back(disk);
    layout.parity = takesParity(wanted.level) ? wanted.parity.value_or(usualParity(wanted.level)) : 0;
    layout.stripe = wanted.stripe.value_or(64);
    return layout;
}

static KT_U64 limitOf(const Planner& planner, const char* limit) {
    const auto at = planner.now.limits.find(limit);
    return at == planner.now.limits.end() || at->second == 0 ? ~KT_U64{0} : at->second;
}

// Whether the adapter makes such a thing; reasons when it does not.
static bool checkLayout(Planner& planner, const std::string& place, const WantedLayout& wanted, const char* mostDisks) {
    const PresentAdapter& now = planner.now;
    const size_t before = planner.plan.reasons.size();
    const auto refuse = [&](const char* word, const std::string& text) {
        planner.plan.reasons.push_back({place + "." + word, text});
    };
    if (!now.levels.empty() && !now.levels.contains(wanted.level))
        refuse("level", now.name + " has no " + wanted.level);
    if (wanted.stripe && !now.stripes.contains(*wanted.stripe)) {
        refuse("stripe", now.name + " has no stripes of " + std::to_string(*wanted.stripe) + " KiB");
    }
    if (wanted.disks.size() > limitOf(planner, mostDisks)) {
        refuse("disks", now.name + " takes at most " + std::to_string(limitOf(planner, mostDisks)));
    }
    const KT_U64 sets = wanted.level == "RAID60" ? 2 : 1;
    const KT_U64 parity = wanted.parity.value_or(usualParity(wanted.level));
    // Arrays keep half of their disks for data, the virtual disks of LD-based adapters one.
    const auto disks = static_cast<KT_U64>(wanted.disks.size());
    const KT_U64 byDisks = now.arrayBased ? disks / 2 : disks - std::min<KT_U64>(disks, 1);
    const KT_U64 most = std::min(std::min<KT_U64>(limitOf(planner, "parity"), 255) * sets, byDisks);
    if (takesParity(wanted.level) && (parity < 2 * sets || parity % sets != 0 || parity > most)) {
        refuse("parity", std::to_string(parity) + " parity disks do not go with " + wanted.level + " on " +
                             std::to_string(disks) + " disks");
    }
    return planner.plan.reasons.size() == before;
}

static void addLayoutWords(const WantedLayout& wanted, const PresentLayout& layout, StepDraft& draft) {
    draft.words.insert(draft.words.end(), {"-r", typedLevel(layout.level), "-d", joined(presentDisks(layout))});
    if (wanted.parity && takesParity(wanted.level)) {
        draft.words.insert(draft.words.end(), {"-q", std::to_string(*wanted.parity)});
    }
    if (wanted.stripe) draft.words.insert(draft.words.end(), {"-b", std::to_string(*wanted.stripe)});
}

// What is said of disks that had a file system; the step then asks nothing.
static void addOverwriting(const Planner& planner, const PresentLayout& layout, StepDraft& draft) {
    std::vector<KT_U64> lost;
    for (const KT_U64 id : presentDisks(layout)) {
        if (planner.now.disks.at(id).fileSystem) lost.push_back(id);
    }
    if (lost.empty()) return;
    draft.words.push_back("--waiveconfirmation");
    draft.cost += "; the file systems on the disks " + joined(lost) + " are lost";
    draft.deletes = true;
}

static KT_U64 smallestRoom(const Planner& planner, const PresentLayout& layout, bool onlyFree) {
    KT_U64 room = ~KT_U64{0};
    for (const KT_U64 id : presentDisks(layout)) {
        const PresentDisk& disk = planner.now.disks.at(id);
        room = std::min(room, onlyFree ? disk.freeRoom : disk.room);
    }
    return room;
}

static void takeDisks(Planner& planner, const PresentLayout& layout) {
    for (const KT_U64 id : presentDisks(layout)) {
        planner.now.disks.at(id).member = true;
        planner.now.disks.at(id).fileSystem = false;
    }
}

static void createArray(Planner& planner, const WantedArray& wanted) {
    if (!checkName(planner, wanted.place, wanted.name) ||
        !checkLayout(planner, wanted.place, wanted.layout, "disksPerArray")) {
        return;
    }
    PresentArray array;
    while (std::any_of(planner.now.arrays.begin(), planner.now.arrays.end(),
                       [&](const PresentArray& one) { return one.id == array.id; }))
        ++array.id;
    array.name = wanted.name;
    array.layout = layoutOf(planner, wanted.layout);
    array.redundant = isRedundant(wanted.layout.level);
    array.memberSize = smallestRoom(planner, array.layout, false);
    array.writeCache = wanted.writeCache;
    array.slots = {{capacityWith(array.layout, array.memberSize), std::nullopt}};
    StepDraft draft = {{"create", "-o", "array"}, "array \"" + shown(wanted.name) + "\" is not there", "at once"};
    addLayoutWords(wanted.layout, array.layout, draft);
    draft.words.insert(draft.words.end(), {"-n", wanted.name});
    if (wanted.writeCache) draft.words.push_back(*wanted.writeCache ? "--cacheon" : "--cacheoff");
    addOverwriting(planner, array.layout, draft);
    addStep(planner, std::move(draft));
    takeDisks(planner, array.layout);
    planner.matching.arrays[&wanted] = array.id;
    planner.now.arrays.push_back(std::move(array));
}

static std::string initializationCost(const std::string& level) {
    return isRedundant(level) ? "it is redundant when it is initialized" : level + " has no redundancy";
}

static void createVdIn(Planner& planner, const WantedVd& wanted, PresentArray& array) {
    if (!checkName(planner, wanted.place, wanted.name)) return;
    PresentVd vd;
    vd.id = freeVdId(planner.now);
    vd.name = wanted.name;
    if (!placeVd(array, wanted.size, vd.id, slotsOf(planner.now))) {
        planner.plan.reasons.push_back({wanted.place, "does not fit into array \"" + shown(array.name) + "\", where " +
                                                          std::to_string(largestSlot(array) >> 20) +
                                                          " MiB are free in one piece"});
        return;
    }
    StepDraft draft = {{"create", "-o", "vd", "-a", std::to_string(array.id), "-n", wanted.name},
                       "virtual disk \"" + shown(wanted.name) + "\" is not there",
                       initializationCost(array.layout.level),
                       4,
                       array.name,
                       Lasting::Initialization,
                       array.busy};
    if (wanted.size) draft.words.insert(draft.words.end(), {"-s", std::to_string(*wanted.size >> 20)});
    addCacheWords(planner, wanted, draft, vd);
    addStep(planner, std::move(draft));
    planner.matching.vds[&wanted] = vd.id;
    planVdSettings(planner, wanted, vd);
    array.vds.push_back(std::move(vd));
}

void planVdsIn(Planner& planner, const WantedArray& wanted, KT_U64 id) {
    for (const WantedVd& one : wanted.vds) {
        PresentArray& array = arrayWith(planner.now, id);
        if (!planner.matching.vds.contains(&one)) createVdIn(planner, one, array);
    }
}

static void setArray(Planner& planner, const WantedArray& wanted, PresentArray& array) {
    StepDraft draft = {{"set", "-o", "array", "-i", std::to_string(array.id)}, "", "at once", 4, wanted.place};
    if (array.name != wanted.name && checkName(planner, wanted.place, wanted.name)) {
        draft.words.insert(draft.words.end(), {"-n", wanted.name});
        draft.reason = nameOf(array) + " has another name";
        array.name = wanted.name;
    }
    if (wanted.writeCache && array.writeCache && array.writeCache != wanted.writeCache) {
        draft.words.insert(draft.words.end(), {"-c", *wanted.writeCache ? "on" : "off"});
        draft.reason += (draft.reason.empty() ? nameOf(array) + " has" : ", and has") +
                        std::string(" the write cache of its disks ") + (*wanted.writeCache ? "off" : "on");
        if (*wanted.writeCache) {
            draft.words.push_back("--waiveconfirmation");
            draft.cost = "at once; no battery keeps what the disks' own caches hold when the power fails";
        }
        array.writeCache = wanted.writeCache;
    }
    if (!draft.reason.empty()) addStep(planner, std::move(draft));
}

static std::string rebuildCost(const std::string& level) {
    return "until then " + level + " has less redundancy than it should, or none";
}

static bool anyBusy(const PresentArray& array) {
    return array.busy || std::any_of(array.vds.begin(), array.vds.end(), [](const PresentVd& vd) { return vd.busy; });
}

static void rebuildArray(Planner& planner, const WantedArray& wanted, PresentArray& array) {
    const LayoutChange change = changeOf(planner, wanted.layout, array.layout);
    if (change.rebuildOn.empty()) return;
    addStep(planner, {{"rebuild", "-l", std::to_string(array.id), "-d", joined(change.rebuildOn)},
                      nameOf(array) + " lacks " + std::to_string(change.rebuildOn.size()) + " of its disks",
                      rebuildCost(array.layout.level),
                      2,
                      wanted.place,
                      Lasting::Rebuild,
                      anyBusy(array)});
    std::copy(change.target.disks.begin(),
              change.target.disks.begin() + static_cast<std::ptrdiff_t>(array.layout.disks.size()),
              array.layout.disks.begin());
    takeDisks(planner, array.layout);
    array.busy = true;
}

void planArrays(Planner& planner) {
    for (const WantedArray& wanted : planner.wanted.arrays) {
        const auto at = planner.matching.arrays.find(&wanted);
        if (at == planner.matching.arrays.end()) continue;
        PresentArray& array = arrayWith(planner.now, at->second);
        setArray(planner, wanted, array);
        for (const WantedVd& one : wanted.vds) {
            const auto vd = planner.matching.vds.find(&one);
            if (vd != planner.matching.vds.end()) planVdSettings(planner, one, vdWith(planner.now, vd->second));
        }
        rebuildArray(planner, wanted, array);
    }
    for (const WantedArray& wanted : planner.wanted.arrays) {
        if (!planner.matching.arrays.contains(&wanted)) createArray(planner, wanted);
        const auto at = planner.matching.arrays.find(&wanted);
        if (at == planner.matching.arrays.end()) continue;
        const PresentArray& array = arrayWith(planner.now, at->second);
        const bool later = array.busy || changeOf(planner, wanted.layout, array.layout).migrates;
        if (!later) planVdsIn(planner, wanted, array.id);
    }
}

static void createVd(Planner& planner, const WantedVd& wanted) {
    if (!checkName(planner, wanted.place, wanted.name) ||
        !checkLayout(planner, wanted.place, wanted.layout, "disksPerVirtualDisk")) {
        return;
    }
    PresentVd vd;
    vd.id = freeVdId(planner.now);
    vd.name = wanted.name;
    vd.layout = layoutOf(planner, wanted.layout);
    vd.redundant = isRedundant(wanted.layout.level);
    const KT_U64 most = capacityWith(vd.layout, smallestRoom(planner, vd.layout, true));
    vd.size = wanted.size ? *wanted.size >> 20 << 20 : most;
    if (!isHybrid(wanted.layout.level) && vd.size > most) {
        planner.plan.reasons.push_back(
            {wanted.place + ".size", "at most " + std::to_string(most >> 20) + " MiB are free on these disks"});
        return;
    }
    StepDraft draft = {{"create", "-o", "vd"},
                       "virtual disk \"" + shown(wanted.name) + "\" is not there",
                       initializationCost(wanted.layout.level)};
    draft.takes = Lasting::Initialization;
    addLayoutWords(wanted.layout, vd.layout, draft);
    draft.words.insert(draft.words.end(), {"-n", wanted.name});
    if (wanted.size) {
        draft.words.insert(draft.words.end(), {"-s", std::to_string(*wanted.size >> 20)});
        if (!planner.now.sharesDisks) draft.words.push_back("--forcesize");
    }
    addCacheWords(planner, wanted, draft, vd);
    addOverwriting(planner, vd.layout, draft);
    addStep(planner, std::move(draft));
    takeDisks(planner, vd.layout);
    const KT_U64 share = shareOf(vd.layout, vd.size);
    for (const KT_U64 id : presentDisks(vd.layout))
        planner.now.disks.at(id).freeRoom -= std::min(planner.now.disks.at(id).freeRoom, share);
    planner.matching.vds[&wanted] = vd.id;
    planVdSettings(planner, wanted, vd);
    planner.now.vds.push_back(std::move(vd));
}

static void rebuildVd(Planner& planner, const WantedVd& wanted, PresentVd& vd) {
    for (const KT_U64 disk : changeOf(planner, wanted.layout, vd.layout).rebuildOn) {
        addStep(planner, {{"rebuild", "-l", std::to_string(vd.id), "-d", std::to_string(disk)},
                          nameOf(vd) + " lacks a disk",
                          rebuildCost(vd.layout.level),
                          2,
                          wanted.place,
                          Lasting::Rebuild,
                          vd.busy});
        *std::find(vd.layout.disks.begin(), vd.layout.disks.end(), std::nullopt) = disk;
        planner.now.disks.at(disk).member = true;
        vd.busy = true;
    }
}

void planVds(Planner& planner) {
    for (const WantedVd& wanted : planner.wanted.vds) {
        const auto at = planner.matching.vds.find(&wanted);
        if (at == planner.matching.vds.end()) {
            createVd(planner, wanted);
            continue;
        }
        const auto is = [&](const PresentVd& vd) { return vd.id == at->second; };
        PresentVd& vd = *std::find_if(planner.now.vds.begin(), planner.now.vds.end(), is);
        planVdSettings(planner, wanted, vd);
        rebuildVd(planner, wanted, vd);
    }
}
