#include "Plan/wanted.h"

#include <algorithm>
#include <iterator>

#include "Plan/levels.h"
#include "Plan/wantedWords.h"
#include "Report/look.h"
#include "Report/words.h"

static constexpr KT_U64 MOST = 65534;         // disks, and ids of anything
static constexpr KT_U64 MOST_ADAPTERS = 16;   // that programs use
static constexpr KT_U64 MOST_OF_A_KIND = 254; // arrays and virtual disks

// The settings that `set -o hba` has words for; the others of an adapter's record are not settings of a configuration.
static bool isRate(const std::string& word) {
    return word.size() > 4 && word.compare(word.size() - 4, 4, "Rate") == 0;
}

static void readConfig(const WantedObject& config, WantedAdapter& adapter) {
    static const char* const settings[] = {"AutoRebuildOn", "CpuEfficiencyOn", "BGARate",       "SyncRate",
                                           "InitRate",      "RebuildRate",     "MigrationRate", "CopybackRate",
                                           "MPRate",        "PollSMARTStatus", "CopyBackOn",    "ModuleConsolidation",
                                           "AlarmOn"};
    for (const auto& item : config.json.items()) {
        const char* word = item.key().c_str();
        const auto here = [&](const char* setting) { return item.key() == setting; };
        if (!std::any_of(std::begin(settings), std::end(settings), here)) continue;
        // A record says 255 of a setting that its adapter does not have.
        const auto value = takeNumber(config, word, 255);
        if (!value || *value == 255) continue;
        if (*value > (isRate(item.key()) ? 100 : 1)) {
            complain(config, word, isRate(item.key()) ? "should be 0 to 100" : "should be 0 or 1");
        } else {
            adapter.config[item.key()] = *value;
        }
    }
}

static std::vector<std::string> allWordsOf(CodeWords table) {
    std::vector<std::string> words;
    for (const CodeWord& row : table) {
        words.emplace_back(row.word);
    }
    return words;
}

static WantedDisk diskFrom(const WantedObject& object) {
    WantedDisk disk;
    disk.place = object.place;
    disk.serial = takeText(object, "serial");
    disk.type = takeOneOf(object, "type", allWordsOf(diskTypeWords));
    disk.on = takeOneOf(object, "on", allWordsOf(parentWords));
    disk.id = takeNumber(object, "id", MOST);
    disk.parent = takeNumber(object, "parent", MOST);
    disk.port = takeNumber(object, "port", 255);
    disk.enclosure = takeNumber(object, "enclosure", MOST);
    disk.slot = takeNumber(object, "slot", MOST);
    disk.size = takeAmount(object, "size").value_or(0);
    return disk;
}

// As in labs: "count" stands for so many of it, on the following ports, with the following numbers.
static void readDisks(const WantedObject& object, WantedAdapter& adapter) {
    adapter.listsDisks = object.json.contains("disks");
    KT_U64 next = 0;
    for (const WantedObject& entry : takeObjects(object, "disks")) {
        checkWords(entry, WantedKind::Disk);
        const KT_U64 count = takeNumber(entry, "count", MOST).value_or(1);
        WantedDisk disk = diskFrom(entry);
        // A spare at work is a member now, and stands among the disks of what it works for.
        const bool works = isTrue(entry.json, "spareInUse");
        const bool spare = takeText(entry, "spare") == "global" && !works;
        if (count > 1 && !disk.serial.empty())
            complain(entry, "serial", "is that of one disk; \"count\" asks for more");
        next = disk.id.value_or(next);
        for (KT_U64 copy = 0; copy < count; ++copy, ++next) {
            if (next > MOST) {
                complain(entry, "count", "goes beyond the last disk number");
                return;
            }
            if (!adapter.disks.emplace(next, disk).second) {
                complain(entry, "id", std::to_string(next) + " is another disk's already");
            }
            if (spare) adapter.spares.push_back(next);
            if (works) adapter.spareAtWork.insert(next);
            if (disk.id) ++*disk.id;
            if (disk.port) ++*disk.port;
            if (disk.slot) ++*disk.slot;
        }
    }
}

