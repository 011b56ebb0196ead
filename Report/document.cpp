#include "Report/document.h"

#include "Report/parts.h"
#include "Report/problems.h"
#include "Report/records.h"

static Json refusalOf(const Refusal& refusal) {
    Json object = Json::object();
    if (refusal.adapter >= 0) add(object, "adapter", refusal.adapter);
    add(object, "call", refusal.call);
    if (refusal.status) add(object, "status", *refusal.status);
    add(object, "text", refusal.text);
    if (!refusal.ids.empty()) add(object, "ids", refusal.ids);
    return object;
}

// Everything but what addDetails adds to disks.
static Json frameOf(const Machine& machine, const Json& thresholds) {
    Json document = Json::object();
    add(document, "report", REPORT_VERSION);
    add(document, "made", timeText(machine.made));
    if (!machine.host.empty()) add(document, "host", machine.host);
    if (machine.libraryVersion) add(document, "library", *machine.libraryVersion);
    if (machine.sgVersion) add(document, "sgVersion", *machine.sgVersion);
    if (machine.opened) add(document, "adapterCount", machine.adapterCount);
    if (machine.options.records) add(document, "records", true);
    Json unread = Json::array();
    for (const Refusal& refusal : machine.refusals) {
        unread.push_back(refusalOf(refusal));
    }
    add(document, "unread", std::move(unread));
    add(document, "problems", Json::array());
    Json adapters = Json::array();
    for (const AdapterReading& adapter : machine.adapters) {
        adapters.push_back(adapterOf(adapter, machine.options));
    }
    add(document, "adapters", std::move(adapters));
    document["problems"] = problemsOf(document, thresholds);
    return document;
}

Json documentOf(const Machine& machine, const Json& thresholds) {
    Json document = frameOf(machine, thresholds);
    for (size_t i = 0; i < machine.adapters.size(); ++i) {
        if (!machine.adapters[i].disks) continue;
        Json& disks = document["adapters"][i]["disks"];
        size_t at = 0;
        for (const auto& disk : *machine.adapters[i].disks) {
            addDetails(disks[at++], disk.second, machine.options);
        }
    }
    return document;
}

// The layout: the top and each adapter a word a line, lists of objects an item a line.

static bool isListOfObjects(const Json& value) {
    return value.is_array() && !value.empty() && value.front().is_object();
}

static void writeValue(std::ostream& to, const Json& value) {
    to << value.dump(-1, ' ', true);
}

// Writes items of a list, each through write(item's index).
template <class Write>
static void writeList(std::ostream& to, const char* indent, size_t count, Write write) {
    to << '[';
    for (size_t i = 0; i < count; ++i) {
        to << (i == 0 ? "\n" : ",\n") << indent << ' ';
        write(i);
    }
    to << '\n' << indent << ']';
}

// Writes the words of an object through write(word, value), each on a line of its own.
template <class Write>
static void writeWords(std::ostream& to, const char* indent, const Json& object, Write write) {
    to << '{';
    bool first = true;
    for (const auto& [word, value] : object.items()) {
        to << (first ? "\n" : ",\n") << indent << ' ';
        first = false;
        writeValue(to, word);
        to << ": ";
        write(word, value);
    }
    to << '\n' << indent << '}';
}

static void writeWord(std::ostream& to, const char* indent, const Json& value) {
    if (isListOfObjects(value)) {
        writeList(to, indent, value.size(), [&](size_t i) { writeValue(to, value[i]); });
    } else {
        writeValue(to, value);
    }
}

// Lays out the document; writeDisk(adapter's index, disk's index, disk) writes each disk.
template <class WriteDisk>
static void layOutWith(std::ostream& to, const Json& document, WriteDisk writeDisk) {
    const auto writeAdapter = [&](size_t index, const Json& adapter) {
        if (!adapter.is_object()) {
            writeValue(to, adapter);
            return;
        }
        writeWords(to, "  ", adapter, [&](const std::string& word, const Json& value) {
            if (word == "disks" && isListOfObjects(value)) {
                writeList(to, "   ", value.size(), [&](size_t i) { writeDisk(index, i, value[i]); });
            } else {
                writeWord(to, "   ", value);
            }
        });
    };
    writeWords(to, "", document, [&](const std::string& word, const Json& value) {
        if (word == "adapters" && isListOfObjects(value)) {
            writeList(to, " ", value.size(), [&](size_t i) { writeAdapter(i, value[i]); });
        } else {
            writeWord(to, " ", value);
        }
    });
    to << '\n';
}

void layOut(std::ostream& to, const Json& document) {
    layOutWith(to, document, [&](size_t, size_t, const Json& disk) { writeValue(to, disk); });
}

void writeDocument(std::ostream& to, const Machine& machine, const Json& thresholds) {
    const Json document = frameOf(machine, thresholds);
    std::vector<std::vector<const DiskReading*>> readings;
    for (const AdapterReading& adapter : machine.adapters) {
        readings.emplace_back();
        if (!adapter.disks) continue;
        for (const auto& disk : *adapter.disks) {
            readings.back().push_back(&disk.second);
        }
    }
    layOutWith(to, document, [&](size_t adapter, size_t index, const Json& disk) {
        Json whole = disk;
        addDetails(whole, *readings[adapter][index], machine.options);
        writeValue(to, whole);
    });
}
