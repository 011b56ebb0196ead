#include "Report/activities.h"

#include <algorithm>

// The log's codes of an activity follow that of its start, in the same order for all of them.
enum : unsigned { RESTARTED = 1, RESUMED = 3, PROGRESS = 6, RESUMED_BY_ADAPTER = 9 };

static std::optional<EventName> startOf(const std::string& kind) {
    static const struct {
        const char* kind;
        EventName start;
    } starts[] = {{"check", EVT_VD_CHECK_STARTED},
                  {"check and fix", EVT_VD_FIX_STARTED},
                  {"quick init", EVT_VD_QUICK_INIT_STARTED},
                  {"background init", EVT_VD_BACKGROUND_INIT_STARTED},
                  {"foreground init", EVT_VD_FOREGROUND_INIT_STARTED},
                  {"rebuild", EVT_VD_REBUILD_STARTED},
                  {"migration", EVT_VD_MIGRATION_STARTED},
                  {"copy back", EVT_VD_COPY_BACK_STARTED},
                  {"media patrol", EVT_PD_PATROL_STARTED}};
    for (const auto& row : starts) {
        if (kind == row.kind) return row.start;
    }
    return std::nullopt;
}

namespace {
// How far an activity was at a moment.
struct Mark {
    double seconds;
    double percent;
};
} // namespace

// The log's last stretch without a pause: its first and its last mark.
static std::vector<Mark> marksOf(const Json& adapter, const Going& going) {
    std::vector<Mark> marks;
    const auto start = startOf(going.kind);
    // A disk's activity is told by disks' events, every other one by those of virtual disks, whatever a report calls
    // it.
    if (!start || (*start >> 16 == EVT_PD) != (going.of == ActivityOf::Disk)) return marks;
    const unsigned first = *start & 0xFFFF;
    for (const Json& event : listIn(adapter, "events")) {
        const auto code = numberIn(event, "Code");
        const auto time = numberIn(event, "TimeStamp");
        const bool ofItsClass = numberIn(event, "Class") == *start >> 16;
        if (!ofItsClass || numberIn(event, "DeviceID") != going.id || !code || !time) continue;
        const double at = static_cast<double>(*time);
        if (*code == first || *code == first + RESTARTED) marks = {{at, 0}};
        if (*code == first + RESUMED || *code == first + RESUMED_BY_ADAPTER) marks.clear();
        const Json& values = listIn(event, "Params");
        if (*code == first + PROGRESS && !values.empty() && values[0].is_number()) {
            marks.push_back({at, values[0].get<double>()});
        }
    }
    return marks;
}

static std::optional<KT_U64> secondsLeft(const Json& adapter, const Going& going) {
    if (going.state != "running" || !going.percent) return std::nullopt;
    const std::vector<Mark> marks = marksOf(adapter, going);
    if (marks.size() < 2) return std::nullopt;
    const double done = marks.back().percent - marks.front().percent;
    const double took = marks.back().seconds - marks.front().seconds;
    const double left = static_cast<double>(100 - std::min<KT_U64>(*going.percent, 100));
    if (done <= 0 || took <= 0 || left / done > 1e6) return std::nullopt;
    return static_cast<KT_U64>(left / done * took);
}

static void addGoing(std::vector<Going>& list, const Json& adapter, Going going, const Json& activity) {
    if (!activity.is_object()) return;
    const std::string kind = shown(textIn(activity, "kind"));
    going.kind = kind.empty() ? "activity" : kind;
    going.state = shown(textIn(activity, "state"));
    if (going.state.empty()) going.state = "of unknown state";
    going.percent = numberIn(activity, "percent");
    going.secondsLeft = secondsLeft(adapter, going);
    list.push_back(std::move(going));
}

std::vector<Going> activitiesOf(const Json& adapter) {
    std::vector<Going> list;
    const auto idOf = [](const Json& object) { return numberIn(object, "id").value_or(0); };
    for (const VdInArray& one : virtualDisksOf(adapter)) {
        addGoing(
            list, adapter,
            {ActivityOf::VirtualDisk, idOf(*one.vd), nameOfVd(*one.vd), shown(textIn(*one.vd, "name")), "", "", {}, {}},
            in(*one.vd, "activity"));
    }
    for (const Json& array : listIn(adapter, "arrays")) {
        const Json& vds = listIn(array, "virtualDisks");
        const bool told = std::any_of(vds.begin(), vds.end(), [](const Json& vd) { return vd.contains("activity"); });
        if (told) continue;
        addGoing(list, adapter,
                 {ActivityOf::Array, idOf(array), nameOfArray(array), shown(textIn(array, "name")), "", "", {}, {}},
                 in(array, "activity"));
    }
    for (const Json& disk : listIn(adapter, "disks")) {
        const Json& patrol = in(disk, "patrol");
        if (patrol.is_object()) {
            addGoing(list, adapter, {ActivityOf::Disk, idOf(disk), nameOfDisk(disk), "", "", "", {}, {}}, patrol);
        }
    }
    return list;
}
