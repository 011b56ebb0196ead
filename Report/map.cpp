#include "Report/map.h"

#include <algorithm>
#include <ostream>
#include <tuple>

#include "Report/look.h"

namespace {
// A bay or a port, and the disk in it; null: none.
struct Place {
    const Json* adapter;
    const Json* disk;
    std::optional<KT_U64> enclosure;
    std::optional<KT_U64> number; // the bay's, or the port's
    std::string on = {};          // what a port is of: "", "PM" ...
    std::optional<KT_U64> parent = {};
};
} // namespace

static const Json* diskInBay(const Json& adapter, KT_U64 enclosure, KT_U64 slot) {
    for (const Json& disk : listIn(adapter, "disks")) {
        if (numberIn(disk, "enclosure") == enclosure && numberIn(disk, "slot") == slot) return &disk;
    }
    return nullptr;
}

// Shelf by shelf, bay by bay, empty ones included; behind them what is not in a shelf, port by port.
static std::vector<Place> placesOf(const Json& adapter) {
    std::vector<Place> places;
    for (const Json& enclosure : listIn(adapter, "enclosures")) {
        for (const Json& element : listIn(enclosure, "elements")) {
            const auto id = numberIn(enclosure, "id");
            const auto slot = numberIn(element, "slot");
            if (id && slot && !diskInBay(adapter, *id, *slot)) places.push_back({&adapter, nullptr, id, slot});
        }
    }
    for (const Json& disk : listIn(adapter, "disks")) {
        const auto enclosure = numberIn(disk, "enclosure");
        places.push_back({&adapter, &disk, enclosure, numberIn(disk, enclosure ? "slot" : "port"), textIn(disk, "on"),
                          numberIn(disk, "parent")});
    }
    std::stable_sort(places.begin(), places.end(), [](const Place& a, const Place& b) {
        const auto key = [](const Place& place) {
            const std::string on = place.enclosure ? "" : place.on;
            return std::tuple(!place.enclosure, place.enclosure, on, place.enclosure ? std::nullopt : place.parent,
                              place.number);
        };
        return key(a) < key(b);
    });
    return places;
}

// "array 1 "databases": virtual disk 2 "orders"", "global spare", "free".
static std::string useOf(const Place& place) {
    const Json& disk = *place.disk;
    std::string text;
    const auto append = [&](const std::string& more) { text += (text.empty() ? "" : ", ") + more; };
    const std::string spare = shown(textIn(disk, "spare"));
    if (!spare.empty()) append(spare + " spare" + (isTrue(disk, "spareInUse") ? " in use" : ""));
    const auto id = numberIn(disk, "array");
    const Json* array = id ? findItem(*place.adapter, "arrays", *id) : nullptr;
    if (array != nullptr) append(nameOfArray(*array));
    const auto own = numberIn(disk, "id");
    const auto vds = own ? virtualDisksOn(*place.adapter, *own) : std::vector<VdInArray>();
    if (!vds.empty()) append(namesOfVds(vds));
    if (text.empty() && isTrue(disk, "member")) return "member";
    return text.empty() && textIn(disk, "state") == "healthy" ? "free" : text;
}

static std::string diskStateText(const Json& disk) {
    const std::string state = shown(textIn(disk, "state"));
    return state == "healthy" && isTrue(disk, "smartTripped") ? "failing" : state;
}

static std::string bayText(const Place& place) {
    if (place.disk != nullptr && !place.enclosure) return placeOf(*place.disk);
    return "slot " + std::to_string(place.number.value_or(0)) + " of enclosure " + std::to_string(*place.enclosure);
}

static std::string idText(const Json& object) {
    const auto id = numberIn(object, "id");
    return id ? std::to_string(*id) : "";
}

// The cells of a line: host, adapter, place, disk, type, size, model, serial, state, use, LED.
static std::vector<std::string> cellsOf(const Place& place, const std::string& host, bool bytes) {
    std::vector<std::string> cells = {host, idText(*place.adapter), bayText(place)};
    if (place.disk == nullptr) {
        cells.resize(11);
        cells[8] = "empty";
        return cells;
    }
    const Json& disk = *place.disk;
    const auto size = numberIn(disk, "size");
    const std::string sizeCell = !size ? "" : bytes ? std::to_string(*size) : sizeText(*size);
    const bool lit = isTrue(disk, "locateLed");
    const std::string led = lit ? "on" : isFalse(disk, "locateLed") ? "off" : "";
    cells.insert(cells.end(), {idText(disk), shown(textIn(disk, "type")), sizeCell, shown(textIn(disk, "model")),
                               shown(textIn(disk, "serial")), diskStateText(disk), useOf(place), led});
    return cells;
}

static const char* const MAP_HEADS[] = {"host",  "adapter", "place", "disk", "type", "size",
                                        "model", "serial",  "state", "use",  "LED"};

static std::vector<std::vector<std::string>> rowsOf(const std::vector<Report>& reports, bool bytes) {
    std::vector<std::vector<std::string>> rows;
    for (const Report& report : reports) {
        for (const Json& adapter : listIn(report.document, "adapters")) {
            for (const Place& place : placesOf(adapter)) {
                rows.push_back(cellsOf(place, shown(textIn(report.document, "host")), bytes));
            }
        }
    }
    return rows;
}

void writeMap(std::ostream& to, const Look& look, const std::vector<Report>& reports) {
    Table table = {{}, rowsOf(reports, false)};
    const size_t skipped = reports.size() > 1 ? 0 : 1; // the host's name tells machines apart
    for (size_t i = skipped; i < std::size(MAP_HEADS); ++i) {
        const std::string head = MAP_HEADS[i];
        table.columns.push_back({head, head == "adapter" || head == "disk" || head == "size"});
    }
    for (auto& row : table.rows) {
        row.erase(row.begin(), row.begin() + static_cast<std::ptrdiff_t>(skipped));
    }
    if (table.rows.empty()) {
        to << "There is no disk.\n";
        return;
    }
    writeTable(to, look, table, "");
    to << "\nA disk's LED: ktsetup <adapter> locate -i <disk> -a on\n";
}

static std::string quoted(const std::string& cell) {
    if (cell.find_first_of(",\"\r\n") == std::string::npos) return cell;
    std::string text = "\"";
    for (const char c : cell) {
        text += c == '"' ? std::string("\"\"") : std::string(1, c);
    }
    return text + "\"";
}

// A cell that a spreadsheet would take for a formula comes with an apostrophe in front, as spreadsheets write it.
static std::string harmless(const std::string& cell) {
    return !cell.empty() && std::string("=+-@").find(cell.front()) != std::string::npos ? "'" + cell : cell;
}

void writeMapAsCsv(std::ostream& to, const std::vector<Report>& reports) {
    const auto line = [&](const auto& cells) {
        bool first = true;
        for (const auto& cell : cells) {
            to << (first ? "" : ",") << quoted(harmless(cell));
            first = false;
        }
        to << "\r\n";
    };
    line(MAP_HEADS);
    for (const auto& row : rowsOf(reports, true)) {
        line(row);
    }
}
