#include "rehearse.h"

#include "Report/look.h"
#include "Report/losses.h"

#include <algorithm>
#include <ostream>

// Risks that the commands have changed, or that end by themselves: what was so before, and stays so, is not their
// doing.
static std::vector<Risk> newRisks(const Rehearsed& rehearsed) {
    std::vector<Risk> risks;
    for (const Risk& risk : rehearsed.outlook.risks) {
        const bool known =
            std::any_of(rehearsed.risksBefore.begin(), rehearsed.risksBefore.end(), [&](const Risk& old) {
                return old.adapter == risk.adapter && old.vd == risk.vd && old.disks == risk.disks;
            });
        if (!known) risks.push_back(risk);
    }
    return risks;
}

static std::string listOf(const std::set<KT_U16>& disks) {
    std::string text = disks.size() == 1 ? "disk " : "disks ";
    for (const KT_U16 disk : disks)
        text += (disk == *disks.begin() ? "" : ", ") + std::to_string(disk);
    return text;
}

static std::string nameOf(const Rehearsed& rehearsed, const Risk& risk) {
    const Json* adapter = findAdapter(rehearsed.after, risk.adapter);
    std::string name = "virtual disk " + std::to_string(risk.vd);
    for (const VdInArray& each : adapter ? virtualDisksOf(*adapter) : std::vector<VdInArray>{})
        if (numberIn(*each.vd, "id") == risk.vd) name = nameOfVd(*each.vd);
    if (listIn(rehearsed.after, "adapters").size() > 1) name += " on adapter " + std::to_string(risk.adapter);
    return name;
}

static std::string riskText(const Rehearsed& rehearsed, const Risk& risk) {
    const std::string loss = "ne more loss of " + listOf(risk.disks) + " takes " + nameOf(rehearsed, risk) + " offline";
    if (risk.seconds) return "For " + spanText(*risk.seconds) + " o" + loss + ".";
    return "O" + loss + "; nothing that goes on changes that.";
}

static void writePart(std::ostream& to, const char* title, const std::vector<Change>& changes) {
    if (changes.empty()) return;
    to << title << '\n';
    for (const Change& change : changes)
        to << "  " << change.text << '\n';
}

void writeForetold(std::ostream& to, const Rehearsed& rehearsed) {
    const std::vector<Change> all = changesBetween(rehearsed.before, rehearsed.after, false);
    std::vector<Change> lost = takeLosses(all);
    std::vector<Change> changed;
    std::vector<Change> appeared;
    for (const Change& change : all) {
        if (isLoss(change)) continue;
        (change.kind == ChangeKind::Appeared ? appeared : changed).push_back(change);
    }
    if (all.empty()) {
        to << "Nothing would change.\n";
        return;
    }
    writePart(to, "What would be lost:", lost);
    writePart(to, "What would change:", changed);
    writePart(to, "What would appear:", appeared);
    if (rehearsed.outlook.idleAfter) {
        to << "All that goes on then has ended after " << spanText(rehearsed.outlook.idleAfter)
           << " at the present rates.\n";
    }
    for (const Risk& risk : newRisks(rehearsed))
        to << riskText(rehearsed, risk) << '\n';
}

Json foretoldAsJson(const Rehearsed& rehearsed) {
    Json commands = Json::array();
    for (const Rehearsed::Command& command : rehearsed.commands) {
        commands.push_back({{"words", command.words},
                            {"status", command.status},
                            {"output", textOfBytes(command.output.data(), command.output.size())}});
    }
    std::vector<Change> all = changesBetween(rehearsed.before, rehearsed.after, false);
    Json changes = changesAsJson(all);
    for (size_t i = 0; i < all.size(); ++i)
        if (isLoss(all[i])) changes[i]["loss"] = true;
    Json risks = Json::array();
    for (const Risk& risk : newRisks(rehearsed)) {
        Json one = {{"adapter", risk.adapter}, {"virtualDisk", risk.vd}, {"disks", risk.disks}};
        if (risk.seconds) one["seconds"] = *risk.seconds;
        one["text"] = riskText(rehearsed, risk);
        risks.push_back(std::move(one));
    }
    Json told = {{"commands", std::move(commands)}, {"changes", std::move(changes)}};
    if (rehearsed.outlook.idleAfter) told["idleAfter"] = rehearsed.outlook.idleAfter;
    told["risks"] = std::move(risks);
    told["before"] = rehearsed.before;
    told["after"] = rehearsed.after;
    return told;
}
