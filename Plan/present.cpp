#include "Plan/present.h"

#include <algorithm>
#include <iterator>

#include "Plan/place.h"
#include "Report/look.h"
#include "Report/words.h"

// Adapters up to this device id share disks among virtual disks and take a size as it is.
static constexpr KT_U64 LAST_THAT_SHARES = 0x4700;

static std::set<std::string> wordsIn(const Json& adapter, const char* list) {
    std::set<std::string> words;
    for (const Json& word : listIn(adapter, list)) {
        if (word.is_string()) words.insert(word.get<std::string>());
    }
    return words;
}

static std::map<std::string, KT_U64> numbersIn(const Json& adapter, const char* word) {
    std::map<std::string, KT_U64> numbers;
    const Json& object = in(adapter, word);
    if (!object.is_object()) return numbers;
    for (const auto& item : object.items()) {
        if (const auto number = numberIn(object, item.key().c_str())) numbers[item.key()] = *number;
    }
    return numbers;
}

static PresentDisk diskIn(const Json& json) {
    PresentDisk disk;
    disk.id = numberIn(json, "id").value_or(0);
    disk.serial = textIn(json, "serial");
    disk.type = textIn(json, "type");
    disk.on = textIn(json, "on");
    disk.parent = numberIn(json, "parent");
    disk.port = numberIn(json, "port");
    disk.enclosure = numberIn(json, "enclosure");
    disk.slot = numberIn(json, "slot");
    disk.size = numberIn(json, "size").value_or(0);
    disk.room = numberIn(json, "validSize").value_or(disk.size);
    disk.freeRoom = numberIn(json, "freeSize").value_or(disk.room);
    disk.sector = numberIn(json, "sector").value_or(512);
    disk.state = textIn(json, "state");
    disk.member = isTrue(json, "member");
    const std::string spare = textIn(json, "spare");
    disk.spare = !spare.empty();
    disk.spareInUse = isTrue(json, "spareInUse");
    if (spare == "dedicated") disk.spareOf = numberIn(json, "array");
    disk.os = isTrue(json, "os");
    disk.fileSystem = isTrue(json, "mbr");
    return disk;
}

static PresentLayout layoutIn(const Json& json) {
    PresentLayout layout;
    layout.level = textIn(json, "level");
    for (const Json& disk : listIn(json, "disks")) {
        layout.disks.push_back(disk.is_number_unsigned() ? std::optional(disk.get<KT_U64>()) : std::nullopt);
    }
    layout.parity = numberIn(json, "parity").value_or(0);
    layout.stripe = numberIn(json, "stripe").value_or(0);
    return layout;
}

// Something that has ended, or will not go on by itself, keeps nothing waiting.
static bool isBusy(const Json& object) {
    const Json& activity = in(object, "activity");
    const std::string state = textIn(activity, "state");
    return activity.is_object() && state != "aborted";
}

static PresentVd vdIn(const Json& json) {
    PresentVd vd;
    vd.id = numberIn(json, "id").value_or(0);
    vd.name = textIn(json, "name");
    vd.guid = textIn(json, "guid");
    vd.status = textIn(json, "status");
    vd.layout = layoutIn(json);
    vd.size = numberIn(json, "size").value_or(0);
    vd.cache = textIn(json, "cache");
    if (in(json, "readAhead").is_boolean()) vd.readAhead = isTrue(json, "readAhead");
    vd.os = isTrue(json, "os");
    vd.busy = isBusy(json);
    vd.redundant = isRedundant(vd.layout.level);
    const Json& target = in(json, "target");
    vd.migrating = vd.busy && target.is_object() && textIn(in(json, "activity"), "kind") == "migration";
    if (!vd.migrating) return vd;
    vd.layout = layoutIn(target);
    vd.size = numberIn(target, "size").value_or(vd.size);
    return vd;
}

static PresentArray arrayIn(const Json& json, KT_U64 mostSlots) {
    PresentArray array;
    array.id = numberIn(json, "id").value_or(0);
    array.name = textIn(json, "name");
    array.layout = layoutIn(json);
    array.redundant = isRedundant(array.layout.level);
    array.memberSize = numberIn(json, "memberSize").value_or(0);
    if (in(json, "writeCache").is_boolean()) array.writeCache = isTrue(json, "writeCache");
    // An array also tells of what its virtual disks do by themselves.
    const std::string kind = textIn(in(json, "activity"), "kind");
    array.busy = isBusy(json) && (kind == "rebuild" || kind == "migration" || kind == "copy back");
    for (const Json& vd : listIn(json, "virtualDisks")) {
        array.vds.push_back(vdIn(vd));
    }
    for (const Json& slot : listIn(json, "slots")) {
        array.slots.push_back({numberIn(slot, "size").value_or(0), numberIn(slot, "virtualDisk")});
    }
    const auto migrating = [](const PresentVd& vd) { return vd.migrating; };
    const auto first = std::find_if(array.vds.begin(), array.vds.end(), migrating);
    if (first == array.vds.end()) return array;
    layOutAnew(array, first->layout, mostSlots);
    array.migrating = true;
    return array;
}

