#include "Report/problems.h"

#include <algorithm>
#include <cstring>

#include "Report/problemRules.h"

static constexpr ProblemRule rules[] = {
    {"adapter-unread", Severity::Critical, "an adapter does not answer",
     "See whether it is still in the system (lspci, dmesg)."},
    {"vd-offline", Severity::Critical, "a virtual disk is offline: its data cannot be reached",
     "Bring back the disks that it lost most recently, before anything else is done to it; do not create, initialise "
     "or wipe anything on its disks."},
    {"disk-failed", Severity::Critical, "a disk is offline",
     "Replace it with one at least as large; \"ktsetup {adapter} locate -o pd -i {id} -a on\" lights its LED."},
    {"vd-last-redundancy", Severity::Critical, "one more loss of a disk loses data",
     "See that a rebuild goes on or replace the failed disk, and that a backup is fresh."},
    {"cache-unsafe", Severity::Critical, "write-back caching without a battery that keeps the cache",
     "See what the battery is short of (\"ktsetup {adapter} info -o bbu\"), or set the cache to auto or off."},
    {"ssd-worn-out", Severity::Critical, "a solid state disk is used up", "Replace it now."},
    {"element-critical", Severity::Critical, "a part of an enclosure has failed", "Replace the part."},
    {"adapter-image-damaged", Severity::Critical, "an image in the adapter's flash is damaged",
     "Write it anew (ktsetup's flash) before the machine is started again."},
    {"vd-degraded", Severity::Warning, "a virtual disk has lost a part of its redundancy",
     "See that a rebuild goes on, or replace the failed disk."},
    {"vd-conflicted", Severity::Warning, "a virtual disk's disks disagree about it",
     "Compare the last write times (ktsetup's info -o vd), keep the newer half and remove the other disks."},
    {"vd-foreign", Severity::Warning, "a virtual disk comes from another adapter",
     "Import it (ktsetup's import), or take its disks out."},
    {"vd-inconsistent", Severity::Warning, "a check found redundancy that does not fit the data",
     "Run a check that fixes (ktsetup's cc); when it comes back, look for a failing disk."},
    {"vd-not-initialised", Severity::Warning, "the redundancy of a virtual disk was never made",
     "Initialise it (ktsetup's init); a foreground one erases what is on it."},
    {"activity-stopped", Severity::Warning, "an activity was interrupted, aborted or paused by hand",
     "Resume or start it again when the reason for the stop has gone; the events tell it."},
    {"disk-missing", Severity::Warning, "a disk of an array or a virtual disk is not there",
     "Put the disk back, or rebuild what is not offline onto another one (ktsetup's rebuild)."},
    {"disk-smart", Severity::Warning, "a disk foretells its failure",
     "See that backups are fresh and replace it soon; \"ktsetup {adapter} locate -o pd -i {id} -a on\" lights its "
     "LED."},
    {"disk-media-errors", Severity::Warning, "a disk has sectors that cannot be read",
     "Let a media patrol (ktsetup's mp) repair what redundancy can; when the count grows, replace the disk."},
    {"disk-hot", Severity::Warning, "a disk is too hot", "See that its fans run and nothing keeps the air from it."},
    {"disk-link-slow", Severity::Warning, "a disk's link is slower than the disk can",
     "Seat the disk and its cable anew; a backplane or a port of that speed explains it as well."},
    {"ssd-worn", Severity::Warning, "a solid state disk is nearly used up",
     "Order another one and plan its replacement."},
    {"spare-none-fits", Severity::Warning, "no spare fits a redundant array",
     "Assign a disk of its kind, at least as large as its members, as a spare (ktsetup's assign)."},
    {"spare-idle", Severity::Warning, "a spare fits, but automatic rebuild is off",
     "Rebuild onto the spare (ktsetup's rebuild), or switch automatic rebuild on (ktsetup's set)."},
    {"cache-reduced", Severity::Warning, "caching fell back to write-through",
     "See what the battery is short of (\"ktsetup {adapter} info -o bbu\"); writes are slow until then."},
    {"battery-missing", Severity::Warning, "there was a battery, and there is none",
     "Put a battery in; until then virtual disks with an automatic cache write through."},
    {"battery-weak", Severity::Warning, "the battery does not hold enough",
     "Charge it; when it does not hold the charge, replace it."},
    {"battery-hot", Severity::Warning, "the battery is too hot",
     "See that air reaches the adapter; heat ages the battery quickly."},
    {"battery-charging-long", Severity::Warning, "the battery will take long to be charged",
     "Watch it; a battery that charges slowly is nearly used up."},
    {"element-warning", Severity::Warning, "a part of an enclosure is not as it should be",
     "Look at the part, its cables and its power; replace it."},
    {"port-locked", Severity::Warning, "an encrypting port has no key",
     "Give it a key (ktsetup's aesentry and aesport), or switch its encryption off."},
    {"cipher-mismatch", Severity::Warning, "a disk's encryption is not its port's",
     "Give its port the right key (ktsetup's aesport), or move the disk to the port that it came from."},
    {"events-lost", Severity::Warning, "the adapter's log has lost events",
     "Read the log more often (ktreport events --cursor), and look at everything once."},
    {"unread", Severity::Warning, "the library refused to tell something",
     "Run ktreport on the machine; what it does not tell may be wrong unseen."},
};