static WantedLayout layoutFrom(const WantedObject& object) {
    WantedLayout layout;
    layout.level = takeOneOf(object, "level", allWordsOf(levelWords));
    if (layout.level.empty()) layout.level = "RAID5";
    layout.disks = takeDisks(object, "disks");
    layout.parity = takeNumber(object, "parity", 255);
    layout.stripe = takeNumber(object, "stripe", 1024);
    std::vector<KT_U64> sorted = layout.disks;
    std::sort(sorted.begin(), sorted.end());
    const auto twice = std::adjacent_find(sorted.begin(), sorted.end());
    if (twice != sorted.end()) complain(object, "disks", "name disk " + std::to_string(*twice) + " twice");
    return layout;
}

static void checkLayout(const WantedObject& object, const WantedLayout& layout, bool array) {
    if (typedLevel(layout.level) == nullptr || (array && isHybrid(layout.level))) {
        complain(object, "level", "nothing makes " + layout.level + (array ? " in an array" : ""));
        return;
    }
    if (layout.disks.empty()) complain(object, "disks", "are not named");
    const auto refused = refusedCount(layout.level, layout.disks.size(), array, false);
    if (!layout.disks.empty() && refused) complain(object, "disks", *refused);
    if (layout.parity && *layout.parity != 0 && !takesParity(layout.level)) {
        complain(object, "parity", layout.level + " has no parity disks to choose");
    }
}

static WantedVd vdFrom(const WantedObject& object, KT_U64 number) {
    checkWords(object, WantedKind::Vd);
    WantedVd vd;
    vd.place = object.place;
    vd.name = takeText(object, "name");
    if (vd.name.empty()) vd.name = "VD_" + std::to_string(takeNumber(object, "id", MOST).value_or(number));
    vd.guid = takeText(object, "guid");
    vd.size = takeAmount(object, "size");
    vd.cache = takeOneOf(object, "cache", {"on", "off", "auto"});
    vd.readAhead = takeFlag(object, "readAhead");
    const std::string status = takeText(object, "status");
    static const char* const elsewhere[] = {"deleted",        "foreign",    "importable",
                                            "not importable", "conflicted", "plugin conflicted"};
    for (const char* word : elsewhere) {
        if (status == word) complain(object, "status", "nothing makes a virtual disk " + status);
    }
    static constexpr KT_U64 LEAST = KT_U64{100} << 20;
    if (vd.size && *vd.size < LEAST) complain(object, "size", "is less than 100 MiB, the least that can be created");
    return vd;
}

// Two things of one name among `items` could not be told apart.
template <class Item>
static void checkNames(const std::vector<Item>& items, const char* what, std::vector<Reason>& reasons) {
    std::map<std::string, const Item*> seen;
    for (const Item& item : items) {
        const auto [at, isNew] = seen.emplace(item.name, &item);
        if (!isNew) {
            reasons.push_back({item.place + ".name", "\"" + shown(item.name) + "\" is the name of another " + what +
                                                         " (" + at->second->place +
                                                         "); names decide what is the same thing"});
        }
    }
}

// The objects of a list with their copies, each through add(object, number of the copy).
template <class Add>
static void eachCopy(const WantedObject& owner, const char* word, Add add) {
    KT_U64 all = 0;
    for (const WantedObject& object : takeObjects(owner, word)) {
        const KT_U64 count = takeNumber(object, "count", MOST_OF_A_KIND).value_or(1);
        for (KT_U64 copy = 0; copy < count; ++copy) {
            if (++all > MOST_OF_A_KIND) {
                complain(owner, word, "are more than " + std::to_string(MOST_OF_A_KIND));
                return;
            }
            add(object, copy);
        }
    }
}

static void readArrays(const WantedObject& object, WantedAdapter& adapter, KT_U64& vds) {
    eachCopy(object, "arrays", [&](const WantedObject& entry, KT_U64 copy) {
        checkWords(entry, WantedKind::Array);
        WantedArray array;
        array.place = entry.place;
        array.name = takeText(entry, "name");
        const KT_U64 number = takeNumber(entry, "id", MOST).value_or(adapter.arrays.size());
        if (array.name.empty()) array.name = "Array_" + std::to_string(number + copy);
        array.layout = layoutFrom(entry);
        checkLayout(entry, array.layout, true);
        for (KT_U64& disk : array.layout.disks)
            disk += copy * array.layout.disks.size();
        array.spares = takeDisks(entry, "spares");
        std::erase_if(array.spares, [&](KT_U64 disk) { return adapter.spareAtWork.contains(disk); });
        array.writeCache = takeFlag(entry, "writeCache");
        if (!array.spares.empty() && !isRedundant(array.layout.level)) {
            complain(entry, "spares", array.layout.level + " has no use for a spare");
        }
        eachCopy(entry, "virtualDisks",
                 [&](const WantedObject& vd, KT_U64) { array.vds.push_back(vdFrom(vd, vds++)); });
        checkNames(array.vds, "one in this array", object.reasons);
        adapter.arrays.push_back(std::move(array));
    });
    checkNames(adapter.arrays, "array", object.reasons);
}

