// What can be wrong with disks.
#include <algorithm>

#include "Report/problemRules.h"

namespace {
// What the adapter's log last said of disks' sectors that cannot be read.
using MediaLog = std::map<KT_U64, EventName>;
} // namespace

static constexpr CipherComplaint CIPHER_COMPLAINTS[] = {
    {EVT_PD_PLAIN_ON_CRYPTO_PORT, "it is not encrypted, but its port encrypts",
     "Move the disk to a port that does not encrypt, or switch its port's encryption off (ktsetup's aesport); "
     "forceonline would empty it."},
    {EVT_PD_CRYPTO_ON_PLAIN_PORT, "it is encrypted, but its port does not encrypt",
     "Give its port the disk's key and switch its encryption on (ktsetup's aesport), or move the disk to the port that "
     "it came from."},
    {EVT_PD_CIPHER_MISMATCH, "it is encrypted, and its port has another key or none",
     "Mount the disk's key at its port (ktsetup's aesport), or move the disk to the port that it came from."}};

const CipherComplaint* cipherComplaint(const Scene& scene, KT_U64 disk) {
    const auto last = newestEvent(
        scene, {EVT_PD_PLUGGED_IN, EVT_PD_PLAIN_ON_CRYPTO_PORT, EVT_PD_CRYPTO_ON_PLAIN_PORT, EVT_PD_CIPHER_MISMATCH},
        [&](const Json& event) { return numberIn(event, "DeviceID") == disk; });
    const auto* complaint = std::find_if(std::begin(CIPHER_COMPLAINTS), std::end(CIPHER_COMPLAINTS),
                                         [&](const CipherComplaint& each) { return each.event == last; });
    return complaint == std::end(CIPHER_COMPLAINTS) ? nullptr : complaint;
}

static MediaLog readLog(const Scene& scene) {
    MediaLog log;
    for (const Json& event : listIn(scene.adapter, "events")) {
        const auto id = numberIn(event, "DeviceID");
        const auto name = nameOfEvent(event);
        if (id && isOneOf(name, {EVT_PD_PLUGGED_IN, EVT_PD_BAD_SECTOR, EVT_PD_SECTOR_FIXED})) log[*id] = *name;
    }
    return log;
}

static std::string capital(std::string text) {
    if (!text.empty() && text[0] >= 'a' && text[0] <= 'z') text[0] = static_cast<char>(text[0] - 'a' + 'A');
    return text;
}

static std::string lightIt(const Scene& scene, KT_U64 id) {
    return command(scene, "locate -o pd -i " + std::to_string(id) + " -a on");
}

static void addDiskProblem(Scene& scene, const char* rule, KT_U64 id, const std::string& text,
                           const std::string& action) {
    found(scene, {rule, "disk", id, capital(text), action});
}

// How the virtual disks of a failed disk are, by the worst of them.
static std::string statusText(const std::vector<VdInArray>& vds) {
    const auto any = [&](const char* status) {
        return std::any_of(vds.begin(), vds.end(),
                           [&](const auto& one) { return textIn(*one.vd, "status") == status; });
    };
    const char* is = vds.size() == 1 ? "is" : "are";
    if (any("offline")) return std::string(", which ") + is + " offline";
    if (any("degraded")) return std::string(", which ") + is + " degraded: a further loss may lose the data";
    return any("partially optimal") ? ", which lost a part of the redundancy" : "";
}

static std::string whatItMeans(const Scene& scene, KT_U64 id, const Json& disk) {
    const std::vector<VdInArray> vds = virtualDisksOn(scene.adapter, id);
    if (!vds.empty()) return "; it holds data of " + namesOfVds(vds) + statusText(vds);
    if (const auto array = numberIn(disk, "array")) {
        const Json* record = findItem(scene.adapter, "arrays", *array);
        if (record == nullptr) return "; it belongs to array " + std::to_string(*array);
        std::vector<VdInArray> own;
        for (const Json& vd : listIn(*record, "virtualDisks"))
            own.push_back({&vd, record});
        return "; it belongs to " + nameOfArray(*record) + (own.empty() ? "" : " with " + namesOfVds(own));
    }
    return textIn(disk, "spare").empty() ? "; no virtual disk uses it" : "; it was a spare";
}

static void findFailed(Scene& scene, KT_U64 id, const Json& disk) {
    if (textIn(disk, "state") != "offline") return;
    const std::string name = nameOfDisk(disk) + onAdapter(scene);
    if (const CipherComplaint* complaint = cipherComplaint(scene, id)) {
        addDiskProblem(scene, "cipher-mismatch", id, name + " was taken offline: " + complaint->why + ".",
                       complaint->remedy);
        return;
    }
    addDiskProblem(scene, "disk-failed", id, name + " has failed" + whatItMeans(scene, id, disk) + ".",
                   "Replace the disk in " + placeOf(disk) + " with one at least as large; \"" + lightIt(scene, id) +
                       "\" lights its LED.");
}

