// Rates and switches of an adapter, and the settings of virtual disks.
#include "Plan/planner.h"
#include "Public/saidBy.h"
#include "Public/vdOptions.h"
#include "Report/look.h"

static const struct {
    const char* setting;
    const char* option;
} settingOptions[] = {{"BGARate", "--bgarate"},
                      {"SyncRate", "--syncrate"},
                      {"InitRate", "--initrate"},
                      {"RebuildRate", "--rebuildrate"},
                      {"MigrationRate", "--migrationrate"},
                      {"CopybackRate", "--copybackrate"},
                      {"MPRate", "--mprate"},
                      {"AutoRebuildOn", "--autorebuild"},
                      {"CopyBackOn", "--copyback"},
                      {"PollSMARTStatus", "--pollsmart"},
                      {"CpuEfficiencyOn", "--efficiency"},
                      {"ModuleConsolidation", "--consolidation"},
                      {"AlarmOn", "--alarm"}};

void planSettings(Planner& planner) {
    static constexpr KT_U64 NOT_SUPPORTED = 255;
    StepDraft draft = {{"set", "-o", "hba"}, "", "at once"};
    for (const auto& row : settingOptions) {
        const auto asked = planner.wanted.config.find(row.setting);
        if (asked == planner.wanted.config.end()) continue;
        const auto there = planner.now.config.find(row.setting);
        const KT_U64 now = there == planner.now.config.end() ? NOT_SUPPORTED : there->second;
        if (now == asked->second) continue;
        if (now == NOT_SUPPORTED) {
            addUnreachable(planner, planner.wanted.place + ".config." + row.setting,
                           planner.now.name + " does not have this setting", "leave it out");
            continue;
        }
        const bool rate = std::string(row.setting).ends_with("Rate");
        const auto text = [&](KT_U64 value) {
            return rate ? std::to_string(value) : std::string(value != 0 ? "on" : "off");
        };
        draft.words.insert(draft.words.end(), {row.option, text(asked->second)});
        draft.reason +=
            (draft.reason.empty() ? "" : ", ") + std::string(row.setting) + " is " + text(now) + (rate ? " %" : "");
        planner.now.config[row.setting] = asked->second;
    }
    if (!draft.reason.empty()) addStep(planner, std::move(draft));
}

bool checkName(Planner& planner, const std::string& place, const std::string& name) {
    const size_t longest = planner.now.arrayBased ? LONGEST_ARRAY_NAME : LONGEST_LD_NAME;
    bool good = false;
    const std::string said = saidBy([&] { good = ::checkName(name.c_str()); });
    if (good && !name.empty() && name.size() <= longest && name.find('\0') == std::string::npos) return true;
    planner.plan.reasons.push_back({place + ".name", "\"" + shown(name) + "\" cannot be given to anything; a name is " +
                                                         "at most " + std::to_string(longest) +
                                                         " letters, digits, blanks or underlines"});
    return false;
}

static std::string cacheRisk(const Planner& planner) {
    return planner.now.battery ? "at once"
                               : "at once; no battery keeps what is in the write cache when the power fails";
}

// Whether the adapter lets virtual disks choose that at all.
static void checkChoice(Planner& planner, const std::string& place, const char* word, const char* feature) {
    if (planner.now.advanced.empty() || planner.now.advanced.contains(feature)) return;
    addUnreachable(planner, place + "." + word, planner.now.name + " does not let virtual disks choose it",
                   "leave it out");
}

void planVdSettings(Planner& planner, const WantedVd& wanted, const PresentVd& there) {
    StepDraft draft = {{"set", "-o", "vd", "-i", std::to_string(there.id)}, "", "at once", 4, wanted.place};
    const auto because = [&](const std::string& text) { draft.reason += (draft.reason.empty() ? "" : ", ") + text; };
    bool waive = false;
    if (there.name != wanted.name && checkName(planner, wanted.place, wanted.name)) {
        draft.words.insert(draft.words.end(), {"-n", wanted.name});
        because("its name is \"" + shown(there.name) + "\"");
    }
    if (!wanted.cache.empty() && there.cache != wanted.cache) {
        checkChoice(planner, wanted.place, "cache", "vd write cache");
        draft.words.insert(draft.words.end(), {"-c", wanted.cache});
        because("its cache is " + (there.cache.empty() ? "of no known mode" : there.cache));
        waive = wanted.cache == "on";
    }
    if (wanted.readAhead && there.readAhead != wanted.readAhead) {
        checkChoice(planner, wanted.place, "readAhead", "vd read cache");
        draft.words.insert(draft.words.end(), {"-p", *wanted.readAhead ? "ra" : "none"});
        because(*wanted.readAhead ? "it does not read ahead" : "it reads ahead");
    }
    if (draft.reason.empty()) return;
    if (waive) {
        draft.words.push_back("--waiveconfirmation");
        draft.cost = cacheRisk(planner);
    }
    draft.reason = "virtual disk \"" + shown(wanted.name) + "\": " + draft.reason;
    addStep(planner, std::move(draft));
}

void addCacheWords(const Planner& planner, const WantedVd& wanted, StepDraft& draft, PresentVd& vd) {
    const bool writes = planner.now.advanced.empty() || planner.now.advanced.contains("vd write cache");
    const bool reads = planner.now.advanced.empty() || planner.now.advanced.contains("vd read cache");
    // LD-based adapters take "auto" only from a virtual disk that is there.
    const bool automatic = wanted.cache == "auto" && planner.now.arrayBased;
    if (writes && !wanted.cache.empty()) {
        const char* word = wanted.cache == "on" ? "on" : automatic ? "auto" : "off";
        draft.words.insert(draft.words.end(), {"-c", word});
        vd.cache = word;
    }
    if (reads && wanted.readAhead) {
        draft.words.insert(draft.words.end(), {"-p", *wanted.readAhead ? "ra" : "none"});
        vd.readAhead = wanted.readAhead;
    }
}
