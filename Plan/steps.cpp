#include <algorithm>

#include "Plan/planner.h"

std::string joined(const std::vector<KT_U64>& numbers) {
    std::string text;
    for (const KT_U64 number : numbers)
        text += (text.empty() ? "" : ",") + std::to_string(number);
    return text;
}

std::vector<KT_U64> presentDisks(const PresentLayout& layout) {
    std::vector<KT_U64> disks;
    for (const auto& disk : layout.disks) {
        if (disk) disks.push_back(*disk);
    }
    return disks;
}

bool isIn(const std::vector<KT_U64>& list, KT_U64 value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

static std::string asTyped(const std::string& word) {
    return word.find(' ') == std::string::npos ? word : "\"" + word + "\"";
}

std::string commandText(const PlannedStep& step) {
    std::string text = "ktsetup " + std::to_string(step.adapter);
    for (const std::string& word : step.words)
        text += " " + asTyped(word);
    return text;
}

static std::optional<KT_U64> rateFor(const PresentAdapter& adapter, Lasting lasting) {
    static const char* const settings[] = {"", "InitRate", "RebuildRate", "MigrationRate"};
    if (lasting == Lasting::Nothing) return std::nullopt;
    const auto rateOf = [&](const char* setting) {
        const auto at = adapter.config.find(setting);
        return at == adapter.config.end() || at->second == 0 || at->second > 100 ? std::nullopt
                                                                                 : std::optional(at->second);
    };
    const auto own = rateOf(settings[static_cast<size_t>(lasting)]);
    return own ? own : rateOf("BGARate");
}

void addStep(Planner& planner, StepDraft draft) {
    PlannedStep step;
    step.adapter = planner.now.id;
    step.key = std::to_string(step.adapter);
    for (size_t i = 0; i < draft.words.size(); ++i) {
        step.key += " " + (draft.idAt != 0 && i == draft.idAt ? asTyped(draft.object) : asTyped(draft.words[i]));
    }
    step.words = std::move(draft.words);
    step.reason = std::move(draft.reason);
    step.cost = std::move(draft.cost);
    step.takes = draft.takes;
    step.rate = rateFor(planner.now, draft.takes);
    step.waits = draft.waits;
    step.deletes = draft.deletes;
    planner.plan.steps.push_back(std::move(step));
}

void addUnreachable(Planner& planner, const std::string& place, const std::string& text, const std::string& nearest) {
    planner.plan.unreachable.push_back({place, text, nearest});
}

KT_U64 freeVdId(const PresentAdapter& adapter) {
    std::set<KT_U64> taken;
    for (const PresentArray& array : adapter.arrays) {
        for (const PresentVd& vd : array.vds)
            taken.insert(vd.id);
    }
    for (const PresentVd& vd : adapter.vds)
        taken.insert(vd.id);
    KT_U64 id = 0;
    while (taken.contains(id))
        ++id;
    return id;
}