static void findSmart(Scene& scene, KT_U64 id, const Json& disk) {
    if (!isTrue(disk, "smartTripped")) return;
    addDiskProblem(scene, "disk-smart", id, nameOfDisk(disk) + onAdapter(scene) + " foretells its failure (SMART).",
                   "See that backups are fresh and replace the disk in " + placeOf(disk) + " soon; \"" +
                       lightIt(scene, id) + "\" lights its LED.");
}

// Drives without a table of their own are known by what the adapter met on them.
static bool hasBadSectorsInLog(const MediaLog& log, KT_U64 id) {
    const auto at = log.find(id);
    return at != log.end() && at->second == EVT_PD_BAD_SECTOR;
}

static void findMediaErrors(Scene& scene, const MediaLog& log, KT_U64 id, const Json& disk) {
    const auto pending = numberIn(disk, "pending");
    const auto uncorrectable = numberIn(disk, "uncorrectable");
    const double count = static_cast<double>(pending.value_or(0)) + static_cast<double>(uncorrectable.value_or(0));
    const bool counted = pending || uncorrectable;
    const bool many = counted && count >= threshold(scene, "disk-media-errors");
    if (!many && (counted || !hasBadSectorsInLog(log, id))) return;
    const std::string how = counted
                                ? " has " + std::to_string(pending.value_or(0)) + " sectors that cannot be read and " +
                                      std::to_string(uncorrectable.value_or(0)) + " reads that failed for good."
                                : " has sectors that cannot be read, as the adapter's log tells.";
    addDiskProblem(
        scene, "disk-media-errors", id, nameOfDisk(disk) + onAdapter(scene) + how,
        "Let a media patrol (ktsetup's mp) repair what redundancy can; when the count grows, replace the disk.");
}

static void findHot(Scene& scene, KT_U64 id, const Json& disk) {
    const auto celsius = amountIn(disk, "temperature");
    if (!celsius || *celsius < threshold(scene, "disk-hot")) return;
    char degrees[32];
    snprintf(degrees, sizeof degrees, "%.0f", *celsius);
    addDiskProblem(scene, "disk-hot", id,
                   nameOfDisk(disk) + onAdapter(scene) + " is at " + degrees + " degrees Celsius.",
                   "See that its fans run and nothing keeps the air from it.");
}

static void findSlowLink(Scene& scene, KT_U64 id, const Json& disk) {
    const auto speed = numberIn(disk, "linkSpeed");
    KT_U64 most = 0;
    for (const Json& one : listIn(disk, "linkSpeeds")) {
        if (one.is_number_unsigned()) most = std::max(most, one.get<KT_U64>());
    }
    if (!speed || *speed >= most) return;
    const auto gigabits = [](KT_U64 bits) {
        char text[32];
        snprintf(text, sizeof text, "%g", static_cast<double>(bits) / 1e9);
        return std::string(text);
    };
    addDiskProblem(scene, "disk-link-slow", id,
                   nameOfDisk(disk) + onAdapter(scene) + " is linked at " + gigabits(*speed) + " Gb/s; it can do " +
                       gigabits(most) + ".",
                   "Seat the disk and its cable anew; a backplane or a port of that speed explains it as well.");
}

static void findWorn(Scene& scene, KT_U64 id, const Json& disk) {
    const auto wear = amountIn(disk, "wear");
    if (!wear || *wear < threshold(scene, "ssd-worn")) return;
    const bool out = *wear >= threshold(scene, "ssd-worn-out");
    char percent[32];
    snprintf(percent, sizeof percent, "%.0f", *wear);
    addDiskProblem(scene, out ? "ssd-worn-out" : "ssd-worn", id,
                   nameOfDisk(disk) + onAdapter(scene) + " has used " + percent + " % of what it can be written.",
                   out ? "Replace it now." : "Order another one and plan its replacement.");
}

void findDiskProblems(Scene& scene) {
    const MediaLog log = readLog(scene);
    for (const auto& [id, disk] : scene.disks) {
        findFailed(scene, id, *disk);
        findSmart(scene, id, *disk);
        findMediaErrors(scene, log, id, *disk);
        findHot(scene, id, *disk);
        findSlowLink(scene, id, *disk);
        findWorn(scene, id, *disk);
    }
}
