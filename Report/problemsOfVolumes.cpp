// What can be wrong with virtual disks, arrays and their spares.
#include <algorithm>
#include <cstring>

#include "Report/problemRules.h"
#include "Report/words.h"

namespace {
// A virtual disk under its rules.
struct Subject {
    const Json& vd;
    KT_U64 id;
    std::string status;
    std::string level;
    std::string name; // "Virtual disk 2 \"orders\" on adapter 0"
};
} // namespace

static void addProblem(Scene& scene, const char* rule, const Subject& subject, const std::string& text,
                       const std::string& action) {
    found(scene, {rule, "virtual disk", subject.id, subject.name + text, action});
}

static bool isOffline(const Scene& scene, const Json& disk) {
    if (!disk.is_number_unsigned()) return true;
    const auto at = scene.disks.find(disk.get<KT_U64>());
    return at == scene.disks.end() || textIn(*at->second, "state") == "offline";
}

// Members that do not hold their data now: missing, offline or being filled.
static std::vector<bool> lostMembers(const Scene& scene, const Json& vd) {
    std::vector<bool> lost;
    const auto filled = numberIn(in(vd, "activity"), "disk");
    const bool rebuilding = textIn(in(vd, "activity"), "kind") == "rebuild";
    for (const Json& disk : listIn(vd, "disks")) {
        const bool isFilled = rebuilding && filled && disk.is_number_unsigned() && disk == *filled;
        lost.push_back(isFilled || isOffline(scene, disk));
    }
    return lost;
}

// Losses that a part of the virtual disk stands: disks' worth of parity at RAID6 and RAID60, else one.
static unsigned lossesStood(const Json& vd, const std::string& level, size_t parts) {
    const auto parity = static_cast<unsigned>(numberIn(vd, "parity").value_or(0));
    if (level == "RAID6") return std::max(parity, 2U);
    if (level == "RAID60") return std::max<unsigned>(parity / static_cast<unsigned>(parts), 1);
    return 1;
}

// Whether one more loss takes the virtual disk offline.
static bool isLastRedundancy(const Scene& scene, const Subject& subject) {
    const std::vector<bool> lost = lostMembers(scene, subject.vd);
    const bool parted = subject.level == "RAID50" || subject.level == "RAID60";
    const size_t parts = parted ? std::max<size_t>(numberIn(subject.vd, "parts").value_or(2), 1) : 1;
    const unsigned stood = lossesStood(subject.vd, subject.level, parts);
    const size_t each = std::max<size_t>(lost.size() / std::max<size_t>(parts, 1), 1);
    unsigned most = 0;
    for (size_t from = 0; from < lost.size(); from += each) {
        const size_t to = std::min(from + each, lost.size());
        unsigned gone = 0;
        for (size_t i = from; i < to; ++i)
            gone += lost[i] ? 1 : 0;
        most = std::max(most, gone);
    }
    // What the slots do not tell, the status does: without a loss in sight only one that stands a single loss is sure.
    return most == 0 ? stood == 1 : most >= stood;
}

static std::string progressText(const Json& vd) {
    const Json& activity = in(vd, "activity");
    const std::string kind = textIn(activity, "kind");
    if (kind.empty() || textIn(activity, "state") != "running") return "";
    const auto percent = numberIn(activity, "percent");
    return "; " + kind + " is running" + (percent ? " (" + std::to_string(*percent) + " %)" : "");
}

static void findHealth(Scene& scene, const Subject& subject) {
    if (subject.status == "offline") {
        const Json& disks = listIn(subject.vd, "disks");
        const bool locked = std::any_of(disks.begin(), disks.end(), [&](const Json& disk) {
            return disk.is_number_unsigned() && isOffline(scene, disk) && cipherComplaint(scene, disk.get<KT_U64>());
        });
        const std::string first = locked ? "See to the encryption of its disks' ports (ktsetup's aesport)"
                                         : "Bring back the disks that it lost most recently";
        addProblem(
            scene, "vd-offline", subject, " is offline: its data cannot be reached.",
            first + ", before anything else is done to it; do not create, initialise or wipe anything on its disks.");
    }
    if (subject.status != "degraded" && subject.status != "partially optimal") return;
    const std::string rebuild = "Replace the failed disk; a rebuild starts by itself when a spare fits, else with "
                                "ktsetup's rebuild.";
    const bool heals = !progressText(subject.vd).empty();
    const std::string wait = "Leave its disks alone until the rebuild is done, and see that a backup is fresh.";
    if (isRedundant(subject.level) && isLastRedundancy(scene, subject)) {
        addProblem(scene, "vd-last-redundancy", subject,
                   " (" + subject.level + ") has no redundancy left: one more loss of a disk loses data" +
                       progressText(subject.vd) + ".",
                   heals ? wait : rebuild + " See that a backup is fresh.");
        return;
    }
    addProblem(scene, "vd-degraded", subject, " is " + subject.status + progressText(subject.vd) + ".",
               heals ? wait : rebuild);
}

