// What stands in the way of what is wanted. Without leave to delete it makes the rest unreachable.
#include <algorithm>

#include "Plan/place.h"
#include "Report/look.h"

namespace {
enum class VictimKind { Vd, Array, Spare };

// Something that would have to go.
struct Victim {
    VictimKind kind;
    KT_U64 id;
    std::string place; // of what it is in the way of
    std::string text;
    std::string nearest;
};

struct Search {
    Planner& planner;
    std::vector<Victim> victims;
};
} // namespace

static bool isVictim(const Search& search, VictimKind kind, KT_U64 id) {
    return std::any_of(search.victims.begin(), search.victims.end(),
                       [&](const Victim& one) { return one.kind == kind && one.id == id; });
}

static void addVictim(Search& search, Victim victim) {
    if (!isVictim(search, victim.kind, victim.id)) search.victims.push_back(std::move(victim));
}

static bool isMentioned(const Planner& planner, const PresentArray& array) {
    return std::any_of(planner.matching.arrays.begin(), planner.matching.arrays.end(),
                       [&](const auto& match) { return match.second == array.id; });
}

static bool isMentioned(const Planner& planner, const PresentVd& vd) {
    return std::any_of(planner.matching.vds.begin(), planner.matching.vds.end(),
                       [&](const auto& match) { return match.second == vd.id; });
}

static bool isOn(const PresentLayout& layout, KT_U64 disk) {
    return isIn(presentDisks(layout), disk);
}

// What has its data on the disk is in the way of whatever else is to have it.
static void addOwners(Search& search, const std::string& place, const PresentDisk& disk) {
    const Planner& planner = search.planner;
    const auto refuse = [&](const auto& owner) {
        search.planner.plan.reasons.push_back(
            {place, nameOf(disk) + " is one of the disks of " + nameOf(owner) + ", which the file keeps there"});
    };
    const std::string nearest = "name another disk";
    for (const PresentArray& array : planner.now.arrays) {
        if (!isOn(array.layout, disk.id) || isVictim(search, VictimKind::Array, array.id)) continue;
        if (isMentioned(planner, array)) return refuse(array);
        addVictim(search,
                  {VictimKind::Array, array.id, place,
                   nameOf(disk) + " is in use by " + nameOf(array) + ", which the file does not mention", nearest});
    }
    for (const PresentVd& vd : planner.now.vds) {
        if (!isOn(vd.layout, disk.id) || isVictim(search, VictimKind::Vd, vd.id)) continue;
        if (isMentioned(planner, vd)) return refuse(vd);
        addVictim(search,
                  {VictimKind::Vd, vd.id, place,
                   nameOf(disk) + " is in use by " + nameOf(vd) + ", which the file does not mention", nearest});
    }
}

// Whether a disk is free for a new duty; what is against that is noted.
static void checkFree(Search& search, const std::string& place, const PresentDisk& disk) {
    Planner& planner = search.planner;
    const auto refuse = [&](const std::string& text) { planner.plan.reasons.push_back({place, text}); };
    if (disk.state == "offline") return refuse(nameOf(disk) + " is offline; replace it");
    if (disk.os) return refuse("the system runs from " + nameOf(disk));
    if (disk.type == "ATAPI") return refuse(nameOf(disk) + " holds no data: it is an ATAPI drive");
    if (disk.state == "foreign") {
        addUnreachable(planner, place, nameOf(disk) + " is foreign: it holds data of another adapter",
                       "import it, or wipe it, first");
        return;
    }
    if (disk.member) {
        addOwners(search, place, disk);
    } else if (disk.spareInUse) {
        addUnreachable(planner, place, nameOf(disk) + " is a spare at work", "wait for the copy back, or name another");
    } else if (disk.spare) {
        addVictim(search, {VictimKind::Spare, disk.id, place, nameOf(disk) + " is a spare", "name another disk"});
    } else if (disk.fileSystem && !planner.options.mayDelete) {
        addUnreachable(planner, place, nameOf(disk) + " has a file system on it",
                       "name another disk, or let --delete overwrite it");
    }
}

static void checkNewMembers(Search& search, const std::string& place, const WantedLayout& layout,
                            const std::vector<KT_U64>& own, bool mayShare) {
    for (const KT_U64 id : disksFor(search.planner.matching, layout.disks)) {
        const PresentDisk& disk = search.planner.now.disks.at(id);
        const bool shares = mayShare && disk.member && disk.state == "healthy";
        if (!isIn(own, id) && !shares) checkFree(search, place, disk);
    }
}

