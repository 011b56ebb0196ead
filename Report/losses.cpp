#include "Report/losses.h"

#include <algorithm>

#include "Report/look.h"

// What is lost, worst first.
enum class Loss { Data, Redundancy, Access, None };

// How much a virtual disk with the status can still lose: 0 nothing is wrong, then degraded, then not usable.
static int badness(const std::string& status) {
    if (status == "online" || status == "using table") return 0;
    return status == "degraded" || status == "partially optimal" ? 1 : 2;
}

static std::string wordIn(const Json& value) {
    return value.is_string() ? value.get<std::string>() : "";
}

static Loss lossOfVd(const Change& change) {
    if (change.word == "status" && badness(wordIn(change.after)) > badness(wordIn(change.before)))
        return badness(wordIn(change.after)) == 2 ? Loss::Data : Loss::Redundancy;
    const std::string kind = textIn(change.after, "kind");
    const bool began = change.word == "activity" && textIn(change.before, "kind") != kind;
    if (began && (kind == "quick init" || kind == "foreground init")) return Loss::Data;
    return change.word == "level" && wordIn(change.after) == "RAID0" ? Loss::Redundancy : Loss::None;
}

static bool hasFewer(const Json& before, const Json& after) {
    return before.is_array() && after.is_array() && after.size() < before.size();
}

static Loss lossOf(const Change& change) {
    if (change.kind == ChangeKind::Appeared) return Loss::None;
    if (change.kind == ChangeKind::Gone) {
        const bool holds = change.object == "virtual disk" || change.object == "key";
        return holds ? Loss::Data : change.object == "array" || change.object == "disk" ? Loss::Access : Loss::None;
    }
    if (change.object == "virtual disk") return lossOfVd(change);
    if (change.object == "key" && change.word == "hasKey" && change.after == false) return Loss::Data;
    if (change.object == "disk" && change.word == "state" && wordIn(change.after) == "offline") return Loss::Access;
    if (change.object == "disk" && change.word == "state" && wordIn(change.before) == "foreign") return Loss::Data;
    if (change.object == "disk" && change.word == "spare" && change.after.is_null()) return Loss::Redundancy;
    if (change.object == "array" && change.word == "spares" && hasFewer(change.before, change.after))
        return Loss::Redundancy;
    if (change.word.rfind("images.", 0) == 0 && change.after == false) return Loss::Data;
    return Loss::None;
}

bool isLoss(const Change& change) {
    return lossOf(change) != Loss::None;
}

std::vector<Change> takeLosses(const std::vector<Change>& changes) {
    std::vector<Change> losses;
    std::copy_if(changes.begin(), changes.end(), std::back_inserter(losses), isLoss);
    std::stable_sort(losses.begin(), losses.end(),
                     [](const Change& a, const Change& b) { return lossOf(a) < lossOf(b); });
    return losses;
}
