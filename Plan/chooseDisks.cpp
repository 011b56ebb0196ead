#include "Plan/chooseDisks.h"

#include <algorithm>

#include "Plan/levels.h"
#include "Report/look.h"

// Nominal sizes are compared in megabytes: how a disk rounds its last sectors is no reason to refuse it.
static constexpr KT_U64 MEGABYTE = 1000000;

static bool isNamed(const WantedDisk& disk) {
    return !disk.serial.empty() || disk.id || disk.port || (disk.enclosure && disk.slot);
}

static bool isInBay(const PresentDisk& disk, const WantedDisk& asked) {
    if (asked.enclosure && (asked.slot || asked.port)) {
        return disk.enclosure == asked.enclosure && disk.slot == (asked.slot ? asked.slot : asked.port);
    }
    const std::string on = asked.on.empty() ? "HBA" : asked.on;
    return disk.on == on && disk.port == asked.port && (on == "HBA" || disk.parent == asked.parent.value_or(0));
}

static bool hasBay(const WantedDisk& asked) {
    return asked.port || (asked.enclosure && asked.slot);
}

// "a SAS disk of at least 4.0 TB in enclosure 1"
static std::string described(const WantedDisk& asked) {
    std::string text = asked.type.empty() ? "a disk" : "a " + asked.type + " disk";
    if (asked.size != 0) text += " of at least " + sizeText(asked.size);
    if (asked.enclosure) text += " in enclosure " + std::to_string(*asked.enclosure);
    if (!asked.on.empty()) text += " on the " + asked.on;
    return text;
}

static std::string bayText(const WantedDisk& asked) {
    if (asked.enclosure && (asked.slot || asked.port)) {
        return "slot " + std::to_string(asked.slot ? *asked.slot : *asked.port) + " of enclosure " +
               std::to_string(*asked.enclosure);
    }
    std::string text = "port " + std::to_string(asked.port.value_or(0));
    if (!asked.on.empty() && asked.on != "HBA")
        text += " of " + asked.on + " " + std::to_string(asked.parent.value_or(0));
    return text;
}

// Whether a disk is what the file says, where it says so.
static bool isAsSaid(const PresentDisk& disk, const WantedDisk& asked) {
    return (asked.type.empty() || disk.type == asked.type) && disk.size / MEGABYTE >= asked.size / MEGABYTE;
}

static bool fits(const PresentDisk& disk, const WantedDisk& asked) {
    if (!isAsSaid(disk, asked) || (asked.enclosure && disk.enclosure != asked.enclosure)) return false;
    return (asked.on.empty() || disk.on == asked.on) && (!asked.parent || disk.parent == asked.parent);
}

template <class Is>
static std::vector<const PresentDisk*> disksThat(const PresentAdapter& there, Is is) {
    std::vector<const PresentDisk*> found;
    for (const auto& [id, disk] : there.disks) {
        if (is(disk)) found.push_back(&disk);
    }
    return found;
}

static bool isAskedBySerial(const WantedAdapter& wanted, const PresentDisk& disk) {
    return std::any_of(wanted.disks.begin(), wanted.disks.end(), [&](const auto& entry) {
        return !entry.second.serial.empty() && entry.second.serial == disk.serial;
    });
}

// What stands in the bay of a disk that is gone takes its place, unless the file means another one by it.
static const PresentDisk* standIn(const PresentAdapter& there, const WantedAdapter& wanted, const WantedDisk& asked,
                                  Matching& matching) {
    if (!hasBay(asked)) return nullptr;
    const auto inBay = disksThat(there, [&](const PresentDisk& disk) { return isInBay(disk, asked); });
    if (inBay.size() != 1 || isAskedBySerial(wanted, *inBay.front())) return nullptr;
    matching.notes.push_back(nameOf(*inBay.front()) + " in " + bayText(asked) + " stands for serial number " +
                             shown(asked.serial) + ", which is not there");
    return inBay.front();
}

