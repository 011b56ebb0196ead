#include "Report/problems.h"

#include <algorithm>
#include <cstring>

#include "Report/problemRules.h"

static constexpr ProblemRule rules[] = {
    {"adapter-unread", Severity::Critical, "an adapter does not answer"},
    {"vd-offline", Severity::Critical, "a virtual disk is offline: its data cannot be reached"},
    {"disk-failed", Severity::Critical, "a disk is offline"},
    {"vd-last-redundancy", Severity::Critical, "one more loss of a disk loses data"},
    {"cache-unsafe", Severity::Critical, "write-back caching without a battery that keeps the cache"},
    {"ssd-worn-out", Severity::Critical, "a solid state disk is used up"},
    {"element-critical", Severity::Critical, "a part of an enclosure has failed"},
    {"adapter-image-damaged", Severity::Critical, "an image in the adapter's flash is damaged"},
    {"vd-degraded", Severity::Warning, "a virtual disk has lost a part of its redundancy"},
    {"vd-conflicted", Severity::Warning, "a virtual disk's disks disagree about it"},
    {"vd-foreign", Severity::Warning, "a virtual disk comes from another adapter"},
    {"vd-inconsistent", Severity::Warning, "a check found redundancy that does not fit the data"},
    {"vd-not-initialised", Severity::Warning, "the redundancy of a virtual disk was never made"},
    {"activity-stopped", Severity::Warning, "an activity was interrupted, aborted or paused by hand"},
    {"disk-missing", Severity::Warning, "a disk of an array or a virtual disk is not there"},
    {"disk-smart", Severity::Warning, "a disk foretells its failure"},
    {"disk-media-errors", Severity::Warning, "a disk has sectors that cannot be read"},
    {"disk-hot", Severity::Warning, "a disk is too hot"},
    {"disk-link-slow", Severity::Warning, "a disk's link is slower than the disk can"},
    {"ssd-worn", Severity::Warning, "a solid state disk is nearly used up"},
    {"spare-none-fits", Severity::Warning, "no spare fits a redundant array"},
    {"spare-idle", Severity::Warning, "a spare fits, but automatic rebuild is off"},
    {"cache-reduced", Severity::Warning, "caching fell back to write-through"},
    {"battery-missing", Severity::Warning, "there was a battery, and there is none"},
    {"battery-weak", Severity::Warning, "the battery does not hold enough"},
    {"battery-hot", Severity::Warning, "the battery is too hot"},
    {"battery-charging-long", Severity::Warning, "the battery will take long to be charged"},
    {"element-warning", Severity::Warning, "a part of an enclosure is not as it should be"},
    {"port-locked", Severity::Warning, "an encrypting port has no key"},
    {"cipher-mismatch", Severity::Warning, "a disk's encryption is not its port's"},
    {"events-lost", Severity::Warning, "the adapter's log has lost events"},
    {"unread", Severity::Warning, "the library refused to tell something"},
};

static const ProblemRule* ruleNamed(const std::string& name) {
    const auto* rule =
        std::find_if(std::begin(rules), std::end(rules), [&](const auto& row) { return name == row.name; });
    return rule == std::end(rules) ? nullptr : rule;
}

std::vector<ProblemRule> problemRules() {
    return {std::begin(rules), std::end(rules)};
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

std::string command(const Scene& scene, const std::string& words) {
    return "ktsetup " + std::to_string(scene.adapterId) + " " + words;
}

// What an adapter or a library lacks altogether it need not tell of.
static bool isRefusal(const Json& refusal) {
    static constexpr KT_U64 notSupported[] = {KT_ERR_NOT_SUPPORTED, KT_ERR_NOT_ON_THIS_ADAPTER};
    const auto status = numberIn(refusal, "status");
    return !status || std::find(std::begin(notSupported), std::end(notSupported), *status) == std::end(notSupported);
}

static std::string refusalText(const Json& refusal) {
    std::string text = shown(textIn(refusal, "call"));
    const Json& ids = listIn(refusal, "ids");
    if (ids.size() == 1) text += " for " + ids.front().dump();
    if (ids.size() > 1) text += " for " + std::to_string(ids.size()) + " items";
    if (const auto status = numberIn(refusal, "status")) text += ": error " + std::to_string(*status);
    return text + (refusal.contains("status") ? ", " : ": ") + shown(textIn(refusal, "text"));
}

static void findUnread(Scene& scene) {
    const bool told = scene.adapter.contains("type");
    for (const Json& refusal : listIn(scene.document, "unread")) {
        if (numberIn(refusal, "adapter") != scene.adapterId || !isRefusal(refusal)) continue;
        if (!told) {
            found(scene,
                  {"adapter-unread", "adapter", scene.adapterId,
                   "Adapter " + std::to_string(scene.adapterId) + " does not answer: " + refusalText(refusal) + ".",
                   "See whether it is still in the system (lspci, dmesg) and run the report again."});
            return;
        }
        found(scene,
              {"unread", "adapter", scene.adapterId, "Not everything could be read: " + refusalText(refusal) + ".",
               "Run the report again; what it does not tell may be wrong unseen."});
    }
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
    Json problem = {{"name", finding.name}, {"severity", rule.severity == Severity::Critical ? "critical" : "warning"}};
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