static const ProblemRule* ruleNamed(const std::string& name) {
    const auto* rule =
        std::find_if(std::begin(rules), std::end(rules), [&](const auto& row) { return name == row.name; });
    return rule == std::end(rules) ? nullptr : rule;
}

std::vector<ProblemRule> problemRules() {
    return {std::begin(rules), std::end(rules)};
}

const char* wordOf(Severity severity) {
    return severity == Severity::Critical ? "critical" : "warning";
}

bool isProblemName(const std::string& name) {
    return ruleNamed(name) != nullptr;
}

Json defaultThresholds() {
    return {{"disk-hot", 60},                  // Celsius
            {"disk-media-errors", 1},          // sectors pending or uncorrectable
            {"ssd-worn", 80},                  // percent
            {"ssd-worn-out", 95},              // percent
            {"battery-hot", 50},               // Celsius
            {"battery-weak", 50},              // percent of a full charge
            {"battery-charging-long", 28800}}; // seconds
}

std::string mergeThresholds(Json& thresholds, const Json& overrides) {
    if (!overrides.is_object()) return "should be an object of numbers";
    for (const auto& [name, value] : overrides.items()) {
        if (!thresholds.contains(name)) return "\"" + shown(name) + "\" is no threshold";
        if (!value.is_number()) return "\"" + name + "\" should be a number";
        thresholds[name] = value;
    }
    return "";
}

static std::string refusalText(const Json& refusal) {
    std::string text = shown(textIn(refusal, "call"));
    const Json& ids = listIn(refusal, "ids");
    if (ids.size() == 1) text += " for " + ids.front().dump();
    if (ids.size() > 1) text += " for " + std::to_string(ids.size()) + " items";
    if (const auto status = numberIn(refusal, "status")) text += ": error " + std::to_string(*status);
    return text + (refusal.contains("status") ? ", " : ": ") + shown(textIn(refusal, "text"));
}

// An adapter without what it runs by answers almost nothing.
static bool cannotRun(const Scene& scene) {
    const Json& images = in(scene.adapter, "images");
    return isFalse(images, "firmware") || isFalse(images, "boot loader");
}

static void findUnread(Scene& scene) {
    const bool told = scene.adapter.contains("type");
    bool down = false;
    for (const Json& refusal : listIn(scene.document, "unread")) {
        if (numberIn(refusal, "adapter") != scene.adapterId || !isRefusal(refusal)) continue;
        if (isOfWhatIsOffline(scene.document, refusal)) continue;
        if (!told) {
            found(scene,
                  {"adapter-unread", "adapter", scene.adapterId,
                   "Adapter " + std::to_string(scene.adapterId) + " does not answer: " + refusalText(refusal) + ".",
                   "See whether it is still in the system (lspci, dmesg) and run the report again."});
            return;
        }
        if (numberIn(refusal, "status") == KT_U64{KT_ERR_LINK_TIMEOUT} && cannotRun(scene)) {
            down = true;
            continue;
        }
        found(scene,
              {"unread", "adapter", scene.adapterId, "Not everything could be read: " + refusalText(refusal) + ".",
               "Run the report again; what it does not tell may be wrong unseen."});
    }
    if (!down) return;
    found(scene, {"unread", "adapter", scene.adapterId,
                  "Adapter " + std::to_string(scene.adapterId) + " does not run, and says nothing of what it has.",
                  "Write its damaged images anew (ktsetup's flash) and boot the machine; then run the report again."});
}