// The disk, or null after noting why there is none.
static const PresentDisk* findNamed(const PresentAdapter& there, const WantedAdapter& wanted, KT_U64 number,
                                    const WantedDisk& asked, Matching& matching) {
    const auto refuse = [&](const char* word, const std::string& text) {
        matching.reasons.push_back({asked.place + word, text + " on " + there.name});
        return nullptr;
    };
    if (!asked.serial.empty()) {
        const auto same = disksThat(there, [&](const PresentDisk& disk) { return disk.serial == asked.serial; });
        if (same.size() == 1) return same.front();
        if (!same.empty())
            return refuse(".serial", "serial number " + shown(asked.serial) + " is that of several disks");
        const PresentDisk* other = standIn(there, wanted, asked, matching);
        return other ? other : refuse(".serial", "there is no disk with serial number " + shown(asked.serial));
    }
    if (hasBay(asked)) {
        const auto inBay = disksThat(there, [&](const PresentDisk& disk) { return isInBay(disk, asked); });
        if (inBay.size() == 1) return inBay.front();
        return refuse("",
                      inBay.empty() ? "there is no disk in " + bayText(asked) : bayText(asked) + " is several disks'");
    }
    const auto at = there.disks.find(asked.id.value_or(number));
    if (at != there.disks.end()) return &at->second;
    return refuse("", "there is no disk " + std::to_string(asked.id.value_or(number)));
}

// Every number that something is asked to be made of.
static std::vector<KT_U64> usedNumbers(const WantedAdapter& wanted) {
    std::vector<KT_U64> used = wanted.spares;
    const auto add = [&](const std::vector<KT_U64>& numbers) {
        used.insert(used.end(), numbers.begin(), numbers.end());
    };
    for (const WantedArray& array : wanted.arrays) {
        add(array.layout.disks);
        add(array.spares);
    }
    for (const WantedVd& vd : wanted.vds) {
        add(vd.layout.disks);
    }
    std::sort(used.begin(), used.end());
    used.erase(std::unique(used.begin(), used.end()), used.end());
    return used;
}

// A number without a description is an id.
static WantedDisk wantedDisk(const WantedAdapter& wanted, KT_U64 number) {
    const auto at = wanted.disks.find(number);
    if (at != wanted.disks.end()) return at->second;
    WantedDisk disk;
    disk.place = wanted.place;
    disk.id = number;
    return disk;
}

void findNamedDisks(const PresentAdapter& there, const WantedAdapter& wanted, Matching& matching) {
    std::map<KT_U64, KT_U64> numbers; // by the disk that they are
    for (const KT_U64 number : usedNumbers(wanted)) {
        const WantedDisk asked = wantedDisk(wanted, number);
        if (!isNamed(asked)) continue;
        const PresentDisk* disk = findNamed(there, wanted, number, asked, matching);
        if (disk == nullptr) continue;
        if (!isAsSaid(*disk, asked)) {
            matching.reasons.push_back({asked.place, nameOf(*disk) + " is " + shown(disk->type) + " of " +
                                                         sizeText(disk->size) + "; wanted is " + described(asked)});
            continue;
        }
        const auto [at, isNew] = numbers.emplace(disk->id, number);
        if (!isNew) {
            matching.reasons.push_back(
                {asked.place, "is " + nameOf(*disk) + ", as disk " + std::to_string(at->second) + " of the file is"});
            continue;
        }
        matching.disks[number] = disk->id;
    }
}

namespace {
// Disks that are given out one by one.
struct Choice {
    const PresentAdapter& there;
    const WantedAdapter& wanted;
    Matching& matching;
    bool takeFileSystems;
    std::set<KT_U64> taken;

    // One that is named and not there stays without a disk.
    bool isOpen(KT_U64 number) const {
        return !matching.disks.contains(number) && !isNamed(wantedDisk(wanted, number));
    }
    void give(KT_U64 number, KT_U64 disk) {
        matching.disks[number] = disk;
        taken.insert(disk);
    }
};
} // namespace

// What does the duty already keeps it.
static void keepOnDuty(Choice& choice, const std::vector<KT_U64>& numbers, const std::vector<KT_U64>& onDuty) {
    for (const KT_U64 id : onDuty) {
        const auto disk = choice.there.disks.find(id);
        if (disk == choice.there.disks.end() || choice.taken.contains(id)) continue;
        for (const KT_U64 number : numbers) {
            if (!choice.isOpen(number) || !fits(disk->second, wantedDisk(choice.wanted, number))) continue;
            choice.give(number, id);
            break;
        }
    }
}

