// What a rebuild and a migration can make of disks that hold data, and what they cannot.
#include <algorithm>

#include "Plan/place.h"
#include "Report/look.h"
#include "Report/words.h"

namespace {
// An array, or a virtual disk outside arrays, beside what is wanted of it.
struct Comparison {
    const Planner& planner;
    std::string place;
    std::string name;
    const WantedLayout& wanted;
    const PresentLayout& there;
    bool array;
    bool hasVds; // something that a migration moves
    bool offline;
};
} // namespace

static std::string disksText(const std::vector<KT_U64>& disks) {
    return (disks.size() == 1 ? "disk " : "disks ") + joined(disks);
}

static std::vector<KT_U64> without(const std::vector<KT_U64>& all, const std::vector<KT_U64>& some) {
    std::vector<KT_U64> left;
    std::copy_if(all.begin(), all.end(), std::back_inserter(left), [&](KT_U64 one) { return !isIn(some, one); });
    return left;
}

LayoutChange changeOf(const Planner& planner, const WantedLayout& wanted, const PresentLayout& there) {
    LayoutChange change = {there, {}, false};
    const std::vector<KT_U64> asked = disksFor(planner.matching, wanted.disks);
    std::vector<KT_U64> coming = without(asked, presentDisks(there));
    std::sort(coming.begin(), coming.end());
    for (auto& disk : change.target.disks) {
        if (disk || coming.empty()) continue;
        disk = coming.front();
        change.rebuildOn.push_back(coming.front());
        coming.erase(coming.begin());
    }
    for (const KT_U64 disk : coming)
        change.target.disks.emplace_back(disk);
    change.target.level = wanted.level;
    const KT_U64 usual = wanted.level == there.level ? there.parity : usualParity(wanted.level);
    change.target.parity = takesParity(wanted.level) ? wanted.parity.value_or(usual) : 0;
    const KT_U64 parity = takesParity(there.level) ? there.parity : 0;
    change.migrates = !coming.empty() || change.target.level != there.level || change.target.parity != parity;
    return change;
}

static Unreachable unreachable(const Comparison& c, const char* word, const std::string& text,
                               const std::string& nearest) {
    return {c.place + "." + word, text, nearest};
}

// Which of the disks that are there would have to go.
static std::optional<Unreachable> checkMembers(const Comparison& c) {
    const std::vector<KT_U64> asked = disksFor(c.planner.matching, c.wanted.disks);
    const std::vector<KT_U64> members = presentDisks(c.there);
    const std::vector<KT_U64> surplus = without(members, asked);
    if (asked.size() == c.wanted.disks.size() && !surplus.empty()) {
        return unreachable(c, "disks",
                           c.name + " is also on " + disksText(surplus) +
                               "; a migration takes no disk away, and only a failure makes room for another one",
                           "leave " + disksText(surplus) + " among its disks");
    }
    if (c.wanted.disks.size() < c.there.disks.size()) {
        return unreachable(c, "disks",
                           c.name + " has room for " + std::to_string(c.there.disks.size()) + " disks, " +
                               std::to_string(c.wanted.disks.size()) + " are wanted; a migration takes none away",
                           std::to_string(c.there.disks.size()) + " disks");
    }
    if (c.offline) {
        return unreachable(c, "disks", c.name + " is offline, and no command brings its data back",
                           "bring back the disks that it has lost");
    }
    return std::nullopt;
}

static std::string describedLayout(const PresentLayout& layout) {
    std::string text = layout.level;
    if (takesParity(layout.level)) text += " with " + std::to_string(layout.parity) + " parity disks";
    return text + " on " + disksText(presentDisks(layout));
}