// The virtual disks of an array that stays.
static void checkVdsIn(Search& search, const WantedArray& wanted, const PresentArray& array) {
    Planner& planner = search.planner;
    const LayoutChange change = changeOf(planner, wanted.layout, array.layout);
    for (const WantedVd& one : wanted.vds) {
        const auto at = planner.matching.vds.find(&one);
        if (at == planner.matching.vds.end()) continue;
        const auto why = whyAnewInArray(one, vdWith(planner.now, at->second), array, change.target);
        if (why) addVictim(search, {VictimKind::Vd, at->second, why->place, why->text, why->nearest});
    }
    PresentArray after = array;
    if (change.migrates) layOutAnew(after, change.target, slotsOf(planner.now));
    const WantedVd* tooLarge = firstThatDoesNotFit(planner, wanted, after);
    if (tooLarge == nullptr) return;
    const size_t before = search.victims.size();
    const std::string text = "does not fit into " + nameOf(array) + ", where " +
                             std::to_string(largestSlot(after) >> 20) + " MiB are free in one piece";
    for (const PresentVd& vd : array.vds) {
        if (isMentioned(planner, vd)) continue;
        addVictim(search, {VictimKind::Vd, vd.id, tooLarge->place,
                           text + "; " + nameOf(vd) + " is there, which the file does not mention", "a smaller size"});
    }
    if (search.victims.size() == before) planner.plan.reasons.push_back({tooLarge->place, text});
}

// What can only be made anew.
static void findAnew(Search& search) {
    const Planner& planner = search.planner;
    for (const auto& [wanted, id] : planner.matching.arrays) {
        const auto why = whyAnew(planner, *wanted, arrayWith(planner.now, id));
        if (why) addVictim(search, {VictimKind::Array, id, why->place, why->text, why->nearest});
    }
    for (const WantedVd& wanted : planner.wanted.vds) {
        const auto at = planner.matching.vds.find(&wanted);
        if (at == planner.matching.vds.end()) continue;
        const auto why = whyAnew(planner, wanted, vdWith(planner.now, at->second));
        if (why) addVictim(search, {VictimKind::Vd, at->second, why->place, why->text, why->nearest});
    }
}

static void checkArrays(Search& search) {
    Planner& planner = search.planner;
    for (const WantedArray& wanted : planner.wanted.arrays) {
        const auto at = planner.matching.arrays.find(&wanted);
        if (at == planner.matching.arrays.end()) {
            checkNewMembers(search, wanted.place + ".disks", wanted.layout, {}, false);
        } else if (!isVictim(search, VictimKind::Array, at->second)) {
            const PresentArray& array = arrayWith(planner.now, at->second);
            checkNewMembers(search, wanted.place + ".disks", wanted.layout, presentDisks(array.layout), false);
            checkVdsIn(search, wanted, array);
        }
    }
}

// Whether a virtual disk finds room on disks that others are on as well.
static bool findsRoom(const Planner& planner, const WantedVd& wanted) {
    static constexpr KT_U64 LEAST = KT_U64{100} << 20;
    PresentLayout layout;
    layout.level = wanted.layout.level;
    layout.parity = wanted.layout.parity.value_or(0);
    layout.stripe = wanted.layout.stripe.value_or(0);
    KT_U64 room = ~KT_U64{0};
    for (const KT_U64 id : disksFor(planner.matching, wanted.layout.disks)) {
        layout.disks.emplace_back(id);
        room = std::min(room, planner.now.disks.at(id).freeRoom);
    }
    return !layout.disks.empty() && capacityWith(layout, room) >= wanted.size.value_or(LEAST);
}

static void checkVds(Search& search) {
    const Planner& planner = search.planner;
    for (const WantedVd& wanted : planner.wanted.vds) {
        const auto at = planner.matching.vds.find(&wanted);
        std::vector<KT_U64> own;
        if (at != planner.matching.vds.end()) {
            if (isVictim(search, VictimKind::Vd, at->second)) continue;
            own = presentDisks(vdWith(planner.now, at->second).layout);
        }
        const bool mayShare = planner.now.sharesDisks && findsRoom(planner, wanted);
        checkNewMembers(search, wanted.place + ".disks", wanted.layout, own, mayShare);
    }
}

// A spare that is to stand by for something else has to be released first.
static void checkSpares(Search& search) {
    const Planner& planner = search.planner;
    const auto check = [&](const std::string& place, const std::vector<KT_U64>& numbers, std::optional<KT_U64> array) {
        for (const KT_U64 id : disksFor(planner.matching, numbers)) {
            const PresentDisk& disk = planner.now.disks.at(id);
            if (disk.spare && disk.spareOf == array) continue;
            checkFree(search, place, disk);
        }
    };
    for (const WantedArray& wanted : planner.wanted.arrays) {
        const auto at = planner.matching.arrays.find(&wanted);
        // An array that is not there yet has no id.
        check(wanted.place + ".spares", wanted.spares, at == planner.matching.arrays.end() ? ~KT_U64{0} : at->second);
    }
    check(planner.wanted.place + ".disks", planner.wanted.spares, std::nullopt);
}

