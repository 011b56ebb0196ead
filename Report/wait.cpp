#include "Report/wait.h"

#include <algorithm>
#include <ostream>

static const Json* vdOf(const Json& adapter, KT_U64 id) {
    for (const VdInArray& one : virtualDisksOf(adapter)) {
        if (numberIn(*one.vd, "id") == id) return one.vd;
    }
    return nullptr;
}

static const Json* objectOf(const Json& adapter, ActivityOf of, KT_U64 id) {
    if (of == ActivityOf::VirtualDisk) return vdOf(adapter, id);
    return findItem(adapter, of == ActivityOf::Array ? "arrays" : "disks", id);
}

bool isThere(const Json& document, const Awaited& awaited) {
    if (!awaited.of) return true;
    const Json* adapter = findAdapter(document, awaited.adapter);
    return adapter != nullptr && objectOf(*adapter, *awaited.of, awaited.id) != nullptr;
}

// An array's activities are also those of its virtual disks.
static bool isAwaited(const Json& adapter, const Going& going, const Awaited& awaited) {
    if (!awaited.of) return true;
    if (numberIn(adapter, "id") != awaited.adapter) return false;
    if (going.of == *awaited.of && going.id == awaited.id) return true;
    if (*awaited.of == ActivityOf::VirtualDisk && going.of == ActivityOf::Array) {
        const Json* vd = vdOf(adapter, awaited.id);
        return vd != nullptr && numberIn(*vd, "array") == going.id;
    }
    if (*awaited.of != ActivityOf::Array || going.of != ActivityOf::VirtualDisk) return false;
    const Json* vd = vdOf(adapter, going.id);
    return vd != nullptr && numberIn(*vd, "array") == awaited.id;
}

static bool hasFailed(const std::string& state) {
    return state == "aborted" || state == "interrupted";
}

// How an activity has ended that is no longer there.
static Waiting endOf(const Json* adapter, const AwaitedActivity& activity) {
    const Json* object = adapter ? objectOf(*adapter, activity.going.of, activity.going.id) : nullptr;
    if (object == nullptr) return Waiting::Failed;
    const std::string status = textIn(*object, activity.going.of == ActivityOf::Disk ? "state" : "status");
    if (status == "offline") return Waiting::Failed;
    const bool redundancyIsBack = status != "degraded" && status != "partially optimal" && status != "disk missing";
    return activity.going.kind != "rebuild" || redundancyIsBack ? Waiting::Done : Waiting::Failed;
}

void lookAgain(Awaiting& activities, const Json& document, const Awaited& awaited) {
    Awaiting now;
    for (const Json& adapter : listIn(document, "adapters")) {
        const KT_U64 id = numberIn(adapter, "id").value_or(0);
        for (const Going& going : activitiesOf(adapter)) {
            if (!isAwaited(adapter, going, awaited)) continue;
            const Waiting state = hasFailed(going.state) ? Waiting::Failed : Waiting::GoesOn;
            now.insert({{id, going.of, going.id}, {id, going, state}});
        }
    }
    for (auto& [key, activity] : activities) {
        if (now.contains(key) || activity.state != Waiting::GoesOn) continue;
        activity.state = endOf(findAdapter(document, activity.adapter), activity);
    }
    for (const auto& [key, activity] : now) {
        activities.insert_or_assign(key, activity);
    }
}

Waiting stateOf(const Awaiting& activities) {
    Waiting all = Waiting::Done;
    for (const auto& [key, activity] : activities) {
        if (activity.state == Waiting::GoesOn) return Waiting::GoesOn;
        if (activity.state == Waiting::Failed) all = Waiting::Failed;
    }
    return all;
}

static std::string bar(KT_U64 percent) {
    static constexpr size_t WIDTH = 30;
    const size_t done = static_cast<size_t>(std::min<KT_U64>(percent, 100)) * WIDTH / 100;
    return "[" + std::string(done, '#') + std::string(WIDTH - done, '.') + "]";
}

static std::string stateText(const AwaitedActivity& activity) {
    const Going& going = activity.going;
    if (activity.state == Waiting::Done) return "done";
    if (activity.state == Waiting::Failed) return hasFailed(going.state) ? going.state : "failed";
    std::string text = going.percent ? std::to_string(*going.percent) + " %" : "";
    if (going.state != "running") return text + (text.empty() ? "" : ", ") + going.state;
    if (going.secondsLeft) text += ", about " + spanText(*going.secondsLeft) + " left";
    return text.empty() ? going.state : text;
}

size_t writeProgress(std::ostream& to, const Look& look, const Awaiting& activities) {
    Table table = {{{"", false}, {"", false}, {"", false}, {"", false}}, {}};
    for (const auto& [key, activity] : activities) {
        const bool ended = activity.state != Waiting::GoesOn;
        const KT_U64 percent = activity.state == Waiting::Done ? 100 : activity.going.percent.value_or(0);
        const std::string shape = look.width == 0 || (ended && activity.state == Waiting::Failed) ? "" : bar(percent);
        table.rows.push_back({activity.going.name + " on adapter " + std::to_string(activity.adapter),
                              activity.going.kind, shape, stateText(activity)});
    }
    if (look.width == 0) {
        // Elsewhere than on a terminal a line stands alone, among others.
        for (const auto& row : table.rows) {
            to << row[0] << ": " << row[1] << " " << row[3] << '\n';
        }
    } else {
        writeTable(to, look, table, "");
    }
    return table.rows.size();
}