static void findOrigin(Scene& scene, const Subject& subject) {
    if (subject.status == "conflicted" || subject.status == "plugin conflicted") {
        addProblem(
            scene, "vd-conflicted", subject, " is conflicted: its disks disagree about it.",
            "Compare the last write times (ktsetup's info -o vd), keep the newer half and remove the other disks.");
    }
    if (subject.status == "foreign" || subject.status == "importable" || subject.status == "not importable") {
        const bool can = subject.status != "not importable";
        addProblem(scene, "vd-foreign", subject, " comes from another adapter (" + subject.status + ").",
                   can ? "Import it: " + command(scene, "import -i " + std::to_string(subject.id)) + "."
                       : std::string("Bring its other disks as well, or wipe these when nothing on them is needed."));
    }
}

static void findActivity(Scene& scene, const Subject& subject) {
    const Json& activity = in(subject.vd, "activity");
    const std::string kind = textIn(activity, "kind");
    const std::string state = textIn(activity, "state");
    if (state != "interrupted" && state != "aborted" && state != "paused") return;
    const bool init = kind.find("init") != std::string::npos;
    if (init && state != "paused" && isRedundant(subject.level)) {
        addProblem(scene, "vd-not-initialised", subject,
                   ": its " + kind + " was " + state + "; its redundancy was never made.",
                   "Start the initialisation again (ktsetup's init); a foreground one erases what is on it.");
        return;
    }
    const auto percent = numberIn(activity, "percent");
    addProblem(scene, "activity-stopped", subject,
               ": " + (kind.empty() ? std::string("its activity") : kind) + " is " + state +
                   (percent ? " at " + std::to_string(*percent) + " %" : "") + ".",
               state == "paused" ? "Resume it when the reason for the pause has gone."
               : state == "interrupted"
                   ? "It goes on by itself when the disks that it needs are back; the events tell which left."
                   : "Start it again when the reason for the stop has gone; the events tell it.");
}

// What the log says of a virtual disk since its creation.
static void findLogged(Scene& scene, const Subject& subject) {
    if (!isRedundant(subject.level)) return;
    const auto about = [&](const Json& event) { return numberIn(event, "DeviceID") == subject.id; };
    const auto checked = newestEvent(scene, {EVT_VD_INCONSISTENT, EVT_VD_FIX_COMPLETED, EVT_VD_CREATED}, about);
    if (checked == EVT_VD_INCONSISTENT) {
        addProblem(
            scene, "vd-inconsistent", subject, ": a check found redundancy that does not fit the data.",
            "Run a check that fixes: " + command(scene, "cc -a start -l " + std::to_string(subject.id) + " -t sync") +
                "; when it comes back, look for a failing disk.");
    }
    const bool busy = textIn(in(subject.vd, "activity"), "kind").find("init") != std::string::npos;
    const auto made = newestEvent(scene,
                                  {EVT_VD_QUICK_INIT_COMPLETED, EVT_VD_BACKGROUND_INIT_COMPLETED,
                                   EVT_VD_FOREGROUND_INIT_COMPLETED, EVT_VD_CREATED},
                                  about);
    if (made == EVT_VD_CREATED && !busy) {
        addProblem(scene, "vd-not-initialised", subject, ": its redundancy was never made; a loss now may lose data.",
                   "Initialise it: " + command(scene, "init -l " + std::to_string(subject.id)) + ".");
    }
}

// Caching is the business of adapters that have a place for a battery; on others it ends with the power anyway.
static void findCache(Scene& scene, const Subject& subject) {
    const Json& able = listIn(scene.adapter, "advancedFeatures");
    const std::string inForce = textIn(subject.vd, "cacheInForce");
    const Json& battery = in(scene.adapter, "battery");
    const bool present = battery.is_object() && (numberIn(battery, "status").value_or(0) & KT_BBU_PRESENT) != 0;
    const bool place = std::find(able.begin(), able.end(), "bbu") != able.end();
    const bool keeps =
        present && newestEvent(scene, {EVT_BATTERY_ABNORMAL, EVT_BATTERY_NORMAL}) != EVT_BATTERY_ABNORMAL;
    if (inForce == "on" && place && !battery.is_null() && !keeps) {
        addProblem(
            scene, "cache-unsafe", subject, " caches writes, and no battery keeps the cache: a power cut loses data.",
            present ? "See what the battery is short of (ktsetup's info -o bbu), or set the cache to auto or off."
                    : "Put a battery in, or set the cache to auto or off (ktsetup's set).");
    }
    if (inForce == "off" && textIn(subject.vd, "cache") == "auto") {
        addProblem(scene, "cache-reduced", subject, " fell back to write-through: the battery does not keep the cache.",
                   "See what the battery is short of (ktsetup's info -o bbu); writes are slow until then.");
    }
}

