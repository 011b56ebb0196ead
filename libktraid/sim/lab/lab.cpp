#include "lab/lab.h"

#include "lab/labAdapter.h"
#include "lab/labValues.h"
#include "lab/report.h"
#include "state/simClock.h"

#include <cstring>
#include <nlohmann/json.hpp>

namespace sim {

extern const BuiltInLab BUILT_IN_LABS[]; // made by the build from labs; the last has no name

static const KT_U32 SG_VERSION = 30536;

const BuiltInLab* labNamed(const std::string& name) {
    for (const BuiltInLab* lab = BUILT_IN_LABS; lab->name; ++lab)
        if (name == lab->name) return lab;
    return nullptr;
}

std::vector<std::string> labNames() {
    std::vector<std::string> names;
    for (const BuiltInLab* lab = BUILT_IN_LABS; lab->name; ++lab)
        names.emplace_back(lab->name);
    return names;
}

// A complete lab: rows just as they were.

static std::vector<unsigned char> hexToBytes(const std::string& hex, const std::string& path) {
    std::vector<unsigned char> bytes(hex.size() / 2);
    const Field field{"hex", 0, bytes.size(), 1, FieldType::Hex};
    const RecordFields table{KIND_GLOBAL, "", bytes.size(), &field, 1};
    if (!bytes.empty()) setField(table, bytes.data(), "hex", hex, path);
    return bytes;
}

static void refuseTwice(Store& store, KT_U8 adapter, Kind kind, KT_U64 id, const LabReader& row) {
    if (readBytes(store, {adapter, kind, id})) failLab(row, "id", "is there twice");
}

static void putRawRow(Store& store, KT_U8 adapter, LabReader& row) {
    const auto kind = static_cast<Kind>(takeNumber(row, "kind", 0, 255));
    const KT_U64 id = takeNumber(row, "id", 0, NEVER);
    const std::string hex = takeText(row, "hex", "");
    takeNothingElse(row);
    refuseTwice(store, adapter, kind, id, row);
    const std::vector<unsigned char> bytes = hexToBytes(hex, row.path);
    writeRow(store, {adapter, kind, id}, bytes.empty() ? reinterpret_cast<const unsigned char*>("") : bytes.data(),
             bytes.size());
}

static void putFieldRow(Store& store, KT_U8 adapter, const RecordFields& table, LabReader& row) {
    const KT_U64 id = takeNumber(row, "id", 0, NEVER);
    refuseTwice(store, adapter, table.kind, id, row);
    std::vector<unsigned char> record(table.size);
    takeFields(row, table.kind, record.data());
    takeNothingElse(row);
    writeRow(store, {adapter, table.kind, id}, record.data(), record.size());
}

static void putSections(Store& store, KT_U8 adapter, LabReader& owner) {
    for (const auto& [section, rows] : owner.object.items()) {
        if (owner.taken.count(section)) continue;
        const RecordFields* table = fieldsOfSection(section);
        if (!table && section != "rows") continue;
        for (LabReader& row : takeObjects(owner, section.c_str())) {
            if (table) {
                putFieldRow(store, adapter, *table, row);
            } else {
                putRawRow(store, adapter, row);
            }
        }
    }
    takeNothingElse(owner);
}

static void fillComplete(Store& store, LabReader& lab, KT_U64 stoppedAt) {
    KT_U8 index = 0;
    for (LabReader& adapter : takeObjects(lab, "adapters")) {
        if (index == ADAPTER_GLOBAL) throw LabError{"adapters: there can be 255 at most"};
        putSections(store, index, adapter);
        if (!find<_Adapter_Info>(store, index, 0)) failLab(adapter, "adapter", "is missing");
        ++index;
    }
    putSections(store, ADAPTER_GLOBAL, lab);
    const auto global = find<GlobalState>(store, ADAPTER_GLOBAL, 0);
    if (!global || global->adapterCount != index) throw LabError{"global.adapterCount: is not the number of adapters"};
    if (!stoppedAt) return;
    setClock(store, simulatedNow(store), 1000, true);
    setShownTime(store, stoppedAt);
}

// A lab written by hand.

static void putClock(Store& store, LabReader& lab, KT_U64 stoppedAt) {
    KT_U64 now = realNow();
    KT_U64 speed = 1000;
    bool stopped = false;
    for (LabReader& clock : takeObjects(lab, "clock")) {
        now = takeNumber(clock, "seconds", now / 1000, 0xFFFFFFFFU) * 1000;
        speed = takeNumber(clock, "speed", 1, 1000000) * 1000;
        if (speed == 0) failLab(clock, "speed", "should be 1 to 1000000; \"stopped\" stops the clock");
        stopped = takeFlag(clock, "stopped", false);
        takeNothingElse(clock);
    }
    if (stoppedAt) {
        setClock(store, stoppedAt, 1000, true);
    } else {
        setClock(store, now, static_cast<KT_U32>(speed), stopped);
    }
}

KT_U64 mostDisks = 262144;

static KT_U64 countDisks(const LabReader& adapter) {
    KT_U64 disks = 0;
    LabReader reader = adapter;
    for (LabReader& entry : takeObjects(reader, "disks"))
        disks += takeNumber(entry, "count", 1, 65000);
    return disks;
}

static void refuseTooManyDisks(LabReader lab) {
    KT_U64 disks = 0;
    for (LabReader& adapter : takeObjects(lab, "adapters"))
        disks += takeNumber(adapter, "count", 1, 255) * countDisks(adapter);
    if (disks > mostDisks) {
        throw LabError{"adapters: there are " + std::to_string(disks) + " disks in all, more than " +
                       std::to_string(mostDisks)};
    }
}

static void fillWritten(Store& store, LabReader& lab, const BuiltInLab& source) {
    refuseTooManyDisks(lab);
    putClock(store, lab, source.stoppedAt);
    GlobalState global = {};
    global.sgVersion = static_cast<KT_U32>(takeNumber(lab, "sgVersion", SG_VERSION, 0x7FFFFFFF));
    const std::string label = takeText(lab, "name", source.name);
    strncpy(global.lab, label.c_str(), sizeof global.lab - 1);
    for (LabReader& adapter : takeObjects(lab, "adapters")) {
        const KT_U64 copies = takeNumber(adapter, "count", 1, 255);
        const KT_U64 id = takeNumber(adapter, "id", global.adapterCount, 254);
        if (id < global.adapterCount) failLab(adapter, "id", "is another adapter's already, or out of order");
        global.adapterCount = static_cast<KT_U16>(id);
        for (KT_U64 i = 0; i < copies; ++i) {
            if (global.adapterCount == ADAPTER_GLOBAL) failLab(adapter, "count", "there can be 255 adapters at most");
            Context context{store, static_cast<KT_U8>(global.adapterCount), simulatedNow(store)};
            ++global.adapterCount;
            LabReader copy = adapter;
            addLabAdapter(context, copy);
        }
    }
    takeNothingElse(lab);
    save(store, ADAPTER_GLOBAL, 0, global);
}

// Deeper than any lab, and far from what reading and writing it can bear.
static const int DEEPEST = 64;

static void refuseTooDeep(const char* text) {
    int depth = 0;
    bool quoted = false;
    for (const char* at = text; *at != '\0'; ++at) {
        if (quoted && *at == '\\' && at[1] != '\0') {
            ++at;
        } else if (*at == '"') {
            quoted = !quoted;
        } else if (!quoted && (*at == '[' || *at == '{') && ++depth > DEEPEST) {
            throw LabError{"is nested deeper than " + std::to_string(DEEPEST) + " levels"};
        } else if (!quoted && (*at == ']' || *at == '}')) {
            --depth;
        }
    }
}

void fillFromLab(Store& store, const void* argument) {
    const auto* source = static_cast<const BuiltInLab*>(argument);
    Json json;
    try {
        refuseTooDeep(source->text);
        json = Json::parse(source->text);
        LabReader lab = readObject(json, "what it holds");
        lab.path.clear();
        if (hasWord(lab, "report")) {
            fillFromReport(store, lab, *source);
        } else if (takeFlag(lab, "complete", false)) {
            fillComplete(store, lab, source->stoppedAt);
        } else {
            fillWritten(store, lab, *source);
        }
    } catch (const LabError& error) {
        throw LabError{std::string(source->name) + ": " + error.message};
    } catch (const Json::exception& error) {
        // "[json.exception.parse_error.101] parse error at line 1 ..."
        const char* what = strstr(error.what(), "] ");
        throw LabError{std::string(source->name) + ": " + (what ? what + 2 : error.what())};
    }
}

// Printing.

static Json rawRow(Kind kind, const RowWalk& walk) {
    Json row = Json::object();
    row["kind"] = static_cast<unsigned>(kind);
    row["id"] = walk.id;
    row["hex"] = toHex(walk.data, walk.size);
    return row;
}

// The row by its fields, unless those do not tell everything about it.
static bool fieldRow(const RecordFields* table, const RowWalk& walk, Json& row) {
    if (!table || walk.size != table->size) return false;
    Json fields = fieldsToJson(*table, walk.data);
    std::vector<unsigned char> again(table->size);
    for (const auto& [name, value] : fields.items())
        setField(*table, again.data(), name, value, "");
    if (memcmp(again.data(), walk.data, walk.size) != 0) return false;
    row = Json::object();
    row["id"] = walk.id;
    row.update(fields);
    return true;
}

static void printRows(Store& store, KT_U8 adapter, Json& into) {
    Json raw = Json::array();
    for (int number = 1; number <= 255; ++number) {
        const auto kind = static_cast<Kind>(number);
        const RecordFields* table = fieldsOf(kind);
        Json rows = Json::array();
        RowWalk walk = beginWalk(store, adapter, kind, 0);
        while (nextRow(walk)) {
            Json row;
            if (fieldRow(table, walk, row)) {
                rows.push_back(std::move(row));
            } else {
                raw.push_back(rawRow(kind, walk));
            }
        }
        endWalk(walk);
        if (!rows.empty()) into[table->section] = std::move(rows);
    }
    if (!raw.empty()) into["rows"] = std::move(raw);
}

// One row a line: short enough to compare two states with diff.
static std::string layOut(const Json& lab) {
    std::string text = "{\n";
    bool first = true;
    const auto section = [&](const std::string& indent, const std::string& name, const Json& rows) {
        text += first ? "" : ",\n";
        first = false;
        text += indent + Json(name).dump() + ": ";
        if (!rows.is_array() || rows.empty()) {
            text += rows.dump(-1, ' ', true);
            return;
        }
        text += "[\n";
        for (size_t i = 0; i < rows.size(); ++i)
            text += indent + " " + rows[i].dump(-1, ' ', true) + (i + 1 < rows.size() ? ",\n" : "]");
    };
    for (const auto& [name, value] : lab.items()) {
        if (name != "adapters") {
            section(" ", name, value);
            continue;
        }
        text += ",\n \"adapters\": [\n";
        for (size_t i = 0; i < value.size(); ++i) {
            text += i ? ",\n  {\n" : "  {\n";
            first = true;
            for (const auto& [inner, rows] : value[i].items())
                section("  ", inner, rows);
            text += "}";
        }
        text += "]";
        first = false;
    }
    return text + "\n}\n";
}

std::string stateToLab(Store& store) {
    Json lab = Json::object();
    lab["complete"] = true;
    printRows(store, ADAPTER_GLOBAL, lab);
    Json adapters = Json::array();
    const GlobalState global = find<GlobalState>(store, ADAPTER_GLOBAL, 0).value_or(GlobalState{});
    for (int i = 0; i < global.adapterCount; ++i) {
        Json adapter = Json::object();
        printRows(store, static_cast<KT_U8>(i), adapter);
        adapters.push_back(std::move(adapter));
    }
    lab["adapters"] = std::move(adapters);
    return layOut(lab);
}

} // namespace sim