// A disk that does not answer is as good as missing, though its place is still its own.
static void loseOffline(PresentLayout& layout, const PresentAdapter& adapter) {
    for (auto& disk : layout.disks) {
        const auto at = disk ? adapter.disks.find(*disk) : adapter.disks.end();
        if (disk && (at == adapter.disks.end() || at->second.state == "offline")) disk.reset();
    }
}

// What the library refused to tell, where planning cannot do without.
static void checkWhole(const Json& report) {
    static const char* const needed[] = {"KT_API_Initialize", "KT_Adapter_GetInfo",    "KT_Adapter_GetConfig",
                                         "KT_LD_GetInfo",     "KT_LD_GetStatus",       "KT_LD_GetConfig",
                                         "KT_DG_GetInfo",     "KT_DG_GetConfig",       "KT_PD_GetHDInfo",
                                         "KT_BLK_GetInfo",    "KT_PD_GetHDRaidStatus", "KT_PD_GetMBRInfo",
                                         "KT_DiskHasOS",      "KT_LD_GetTargetLDInfo"};
    for (const Json& refusal : listIn(report, "unread")) {
        const std::string call = textIn(refusal, "call");
        if (std::find(std::begin(needed), std::end(needed), call) == std::end(needed)) continue;
        std::string message =
            "what is there is not known: " + call + " answered \"" + shown(textIn(refusal, "text")) + "\"";
        if (const auto adapter = numberIn(refusal, "adapter")) message += " for adapter " + std::to_string(*adapter);
        throw IncompleteReport{message};
    }
}

static PresentAdapter adapterIn(const Json& json) {
    PresentAdapter adapter;
    adapter.id = numberIn(json, "id").value_or(0);
    adapter.serial = textIn(json, "serial");
    adapter.name = nameOfAdapter(json);
    adapter.arrayBased = textIn(json, "type") == "array-based";
    adapter.sharesDisks = !adapter.arrayBased && numberIn(in(json, "bus"), "device").value_or(0) <= LAST_THAT_SHARES;
    adapter.battery = numberIn(in(json, "battery"), "status").value_or(0) != 0;
    adapter.levels = wordsIn(json, "levels");
    adapter.features = wordsIn(json, "features");
    adapter.advanced = wordsIn(json, "advancedFeatures");
    for (const Json& stripe : listIn(json, "stripes")) {
        if (stripe.is_number_unsigned()) adapter.stripes.insert(stripe.get<KT_U64>());
    }
    adapter.limits = numbersIn(json, "limits");
    adapter.config = numbersIn(json, "config");
    for (const Json& disk : listIn(json, "disks")) {
        adapter.disks[numberIn(disk, "id").value_or(0)] = diskIn(disk);
    }
    for (const Json& array : listIn(json, "arrays")) {
        adapter.arrays.push_back(arrayIn(array, slotsOf(adapter)));
    }
    for (const Json& vd : listIn(json, "virtualDisks")) {
        adapter.vds.push_back(vdIn(vd));
    }
    for (PresentArray& array : adapter.arrays)
        loseOffline(array.layout, adapter);
    for (PresentVd& vd : adapter.vds)
        loseOffline(vd.layout, adapter);
    return adapter;
}

std::vector<PresentAdapter> adaptersIn(const Json& report) {
    checkWhole(report);
    std::vector<PresentAdapter> adapters;
    for (const Json& adapter : listIn(report, "adapters")) {
        adapters.push_back(adapterIn(adapter));
    }
    return adapters;
}

std::string nameOf(const PresentDisk& disk) {
    const std::string serial = shown(disk.serial);
    return "disk " + std::to_string(disk.id) + (serial.empty() ? "" : " (serial " + serial + ")");
}

std::string nameOf(const PresentVd& vd) {
    return "virtual disk " + std::to_string(vd.id) + " \"" + shown(vd.name) + "\"";
}

std::string nameOf(const PresentArray& array) {
    return "array " + std::to_string(array.id) + " \"" + shown(array.name) + "\"";
}

PresentArray& arrayWith(PresentAdapter& adapter, KT_U64 id) {
    const auto is = [&](const PresentArray& array) { return array.id == id; };
    return *std::find_if(adapter.arrays.begin(), adapter.arrays.end(), is);
}

const PresentArray& arrayWith(const PresentAdapter& adapter, KT_U64 id) {
    return arrayWith(const_cast<PresentAdapter&>(adapter), id);
}

const PresentVd& vdWith(const PresentAdapter& adapter, KT_U64 id) {
    const auto is = [&](const PresentVd& vd) { return vd.id == id; };
    for (const PresentArray& array : adapter.arrays) {
        const auto at = std::find_if(array.vds.begin(), array.vds.end(), is);
        if (at != array.vds.end()) return *at;
    }
    return *std::find_if(adapter.vds.begin(), adapter.vds.end(), is);
}