// What is to be done about a missing disk: nothing is rebuilt that does not work, or is not this adapter's.
static std::string missingAction(const std::string& status) {
    for (const char* barred :
         {"offline", "foreign", "importable", "not importable", "conflicted", "plugin conflicted"}) {
        if (status == barred) return "Put the disk back; what is " + status + " cannot be rebuilt.";
    }
    return "Put the disk back, or rebuild onto another one (ktsetup's rebuild).";
}

static void findMissing(Scene& scene, const char* object, const Json& owner, const std::string& name) {
    const Json& disks = listIn(owner, "disks");
    const auto missing = std::count_if(disks.begin(), disks.end(), [](const Json& disk) { return disk.is_null(); });
    if (missing == 0) return;
    found(scene,
          {"disk-missing", object, numberIn(owner, "id"),
           name + " on adapter " + std::to_string(scene.adapterId) + " lacks " + std::to_string(missing) + " of its " +
               std::to_string(disks.size()) + (missing == 1 ? " disks; its place is empty." : " disks."),
           missingAction(statusOfArray(owner))});
}

static bool isSsd(const Json& disk) {
    return textIn(disk, "type").find("SSD") != std::string::npos;
}

static bool fits(const Scene& scene, const Json& spare, const Json& array) {
    const std::string role = textIn(spare, "spare");
    if (role.empty() || isTrue(spare, "spareInUse") || textIn(spare, "state") != "healthy") return false;
    if (role == "dedicated" && numberIn(spare, "array") != numberIn(array, "id")) return false;
    if (numberIn(spare, "validSize").value_or(0) < numberIn(array, "memberSize").value_or(0)) return false;
    const Json& features = listIn(scene.adapter, "features");
    if (std::find(features.begin(), features.end(), "only same type hd for create") == features.end()) return true;
    for (const Json& id : listIn(array, "disks")) {
        if (!id.is_number_unsigned() || !scene.disks.count(id.get<KT_U64>())) continue;
        const Json& member = *scene.disks.at(id.get<KT_U64>());
        return isSsd(member) == isSsd(spare) &&
               textIn(member, "type").substr(0, 3) == textIn(spare, "type").substr(0, 3);
    }
    return true;
}

static bool everHadSpares(const Scene& scene) {
    const bool now = std::any_of(scene.disks.begin(), scene.disks.end(),
                                 [](const auto& disk) { return !textIn(*disk.second, "spare").empty(); });
    return now || newestEvent(scene, {EVT_PD_SPARE_ASSIGNED, EVT_PD_SPARE_USED}).has_value();
}

static void findSpares(Scene& scene, const Json& array, bool spares) {
    if (!isRedundant(textIn(array, "level"))) return;
    const bool any = std::any_of(scene.disks.begin(), scene.disks.end(),
                                 [&](const auto& disk) { return fits(scene, *disk.second, array); });
    const std::string name = "Array" + nameOfArray(array).substr(5) + " on adapter " + std::to_string(scene.adapterId);
    if (!any && spares) {
        found(scene, {"spare-none-fits", "array", numberIn(array, "id"), name + " has no spare that fits it.",
                      "Assign a disk of its kind, at least as large as its members, as a spare (ktsetup's assign)."});
    }
    const bool off = numberIn(in(scene.adapter, "config"), "AutoRebuildOn") == KT_U64{0};
    const Json& disks = listIn(array, "disks");
    const bool lost = std::any_of(disks.begin(), disks.end(), [&](const Json& disk) { return isOffline(scene, disk); });
    if (any && lost && off && statusOfArray(array) != "offline") {
        found(scene, {"spare-idle", "array", numberIn(array, "id"),
                      name + " has lost a disk and a spare fits, but automatic rebuild is off.",
                      "Rebuild onto the spare (ktsetup's rebuild), or switch automatic rebuild on (ktsetup's set)."});
    }
}

void findVolumeProblems(Scene& scene) {
    for (const VdInArray& one : scene.virtualDisks) {
        const std::string name = nameOfVd(*one.vd);
        const Subject subject = {*one.vd, numberIn(*one.vd, "id").value_or(0), textIn(*one.vd, "status"),
                                 textIn(*one.vd, "level"),
                                 "V" + name.substr(1) + " on adapter " + std::to_string(scene.adapterId)};
        findHealth(scene, subject);
        findOrigin(scene, subject);
        findActivity(scene, subject);
        findLogged(scene, subject);
        findCache(scene, subject);
        if (one.array == nullptr) findMissing(scene, "virtual disk", *one.vd, "V" + name.substr(1));
    }
    const Json& arrays = listIn(scene.adapter, "arrays");
    const bool spares = !arrays.empty() && everHadSpares(scene);
    for (const Json& array : arrays) {
        findMissing(scene, "array", array, "A" + nameOfArray(array).substr(1));
        findSpares(scene, array, spares);
    }
}