static std::vector<Finding> findingsOf(const Json& document, const Json& adapter, const Json& thresholds) {
    Scene scene = {document, adapter, thresholds, numberIn(adapter, "id").value_or(0), {}, virtualDisksOf(adapter), {}};
    for (const Json& disk : listIn(adapter, "disks")) {
        if (const auto id = numberIn(disk, "id")) scene.disks[*id] = &disk;
    }
    findUnread(scene);
    findVolumeProblems(scene);
    findDiskProblems(scene);
    findPartProblems(scene);
    return std::move(scene.findings);
}

static Json problemOf(const Finding& finding, const ProblemRule& rule, std::optional<KT_U64> adapter) {
    Json problem = {{"name", finding.name}, {"severity", wordOf(rule.severity)}};
    if (adapter) problem["adapter"] = *adapter;
    problem["object"] = finding.object;
    if (finding.id) problem["id"] = *finding.id;
    problem["text"] = finding.text;
    problem["action"] = finding.action;
    return problem;
}

// Refusals of the library as a whole.
static void addLibraryProblems(const Json& document, std::vector<std::pair<size_t, Json>>& problems) {
    for (const Json& refusal : listIn(document, "unread")) {
        if (numberIn(refusal, "adapter") || !isRefusal(refusal)) continue;
        const Finding finding = {"unread", "library", std::nullopt,
                                 "Not everything could be read: " + refusalText(refusal) + ".",
                                 "Read the adapters that are left out one by one (-a)."};
        const ProblemRule* rule = ruleNamed(finding.name);
        problems.emplace_back(rule - std::begin(rules), problemOf(finding, *rule, std::nullopt));
    }
}

const Json* objectOfProblem(const Json& adapter, const Json& problem) {
    const std::string kind = textIn(problem, "object");
    if (kind == "adapter") return &adapter;
    const auto id = numberIn(problem, "id");
    if (!id) return nullptr;
    if (kind == "virtual disk") {
        for (const VdInArray& one : virtualDisksOf(adapter)) {
            if (numberIn(*one.vd, "id") == id) return one.vd;
        }
    }
    if (kind == "disk") return findItem(adapter, "disks", *id);
    if (kind == "array") return findItem(adapter, "arrays", *id);
    return kind == "enclosure" ? findItem(adapter, "enclosures", *id) : nullptr;
}

std::string titleOfProblem(const Json& document, const Json& problem) {
    const auto id = numberIn(problem, "adapter");
    const Json* adapter = id ? findAdapter(document, *id) : nullptr;
    if (adapter == nullptr) return "the library";
    const std::string kind = textIn(problem, "object");
    const Json* object = objectOfProblem(*adapter, problem);
    if (object == adapter) return nameOfAdapter(*adapter);
    const std::string on = " on adapter " + std::to_string(*id);
    if (object != nullptr && kind == "disk") return nameOfDisk(*object) + on;
    if (object != nullptr && kind == "virtual disk") return nameOfVd(*object) + on;
    if (object != nullptr && kind == "array") return nameOfArray(*object) + on;
    const auto number = numberIn(problem, "id");
    return shown(kind) + (number ? " " + std::to_string(*number) : "") + on;
}

Json problemsOf(const Json& document, const Json& thresholds) {
    std::vector<std::pair<size_t, Json>> problems;
    for (const Json& adapter : listIn(document, "adapters")) {
        if (!adapter.is_object()) continue;
        for (const Finding& finding : findingsOf(document, adapter, thresholds)) {
            const ProblemRule* rule = ruleNamed(finding.name);
            problems.emplace_back(rule - std::begin(rules), problemOf(finding, *rule, numberIn(adapter, "id")));
        }
    }
    addLibraryProblems(document, problems);
    // By the table's order, which begins with what matters most; within a rule as they were found.
    const auto earlier = [](const auto& a, const auto& b) { return a.first < b.first; };
    std::stable_sort(problems.begin(), problems.end(), earlier);
    Json list = Json::array();
    for (auto& problem : problems) {
        list.push_back(std::move(problem.second));
    }
    return list;
}