static std::vector<KT_U64> membersOf(const PresentLayout& layout) {
    std::vector<KT_U64> members;
    for (const auto& disk : layout.disks) {
        if (disk) members.push_back(*disk);
    }
    return members;
}

static void keepAll(Choice& choice) {
    const PresentAdapter& there = choice.there;
    for (const auto& [array, id] : choice.matching.arrays) {
        keepOnDuty(choice, array->layout.disks, membersOf(arrayWith(there, id).layout));
    }
    for (const WantedVd& vd : choice.wanted.vds) {
        const auto at = choice.matching.vds.find(&vd);
        if (at != choice.matching.vds.end())
            keepOnDuty(choice, vd.layout.disks, membersOf(vdWith(there, at->second).layout));
    }
    const auto spares = [&](std::optional<KT_U64> array) {
        std::vector<KT_U64> ids;
        for (const auto& [id, disk] : there.disks) {
            if (disk.spare && !disk.spareInUse && disk.spareOf == array) ids.push_back(id);
        }
        return ids;
    };
    for (const auto& [array, id] : choice.matching.arrays) {
        keepOnDuty(choice, array->spares, spares(id));
    }
    keepOnDuty(choice, choice.wanted.spares, spares(std::nullopt));
}

static bool isFree(const Choice& choice, const PresentDisk& disk) {
    return disk.state == "healthy" && !disk.member && !disk.spare && !disk.os && disk.type != "ATAPI" &&
           !choice.taken.contains(disk.id) && (choice.takeFileSystems || !disk.fileSystem);
}

bool isAlike(const PresentAdapter& there, const PresentDisk& one, const PresentDisk& other) {
    const bool sameType = one.type == other.type || !there.features.contains("only same type hd for create");
    return one.sector == other.sector && sameType;
}

// The free disks from the one that is given up first to the one that is given up last.
static std::vector<const PresentDisk*> freeDisks(const Choice& choice, KT_U64 room) {
    auto free =
        disksThat(choice.there, [&](const PresentDisk& disk) { return isFree(choice, disk) && disk.room >= room; });
    std::stable_sort(free.begin(), free.end(), [](const PresentDisk* a, const PresentDisk* b) {
        return std::tuple(a->fileSystem, a->size) < std::tuple(b->fileSystem, b->size);
    });
    return free;
}

// Disks for the open ones of the numbers that are all like `model`; those with the greatest demands choose first.
static std::map<KT_U64, KT_U64> chooseLike(const Choice& choice, const std::vector<KT_U64>& open,
                                           const PresentDisk& model, std::vector<const PresentDisk*> free, bool alike) {
    std::map<KT_U64, KT_U64> chosen;
    std::vector<KT_U64> order = open;
    std::stable_sort(order.begin(), order.end(), [&](KT_U64 a, KT_U64 b) {
        return wantedDisk(choice.wanted, a).size > wantedDisk(choice.wanted, b).size;
    });
    for (const KT_U64 number : order) {
        const WantedDisk asked = wantedDisk(choice.wanted, number);
        const auto at = std::find_if(free.begin(), free.end(), [&](const PresentDisk* disk) {
            return fits(*disk, asked) && (!alike || isAlike(choice.there, model, *disk));
        });
        if (at == free.end()) continue;
        chosen[number] = (*at)->id;
        free.erase(at);
    }
    return chosen;
}

namespace {
// Numbers that one thing is made of.
struct Demand {
    std::string place;
    std::vector<KT_U64> numbers;
    KT_U64 room = 0;       // that each disk must have
    std::set<KT_U64> like; // disks that the chosen ones must be like
    bool alike = true;     // all must be alike
};
} // namespace

static KT_U64 largestSize(const Choice& choice, const Demand& demand) {
    KT_U64 size = 0;
    for (const KT_U64 number : demand.numbers)
        size = std::max(size, wantedDisk(choice.wanted, number).size);
    return size;
}

static void refuseShortage(Choice& choice, const Demand& demand, const std::vector<KT_U64>& open, size_t found) {
    const WantedDisk asked = wantedDisk(choice.wanted, open.front());
    std::string text =
        described(asked) + (open.size() > 1 ? " is wanted " + std::to_string(open.size()) + " times" : " is wanted");
    text += found == 0 ? ", and none that fits is free" : ", and only " + std::to_string(found) + " that fit are free";
    choice.matching.reasons.push_back({demand.place, text + " on " + choice.there.name});
}