// share: what becomes free of the disk when others are still on it.
static void release(PresentAdapter& now, KT_U64 id, KT_U64 share) {
    const auto holds = [&](const auto& owner) { return isOn(owner.layout, id); };
    PresentDisk& disk = now.disks.at(id);
    disk.member =
        std::any_of(now.arrays.begin(), now.arrays.end(), holds) || std::any_of(now.vds.begin(), now.vds.end(), holds);
    disk.freeRoom = disk.member ? std::min(disk.room, disk.freeRoom + share) : disk.room;
}

static void deleteVd(Planner& planner, const PresentVd& vd, const std::string& reason) {
    addStep(planner, {.words = {"delete", "-o", "vd", "-i", std::to_string(vd.id), "--waiveconfirmation"},
                      .reason = reason,
                      .cost = "at once; the data of " + nameOf(vd) + " (" + sizeText(vd.size) + ") are lost",
                      .deletes = true});
    const std::vector<KT_U64> disks = presentDisks(vd.layout);
    const KT_U64 share = shareOf(vd.layout, vd.size);
    const KT_U64 id = vd.id;
    const auto is = [&](const PresentVd& one) { return one.id == id; };
    for (PresentArray& array : planner.now.arrays) {
        if (std::erase_if(array.vds, is) != 0) freeSlot(array, id);
    }
    if (std::erase_if(planner.now.vds, is) == 0) return;
    for (const KT_U64 disk : disks)
        release(planner.now, disk, share);
}

static void deleteArray(Planner& planner, KT_U64 id, const std::string& reason) {
    const PresentArray array = arrayWith(planner.now, id);
    for (const PresentVd& vd : array.vds)
        deleteVd(planner, vd, reason);
    addStep(planner, {.words = {"delete", "-o", "array", "-i", std::to_string(id), "--waiveconfirmation"},
                      .reason = reason,
                      .cost = "at once; its disks become free",
                      .deletes = true});
    std::erase_if(planner.now.arrays, [&](const PresentArray& one) { return one.id == id; });
    for (const KT_U64 disk : presentDisks(array.layout))
        release(planner.now, disk, 0);
    for (auto& [other, disk] : planner.now.disks) {
        if (disk.spareOf != id) continue;
        disk.spare = false;
        disk.spareOf.reset();
    }
}

static bool carriesSystem(const Planner& planner, const Victim& victim) {
    if (victim.kind == VictimKind::Spare) return false;
    if (victim.kind == VictimKind::Vd) return vdWith(planner.now, victim.id).os;
    const PresentArray& array = arrayWith(planner.now, victim.id);
    return std::any_of(array.vds.begin(), array.vds.end(), [](const PresentVd& vd) { return vd.os; });
}

static void sacrifice(Planner& planner, const Victim& victim) {
    if (victim.kind == VictimKind::Array) {
        deleteArray(planner, victim.id, victim.text);
    } else if (victim.kind == VictimKind::Vd) {
        deleteVd(planner, vdWith(planner.now, victim.id), victim.text);
    } else {
        PresentDisk& disk = planner.now.disks.at(victim.id);
        addStep(planner, {.words = {"delete", "-o", "spare", "-i", std::to_string(victim.id), "--waiveconfirmation"},
                          .reason = victim.text + ", and wanted elsewhere",
                          .cost = "at once; it stands by for nothing until then",
                          .deletes = true});
        disk.spare = false;
        disk.spareOf.reset();
    }
}

static void refuseVictim(Planner& planner, const Victim& victim) {
    const bool system = carriesSystem(planner, victim);
    const std::string spare = victim.kind == VictimKind::Spare ? "releases it" : "deletes what is there, with its data";
    addUnreachable(planner, victim.place, victim.text + (system ? "; the system runs from it" : ""),
                   victim.nearest + (system ? "" : "; --delete " + spare));
}

// One round: false when nothing more is in the way, or nothing may be done about it.
static bool clearSome(Planner& planner) {
    planner.matching = matchAdapter(planner.now, planner.wanted, planner.options.mayDelete);
    planner.plan.reasons.insert(planner.plan.reasons.end(), planner.matching.reasons.begin(),
                                planner.matching.reasons.end());
    Search search = {planner, {}};
    findAnew(search);
    checkArrays(search);
    checkVds(search);
    checkSpares(search);
    if (search.victims.empty()) return false;
    for (const Victim& victim : search.victims) {
        if (!planner.options.mayDelete || carriesSystem(planner, victim)) refuseVictim(planner, victim);
    }
    if (!canBeReached(planner.plan)) return false;
    sacrifice(planner, search.victims.front());
    return true;
}

void planDeletions(Planner& planner) {
    while (clearSome(planner)) {
    }
}
