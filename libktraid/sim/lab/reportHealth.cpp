#include "lab/reportHealth.h"

#include "activities/activities.h"
#include "devices/smart.h"
#include "lab/reportWords.h"
#include "media/life.h"
#include "media/smartAttributes.h"

#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>

namespace sim {

enum : KT_U8 {
    READ_ERRORS = 1,
    REALLOCATED = 5,
    HOURS = 9,
    SPIN_RETRIES = 10,
    POWER_CYCLES = 12,
    UNCORRECTABLE = 0xBB,
    TEMPERATURE = 0xC2,
    PENDING = 0xC5,
    LINK_ERRORS = 0xC7,
    WRITTEN = 0xF1
};
static const KT_U64 HOUR_MS = 3600000;
static const KT_U64 MOST = 0xFFFFFF; // of anything that a drive counts

// An attribute that the report gives, or none.
static const Json* attributeOf(const Json& disk, KT_U8 id) {
    const auto list = disk.find("attributes");
    if (list == disk.end() || !list->is_array()) return nullptr;
    for (const Json& attribute : *list)
        if (attribute.is_object() && attribute.value("id", Json()) == id) return &attribute;
    return nullptr;
}

// What is measured: from the table of attributes, else from the word that stands for it.
static KT_U64 measured(LabReader& disk, KT_U8 id, const char* word, KT_U64 unit, KT_U64 absent) {
    const KT_U64 plain = word ? takeNumber(disk, word, absent * unit, NEVER) / unit : absent;
    const Json* attribute = attributeOf(disk.object, id);
    const auto raw = attribute ? attribute->find("raw") : disk.object.end();
    if (!attribute || raw == attribute->end() || !raw->is_number_unsigned()) return plain;
    return raw->get<KT_U64>();
}

// How far below a hundred the attribute has ever been.
static KT_U64 lostPoints(const Json& disk, KT_U8 id) {
    const Json* attribute = attributeOf(disk, id);
    const auto worst = attribute ? attribute->find("worst") : disk.end();
    if (!attribute || worst == attribute->end() || !worst->is_number_unsigned()) return 0;
    return 100 - std::min<KT_U64>(worst->get<KT_U64>(), 100);
}

static KT_U32 counted(KT_U64 value) {
    return static_cast<KT_U32>(std::min(value, MOST));
}

static DiskAge ageOf(const Context& context, LabReader& disk) {
    DiskAge age = {};
    age.born = std::max<KT_U64>(context.now - context.now % HOUR_MS, 1);
    age.hours = counted(measured(disk, HOURS, "poweredOn", 3600, 0));
    age.powerCycles = counted(std::max<KT_U64>(measured(disk, POWER_CYCLES, "powerCycles", 1, 1), 1) - 1);
    age.reallocated = counted(measured(disk, REALLOCATED, "reallocated", 1, 0));
    age.pending = counted(measured(disk, PENDING, "pending", 1, 0));
    age.uncorrectable = counted(measured(disk, UNCORRECTABLE, "uncorrectable", 1, 0));
    age.linkErrors = counted(measured(disk, LINK_ERRORS, "linkErrors", 1, 0));
    age.readErrors = counted(measured(disk, READ_ERRORS, nullptr, 1, 0));
    age.spinRetries = counted(measured(disk, SPIN_RETRIES, nullptr, 1, 0));
    age.writtenKib = measured(disk, WRITTEN, nullptr, 1, 0) / 2;
    // A point is lost for every eight sectors that wait.
    age.mostPending = std::max(age.pending, counted(lostPoints(disk.object, PENDING) * 8));
    return age;
}

// What is left to be said once everything else that makes a disk warm or worn is known.
static void adjust(const Context& context, KT_U16 pd, const _HD_Info& disk, LabReader& reader) {
    DiskAge age = ageOf(context, reader);
    save(context, pd, age);
    const Life bare = lifeOf(context, pd, disk);
    const int daily = warmthAt(context.now, isBusy(context, pd));
    const auto rest = static_cast<int>(bare.temperature) + daily;
    const auto now = static_cast<int>(
        std::min<KT_U64>(measured(reader, TEMPERATURE, "temperature", 1, static_cast<KT_U64>(rest)), 255));
    age.warmth = static_cast<KT_U32>(std::max(now - rest, 0));
    const KT_U64 hottest = lostPoints(reader.object, TEMPERATURE);
    age.mostWarmth = std::max(age.warmth, static_cast<KT_U32>(hottest > bare.hottest ? hottest - bare.hottest : 0));
    const KT_U64 wear = takeNumber(reader, "wear", bare.wear, 100);
    age.wear = static_cast<KT_U32>(wear > bare.wear ? wear - bare.wear : 0);
    save(context, pd, age);
}

static KT_U64 takeNumberOf(const Json& attribute, const char* word, KT_U64 largest, const LabReader& disk) {
    const auto value = attribute.find(word);
    if (value == attribute.end()) return 0;
    if (!value->is_number_unsigned() || value->get<KT_U64>() > largest)
        failLab(disk, "attributes", "has no such value");
    return value->get<KT_U64>();
}

// The table of attributes as the report has it.
static _SMART_Info toldAttributes(const LabReader& disk) {
    static const LabWord STATES[] = {
        {"ok", KT_SMART_GOOD}, {"failing", KT_SMART_FAILING}, {"failed before", KT_SMART_FAILED_BEFORE}};
    _SMART_Info info = {};
    LabReader again{disk.object, disk.path, {}};
    for (LabReader& reader : takeObjects(again, "attributes")) {
        if (info.AttributeCount == std::size(info.Attributes)) failLab(disk, "attributes", "are more than a disk has");
        _SMART_Attribute& attribute = info.Attributes[info.AttributeCount++];
        attribute.Id = static_cast<KT_U8>(takeNumberOf(reader.object, "id", 255, disk));
        attribute.Current = static_cast<KT_U8>(takeNumberOf(reader.object, "current", 255, disk));
        attribute.Worst = static_cast<KT_U8>(takeNumberOf(reader.object, "worst", 255, disk));
        attribute.Threshold = static_cast<KT_U8>(takeNumberOf(reader.object, "threshold", 255, disk));
        attribute.RawValue = takeNumberOf(reader.object, "raw", (KT_U64{1} << 48) - 1, disk);
        attribute.Status = static_cast<KT_U8>(takeCode(reader, "status", STATES, "Status", KT_SMART_GOOD));
        putText(reader, "name", takeText(reader, "name", ""), attribute.Name, sizeof attribute.Name);
    }
    return info;
}

static bool isSame(const _SMART_Info& one, const _SMART_Info& other) {
    return one.AttributeCount == other.AttributeCount &&
           memcmp(one.Attributes, other.Attributes, sizeof one.Attributes) == 0;
}

void addReportedHealth(const Context& context, const LabReader& adapter) {
    LabReader again{adapter.object, adapter.path, {}};
    for (LabReader& reader : takeObjects(again, "disks")) {
        const auto pd = static_cast<KT_U16>(needNumber(reader, "id", 0xFFFE));
        const auto disk = find<_HD_Info>(context, pd);
        if (disk && (hasWord(reader, "poweredOn") || hasWord(reader, "attributes") || hasWord(reader, "temperature")))
            adjust(context, pd, *disk, reader);
        if (!disk || !hasWord(reader, "attributes")) continue;
        const _SMART_Info told = toldAttributes(reader);
        _SMART_Info made = {};
        if (getSmartInfo(context, pd, made) != KT_OK || !isSame(told, made)) save(context, pd, ToldHealth{told});
    }
}

} // namespace sim