static void readVds(const WantedObject& object, WantedAdapter& adapter, KT_U64& vds) {
    eachCopy(object, "virtualDisks", [&](const WantedObject& entry, KT_U64 copy) {
        WantedVd vd = vdFrom(entry, vds++);
        vd.layout = layoutFrom(entry);
        checkLayout(entry, vd.layout, false);
        for (KT_U64& disk : vd.layout.disks)
            disk += copy * vd.layout.disks.size();
        adapter.vds.push_back(std::move(vd));
    });
    checkNames(adapter.vds, "virtual disk", object.reasons);
}

// A disk can be in one array only, and is a member or a spare.
static void checkRoles(const WantedAdapter& adapter, std::vector<Reason>& reasons) {
    std::map<KT_U64, std::string> roles;
    const auto take = [&](KT_U64 disk, const std::string& place) {
        if (adapter.listsDisks && !adapter.disks.contains(disk)) {
            reasons.push_back({place, "disk " + std::to_string(disk) + " is not among the disks of this file"});
        }
        const auto [at, isNew] = roles.emplace(disk, place);
        if (!isNew) {
            reasons.push_back({place, "disk " + std::to_string(disk) + " is taken by " + at->second + " already"});
        }
    };
    for (const WantedArray& array : adapter.arrays) {
        for (const KT_U64 disk : array.layout.disks)
            take(disk, array.place + ".disks");
        for (const KT_U64 disk : array.spares)
            take(disk, array.place + ".spares");
    }
    for (const WantedVd& vd : adapter.vds) {
        for (const KT_U64 disk : vd.layout.disks) {
            // Virtual disks may share their disks.
            if (!roles.contains(disk) || adapter.type == "array-based") take(disk, vd.place + ".disks");
        }
    }
    for (const KT_U64 disk : adapter.spares)
        take(disk, adapter.place + ".disks");
}

static WantedAdapter adapterFrom(const WantedObject& object) {
    checkWords(object, WantedKind::Adapter);
    WantedAdapter adapter;
    adapter.place = object.place;
    adapter.serial = takeText(object, "serial");
    adapter.id = takeNumber(object, "id", 254);
    adapter.type = takeOneOf(object, "type", {"array-based", "LD-based"});
    for (const WantedObject& config : takeObjects(object, "config")) {
        checkWords(config, WantedKind::Config);
        readConfig(config, adapter);
    }
    KT_U64 vds = 0;
    readDisks(object, adapter);
    readArrays(object, adapter, vds);
    readVds(object, adapter, vds);
    checkRoles(adapter, object.reasons);
    return adapter;
}

Wanted wantedIn(const Json& file) {
    Wanted wanted;
    const WantedObject top = {file, "", wanted.reasons};
    if (!file.is_object() || !in(file, "adapters").is_array()) {
        wanted.reasons.push_back({"adapters", "should be the list of adapters that a lab or a report begins with"});
        return wanted;
    }
    checkWords(top, WantedKind::File);
    for (const WantedObject& object : takeObjects(top, "adapters")) {
        const KT_U64 count = takeNumber(object, "count", MOST_ADAPTERS).value_or(1);
        for (KT_U64 copy = 0; copy < count && wanted.adapters.size() < MOST_ADAPTERS; ++copy) {
            wanted.adapters.push_back(adapterFrom(object));
            // Copies stand one behind the other.
            if (wanted.adapters.back().id) *wanted.adapters.back().id += copy;
        }
    }
    if (wanted.adapters.empty() && wanted.reasons.empty()) wanted.reasons.push_back({"adapters", "names no adapter"});
    return wanted;
}