static std::optional<Unreachable> checkMigration(const Comparison& c, const PresentLayout& target) {
    const std::string stay = "leave it at " + describedLayout(c.there);
    const char* word = target.level == c.there.level ? "disks" : "level";
    if (!c.planner.now.features.contains("migration")) {
        return unreachable(
            c, word, c.planner.now.name + " does not migrate, and " + c.name + " is " + describedLayout(c.there), stay);
    }
    if (isHybrid(c.there.level) || c.there.level == "JBOD") {
        return unreachable(c, word, c.name + " is " + c.there.level + ", which does not migrate", stay);
    }
    if (!mayMigrate(c.there.level, target.level)) {
        return unreachable(c, "level",
                           c.name + " is " + c.there.level + "; a migration to " + target.level +
                               " would lead to less redundancy, which none does",
                           stay);
    }
    const auto refused = refusedCount(target.level, target.disks.size(), c.array, true);
    if (refused) return unreachable(c, "disks", *refused, stay);
    if (!c.planner.now.levels.contains(target.level)) {
        return unreachable(c, "level", c.planner.now.name + " has no " + target.level, stay);
    }
    if (!c.hasVds) {
        return unreachable(c, word, c.name + " is empty, and only an array with a virtual disk in it migrates", stay);
    }
    static constexpr KT_U64 SHARE = KT_U64{1} << 30;
    if (capacityWith(target, SHARE) < capacityWith(c.there, SHARE)) {
        return unreachable(c, word, c.name + " would hold less than now as " + describedLayout(target), stay);
    }
    return std::nullopt;
}

static std::optional<Unreachable> whyAnew(const Comparison& c) {
    if (c.wanted.stripe && *c.wanted.stripe != c.there.stripe) {
        return unreachable(c, "stripe",
                           c.name + " has stripes of " + std::to_string(c.there.stripe) +
                               " KiB, which stay as they were created",
                           std::to_string(c.there.stripe));
    }
    if (auto found = checkMembers(c)) return found;
    if (disksFor(c.planner.matching, c.wanted.disks).size() < c.wanted.disks.size()) return std::nullopt;
    const LayoutChange change = changeOf(c.planner, c.wanted, c.there);
    return change.migrates ? checkMigration(c, change.target) : std::nullopt;
}

static bool isAlmost(KT_U64 size, KT_U64 wanted, KT_U64 row) {
    return size <= wanted + row && size + row >= wanted;
}

// What is more wanted of a size than there will be, or less; `size` is that behind a migration.
static std::optional<Unreachable> checkSize(const WantedVd& wanted, const PresentVd& there, KT_U64 size,
                                            const PresentLayout& target) {
    if (!wanted.size || isAlmost(size, *wanted.size, rowOf(target))) return std::nullopt;
    const char* why = size != there.size ? ", to which the migration of its disks brings it"
                      : size > *wanted.size
                          ? ", and nothing makes one smaller"
                          : ", and one grows only when its disks migrate and nothing is free behind it";
    return Unreachable{wanted.place + ".size",
                       nameOf(there) + (size != there.size ? " would have " : " has ") + std::to_string(size >> 20) +
                           " MiB" + why + "; " + std::to_string(*wanted.size >> 20) + " MiB are wanted",
                       std::to_string(size >> 20) + " MiB"};
}

std::optional<Unreachable> whyAnewInArray(const WantedVd& wanted, const PresentVd& there, const PresentArray& array,
                                          const PresentLayout& target) {
    return checkSize(wanted, there, sizeBehind(array, there, target), target);
}

std::optional<Unreachable> whyAnew(const Planner& planner, const WantedArray& wanted, const PresentArray& there) {
    const auto isOffline = [](const PresentVd& vd) { return vd.status == "offline"; };
    const bool missing = presentDisks(there.layout).size() < there.layout.disks.size();
    const bool offline =
        std::any_of(there.vds.begin(), there.vds.end(), isOffline) || (missing && !isRedundant(there.layout.level));
    return whyAnew(Comparison{planner, wanted.place, nameOf(there), wanted.layout, there.layout, true,
                              !there.vds.empty(), offline});
}

std::optional<Unreachable> whyAnew(const Planner& planner, const WantedVd& wanted, const PresentVd& there) {
    auto found = whyAnew(Comparison{planner, wanted.place, nameOf(there), wanted.layout, there.layout, false, true,
                                    there.status == "offline"});
    if (found || disksFor(planner.matching, wanted.layout.disks).size() < wanted.layout.disks.size()) return found;
    const PresentLayout target = changeOf(planner, wanted.layout, there.layout).target;
    // Whether it grows depends on whether it was made without a size, which nothing tells; the rehearsal does.
    if (wanted.size && isAlmost(there.size, *wanted.size, rowOf(target))) return std::nullopt;
    return checkSize(wanted, there, grown(there.size, there.layout, target), target);
}
