#include "Report/show.h"

#include <algorithm>
#include <map>
#include <ostream>

#include "Report/activities.h"

static constexpr size_t PROBLEMS_SHOWN = 12;
static constexpr size_t ROWS_SHOWN = 16;

namespace {
struct View {
    std::ostream& to;
    const Look& look;
    const Json& document;
    bool all;
};
} // namespace

static std::string plural(size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

static std::string numberText(const Json& object, const char* word) {
    const auto number = numberIn(object, word);
    return number ? std::to_string(*number) : "";
}

static std::string sizeIn(const Json& object, const char* word) {
    const auto bytes = numberIn(object, word);
    return bytes ? sizeText(*bytes) : "";
}

static std::string wordIn(const Json& object, const char* word) {
    return shown(textIn(object, word));
}

static void writeHead(const View& view, const std::string& source) {
    const Json& problems = listIn(view.document, "problems");
    const auto critical = static_cast<size_t>(std::count_if(
        problems.begin(), problems.end(), [](const Json& one) { return textIn(one, "severity") == "critical"; }));
    const std::string host = wordIn(view.document, "host");
    std::string where = host.empty() ? "" : " on " + host;
    if (!source.empty())
        where += " (" + (source == "-" ? "standard input" : shown(source)) + ", " + wordIn(view.document, "made") + ")";
    const size_t adapters = listIn(view.document, "adapters").size();
    if (adapters == 0) {
        view.to << coloured(view.look, Colour::Yellow, "There is no adapter" + where + ".") << '\n';
    } else if (problems.empty()) {
        view.to << coloured(view.look, Colour::Green, "Nothing is wrong" + where + ".") << '\n';
    } else {
        const std::string how = critical == 0 ? "" : ", " + std::to_string(critical) + " critical";
        view.to << coloured(view.look, critical ? Colour::Red : Colour::Yellow,
                            plural(problems.size(), "problem", "problems") + where + how)
                << '\n';
    }
}

static void writeProblems(const View& view) {
    static constexpr size_t INDENT = 10;
    const Json& problems = listIn(view.document, "problems");
    const size_t count = view.all ? problems.size() : std::min(problems.size(), PROBLEMS_SHOWN);
    for (size_t i = 0; i < count; ++i) {
        const bool critical = textIn(problems[i], "severity") == "critical";
        view.to << '\n'
                << coloured(view.look, critical ? Colour::Red : Colour::Yellow, critical ? "CRITICAL" : "WARNING ")
                << "  " << wrapped(view.look, wordIn(problems[i], "text"), INDENT) << '\n'
                << std::string(INDENT, ' ') << wrapped(view.look, wordIn(problems[i], "action"), INDENT) << '\n';
    }
    if (count < problems.size()) {
        view.to << "\n"
                << std::string(INDENT, ' ') << "and " << problems.size() - count << " more (--all shows them)\n";
    }
}

static void title(const View& view, const std::string& text) {
    view.to << '\n' << coloured(view.look, Colour::Bold, text) << '\n';
}

// What there is of a kind. Where that is more than a screen has room for, what is as it should be is only counted.
struct Rows {
    Table table;
    std::vector<bool> good; // of each row

    void add(std::vector<std::string> cells, bool isGood) {
        table.rows.push_back(std::move(cells));
        good.push_back(isGood);
    }
};

static Rows withColumns(std::vector<Column> columns) {
    return {{std::move(columns), {}}, {}};
}

static void writeRows(const View& view, Rows rows) {
    const size_t count = rows.table.rows.size();
    if (!view.all && count > ROWS_SHOWN) {
        std::vector<std::vector<std::string>> shownRows;
        for (size_t i = 0; i < count && shownRows.size() < ROWS_SHOWN; ++i) {
            if (!rows.good[i]) shownRows.push_back(rows.table.rows[i]);
        }
        rows.table.rows = std::move(shownRows);
    }
    const size_t left = count - rows.table.rows.size();
    if (!rows.table.rows.empty()) writeTable(view.to, view.look, rows.table, "  ");
    if (left == count && count != 0) {
        view.to << "  " << count << ", all as they should be (--all lists them)\n";
    } else if (left != 0) {
        view.to << "  and " << left << " more (--all lists them)\n";
    }
}

static void writeActivities(const View& view) {
    Rows rows = withColumns({{"", true}, {"", false}, {"", false}, {"", true}, {"", false}});
    for (const Json& adapter : listIn(view.document, "adapters")) {
        for (const Going& going : activitiesOf(adapter)) {
            rows.add({numberText(adapter, "id"), going.name, going.kind,
                      going.percent ? std::to_string(*going.percent) + " %" : "",
                      going.state == "running"
                          ? going.secondsLeft ? "about " + spanText(*going.secondsLeft) + " left" : ""
                          : going.state},
                     going.state == "running");
        }
    }
    if (rows.table.rows.empty()) return;
    title(view, "Going on");
    writeRows(view, std::move(rows));
}

static std::string batteryText(const Json& adapter) {
    const Json& battery = in(adapter, "battery");
    const auto status = numberIn(battery, "status").value_or(0);
    if (battery.is_null()) return "";
    if ((status & KT_BBU_PRESENT) == 0) return "no battery";
    const std::string percent = "battery " + numberText(battery, "percentage") + " %";
    return status & KT_BBU_CHARGING      ? percent + ", charging"
           : status & KT_BBU_DISCHARGING ? percent + ", discharging"
                                         : percent;
}

static void writeAdapters(const View& view) {
    Rows rows = withColumns({{"", true}, {"", false}, {"", false}, {"", false}, {"", true}, {"", false}});
    for (const Json& adapter : listIn(view.document, "adapters")) {
        const std::string firmware = wordIn(in(adapter, "versions"), "firmware");
        const std::string serial = wordIn(adapter, "serial");
        const std::string model = wordIn(adapter, "model");
        rows.add({numberText(adapter, "id"), adapter.contains("type") ? model : "does not answer",
                  serial.empty() ? "" : "serial " + serial, firmware.empty() ? "" : "firmware " + firmware,
                  adapter.contains("disks") ? plural(listIn(adapter, "disks").size(), "disk", "disks") : "",
                  batteryText(adapter)},
                 true);
    }
    if (rows.table.rows.empty()) return;
    title(view, "Adapters");
    writeRows(view, std::move(rows));
}

// "0 1 - 3": ids of disks; a dash is a missing one.
static std::string idsText(const Json& ids) {
    static constexpr size_t SHOWN = 12;
    std::string text;
    for (size_t i = 0; i < ids.size() && i < SHOWN; ++i) {
        text += (i == 0 ? "" : " ") + (ids[i].is_number_unsigned() ? ids[i].dump() : "-");
    }
    return ids.size() > SHOWN ? text + " ..." : text;
}

static void writeArrays(const View& view) {
    Rows rows = withColumns({{"", true},
                             {"id", true},
                             {"name", false},
                             {"level", false},
                             {"status", false},
                             {"size", true},
                             {"free", true},
                             {"disks", false},
                             {"spares", false}});
    for (const Json& adapter : listIn(view.document, "adapters")) {
        for (const Json& array : listIn(adapter, "arrays")) {
            rows.add({numberText(adapter, "id"), numberText(array, "id"), wordIn(array, "name"), wordIn(array, "level"),
                      shown(statusOfArray(array)), sizeIn(array, "size"), sizeIn(array, "freeSize"),
                      idsText(listIn(array, "disks")), idsText(listIn(array, "spares"))},
                     wordIn(array, "status") == "functional");
        }
    }
    if (rows.table.rows.empty()) return;
    title(view, "Arrays");
    writeRows(view, std::move(rows));
}

static void writeVirtualDisks(const View& view) {
    Rows rows = withColumns({{"", true},
                             {"id", true},
                             {"name", false},
                             {"level", false},
                             {"status", false},
                             {"size", true},
                             {"cache", false},
                             {"disks", false},
                             {"", false}});
    for (const Json& adapter : listIn(view.document, "adapters")) {
        for (const VdInArray& one : virtualDisksOf(adapter)) {
            const Json& vd = *one.vd;
            rows.add({numberText(adapter, "id"), numberText(vd, "id"), wordIn(vd, "name"), wordIn(vd, "level"),
                      wordIn(vd, "status"), sizeIn(vd, "size"), wordIn(vd, "cacheInForce"),
                      idsText(listIn(vd, "disks")), isTrue(vd, "os") ? "in use" : ""},
                     wordIn(vd, "status") == "online");
        }
    }
    if (rows.table.rows.empty()) return;
    title(view, "Virtual disks");
    writeRows(view, std::move(rows));
}

static std::string roleOf(const Json& disk) {
    std::string state = wordIn(disk, "state");
    const std::string spare = wordIn(disk, "spare");
    if (state != "healthy") return state;
    if (isTrue(disk, "smartTripped")) return "failing";
    if (!spare.empty()) return spare + " spare" + (isTrue(disk, "spareInUse") ? ", in use" : "");
    return isTrue(disk, "member") ? "member" : "free";
}

static void writeEachDisk(const View& view) {
    Rows rows = withColumns({{"", true},
                             {"id", true},
                             {"type", false},
                             {"size", true},
                             {"model", false},
                             {"serial", false},
                             {"role", false},
                             {"place", false}});
    for (const Json& adapter : listIn(view.document, "adapters")) {
        for (const Json& disk : listIn(adapter, "disks")) {
            rows.add({numberText(adapter, "id"), numberText(disk, "id"), wordIn(disk, "type"), sizeIn(disk, "size"),
                      wordIn(disk, "model"), wordIn(disk, "serial"), roleOf(disk), placeOf(disk)},
                     true);
        }
    }
    writeRows(view, std::move(rows));
}

// Disks that are alike in a line: "16  SAS  8.0 TB  Fulmar FX8000G-SAS  member".
static void writeKindsOfDisks(const View& view) {
    Rows rows = withColumns(
        {{"", true}, {"", true}, {"type", false}, {"size", true}, {"model", false}, {"role", false}, {"disks", false}});
    for (const Json& adapter : listIn(view.document, "adapters")) {
        std::vector<std::pair<std::vector<std::string>, Json>> kinds;
        std::map<std::vector<std::string>, size_t> known;
        for (const Json& disk : listIn(adapter, "disks")) {
            const std::vector<std::string> kind = {wordIn(disk, "type"), sizeIn(disk, "size"), wordIn(disk, "model"),
                                                   roleOf(disk)};
            const auto [at, isNew] = known.try_emplace(kind, kinds.size());
            if (isNew) kinds.emplace_back(kind, Json::array());
            kinds[at->second].second.push_back(in(disk, "id"));
        }
        for (const auto& [kind, ids] : kinds) {
            rows.add({numberText(adapter, "id"), std::to_string(ids.size()) + " x", kind[0], kind[1], kind[2], kind[3],
                      idsText(ids)},
                     kind[3] != "offline" && kind[3] != "foreign" && kind[3] != "failing");
        }
    }
    writeRows(view, std::move(rows));
}

static void writeDisks(const View& view) {
    size_t count = 0;
    for (const Json& adapter : listIn(view.document, "adapters")) {
        count += listIn(adapter, "disks").size();
    }
    if (count == 0) return;
    title(view, "Disks");
    view.all || count <= ROWS_SHOWN ? writeEachDisk(view) : writeKindsOfDisks(view);
}

void writeShow(std::ostream& to, const Look& look, const std::vector<Report>& reports, bool all) {
    bool first = true;
    for (const Report& report : reports) {
        if (!first) to << '\n';
        first = false;
        const View view = {to, look, report.document, all};
        writeHead(view, report.source);
        writeProblems(view);
        writeActivities(view);
        writeAdapters(view);
        writeArrays(view);
        writeVirtualDisks(view);
        writeDisks(view);
    }
}