static void choose(Choice& choice, const Demand& demand) {
    std::vector<KT_U64> open;
    std::copy_if(demand.numbers.begin(), demand.numbers.end(), std::back_inserter(open),
                 [&](KT_U64 number) { return choice.isOpen(number); });
    const auto free = freeDisks(choice, demand.room);
    // One of a kind is enough to try.
    std::vector<const PresentDisk*> models;
    for (const PresentDisk* disk : free) {
        const auto isSame = [&](const PresentDisk* one) {
            return one->type == disk->type && one->sector == disk->sector;
        };
        if (std::none_of(models.begin(), models.end(), isSame)) models.push_back(disk);
    }
    if (!demand.like.empty()) models = {&choice.there.disks.at(*demand.like.begin())};
    std::map<KT_U64, KT_U64> best;
    for (const PresentDisk* model : models) {
        const auto chosen = chooseLike(choice, open, *model, free, demand.alike);
        if (chosen.size() > best.size()) best = chosen;
    }
    if (best.size() < open.size()) refuseShortage(choice, demand, open, best.size());
    for (const auto& [number, disk] : best)
        choice.give(number, disk);
}

static std::set<KT_U64> knownOf(const Choice& choice, const std::vector<KT_U64>& numbers) {
    std::set<KT_U64> known;
    for (const KT_U64 disk : disksFor(choice.matching, numbers)) {
        if (choice.there.disks.contains(disk)) known.insert(disk);
    }
    return known;
}

static std::vector<Demand> memberDemands(const Choice& choice) {
    std::vector<Demand> demands;
    for (const WantedArray& array : choice.wanted.arrays) {
        Demand demand = {array.place + ".disks", array.layout.disks, 0, knownOf(choice, array.layout.disks), true};
        const auto at = choice.matching.arrays.find(&array);
        if (at != choice.matching.arrays.end()) demand.room = arrayWith(choice.there, at->second).memberSize;
        demands.push_back(demand);
    }
    for (const WantedVd& vd : choice.wanted.vds) {
        const bool alike = !isHybrid(vd.layout.level);
        demands.push_back({vd.place + ".disks", vd.layout.disks, 0, knownOf(choice, vd.layout.disks), alike});
    }
    // The most demanding ones choose before the others.
    std::stable_sort(demands.begin(), demands.end(),
                     [&](const Demand& a, const Demand& b) { return largestSize(choice, a) > largestSize(choice, b); });
    return demands;
}

// What a spare stands by for.
static Demand spareDemand(const Choice& choice, const std::string& place, const std::vector<KT_U64>& numbers,
                          const std::vector<KT_U64>& members) {
    Demand demand = {place, numbers, 0, knownOf(choice, members), true};
    for (const KT_U64 disk : demand.like) {
        const KT_U64 room = choice.there.disks.at(disk).room;
        demand.room = demand.room == 0 ? room : std::min(demand.room, room);
    }
    return demand;
}

void chooseOtherDisks(const PresentAdapter& there, const WantedAdapter& wanted, bool takeFileSystems,
                      Matching& matching) {
    Choice choice = {there, wanted, matching, takeFileSystems, {}};
    for (const auto& [number, disk] : matching.disks)
        choice.taken.insert(disk);
    keepAll(choice);
    for (const Demand& demand : memberDemands(choice))
        choose(choice, demand);
    for (const WantedArray& array : wanted.arrays) {
        choose(choice, spareDemand(choice, array.place + ".spares", array.spares, array.layout.disks));
    }
    std::vector<KT_U64> redundant; // disks of the first thing that a global spare can stand by for
    for (const WantedArray& array : wanted.arrays) {
        if (redundant.empty() && array.layout.level != "RAID0") redundant = array.layout.disks;
    }
    for (const WantedVd& vd : wanted.vds) {
        if (redundant.empty() && vd.layout.level != "RAID0") redundant = vd.layout.disks;
    }
    for (const KT_U64 number : wanted.spares) {
        choose(choice, spareDemand(choice, wanted.place + ".disks", {number}, redundant));
    }
}
