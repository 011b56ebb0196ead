#include "lab/reportParts.h"

#include "devices/enclosureElements.h"
#include "lab/labValues.h"
#include "lab/reportWords.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace sim {

static const LabWord PART_PARENTS[] = {
    {"HBA", KT_LINK_HBA}, {"PM", KT_LINK_PM}, {"expander", KT_LINK_EXPANDER}, {"enclosure", KT_LINK_ENCLOSURE}};

static void takePhys(LabReader& reader, _Link_Endpoint& end) {
    const std::vector<KT_U16> phys = takeIds(reader, "ports");
    if (phys.size() > std::size(end.PhyID)) failLab(reader, "ports", "are more than a link has");
    end.PhyCnt = static_cast<KT_U8>(phys.size());
    for (size_t i = 0; i < phys.size(); ++i) {
        if (phys[i] > 255) failLab(reader, "ports", "go beyond 255");
        end.PhyID[i] = static_cast<KT_U8>(phys[i]);
    }
}

static void takeParent(LabReader& owner, Kind kind, void* record, _Link_Entity& link) {
    static constexpr WordField WORDS[] = {{"id", "Link.Parent.DevID"}, {"address", "Link.Parent.SAS_Address"}};
    for (LabReader& reader : takeRecord(owner, "parent")) {
        link.Parent.DevType = static_cast<KT_U8>(takeCode(reader, "on", PART_PARENTS, "DevType", KT_LINK_HBA));
        link.Parent.EnclosureID = KT_NO_ID;
        takeAs(reader, kind, record, WORDS);
        takePhys(reader, link.Parent);
        takeNothingElse(reader);
    }
}

static void addToldExpanders(Context& context, LabReader& adapter) {
    static constexpr WordField WORDS[] = {{"address", "Link.Self.SAS_Address"},
                                          {"enclosure", "Link.Self.EnclosureID"},
                                          {"phys", "PhyCount"},
                                          {"vendor", "VendorID"},
                                          {"product", "ProductID"},
                                          {"revision", "ProductRevision"},
                                          {"componentVendor", "ComponentVendorID"}};
    static const LabWord ROUTE_TABLES[] = {
        {"self configurable", 0}, {"not self configurable", 1}, {"being configured", 2}};
    for (LabReader& reader : takeObjects(adapter, "expanders")) {
        _Exp_Info expander = {};
        expander.AdapterID = context.adapter;
        const KT_U64 id = needNumber(reader, "id", 0xFFFE);
        if (find<_Exp_Info>(context, id)) failLab(reader, "id", "is another expander's already");
        expander.Link.Self.DevID = static_cast<KT_U16>(id);
        expander.Link.Self.DevType = KT_LINK_EXPANDER;
        expander.Link.Self.EnclosureID = KT_NO_ID;
        takeParent(reader, KIND_EXPANDER, &expander, expander.Link);
        takePhys(reader, expander.Link.Self);
        const int table = takeWord(reader, "routeTable", ROUTE_TABLES, std::size(ROUTE_TABLES), 0);
        expander.RouteTableConfigurable = table == 1;
        expander.Configuring = table == 2;
        takeAs(reader, KIND_EXPANDER, &expander, WORDS);
        takeFields(reader, KIND_EXPANDER, &expander);
        takeNothingElse(reader);
        save(context, id, expander);
    }
}

static KT_U8 takeRevision(LabReader& reader) {
    const std::string text = takeText(reader, "specRevision", "0.0");
    unsigned major = 0;
    unsigned minor = 0;
    char more = 0;
    if (sscanf(text.c_str(), "%2u.%2u%c", &major, &minor, &more) != 2 || major > 15 || minor > 15)
        failLab(reader, "specRevision", "should be a revision such as \"1.2\"");
    return static_cast<KT_U8>(major << 4 | minor);
}

static void addToldPortMultipliers(Context& context, LabReader& adapter) {
    static constexpr WordField WORDS[] = {
        {"ports", "NumberOfPorts"}, {"vendor", "VendorID"}, {"device", "DeviceID"}, {"revision", "ProductRevision"}};
    for (LabReader& reader : takeObjects(adapter, "portMultipliers")) {
        _PM_Info multiplier = {};
        multiplier.AdapterID = context.adapter;
        const KT_U64 id = needNumber(reader, "id", 0xFFFE);
        if (find<_PM_Info>(context, id)) failLab(reader, "id", "is another port multiplier's already");
        multiplier.Link.Self = _Link_Endpoint{static_cast<KT_U16>(id), KT_LINK_PM, 1, {0}, {}, KT_NO_ID, {}};
        takeParent(reader, KIND_PM, &multiplier, multiplier.Link);
        multiplier.SpecRevision = takeRevision(reader);
        takeAs(reader, KIND_PM, &multiplier, WORDS);
        takeFields(reader, KIND_PM, &multiplier);
        takeNothingElse(reader);
        save(context, id, multiplier);
    }
}

static KT_U8 takeElementType(LabReader& reader) {
    if (!hasWord(reader, "type")) return static_cast<KT_U8>(needNumber(reader, "ElementType", 255));
    const ElementKind* kind = elementKindNamed(takeText(reader, "type", ""));
    if (!kind) failLab(reader, "type", "should be one of the types that `enc -t` takes");
    return kind->type;
}

// Without its own four bytes: the status that its condition and what it measures give.
static bool takeStatusWords(const Context& context, KT_U16 enclosure, KT_U8 type, KT_U8 element, LabReader& reader) {
    const std::string condition = takeText(reader, "condition", "ok");
    if (!isSlot(type) && !setElementCondition(context, enclosure, type, element, condition)) return false;
    const struct {
        const char* word;
        KT_U8 type;
        double unit;
    } readings[] = {
        {"temperature", KT_SES_TEMPERATURE, 1}, {"voltage", KT_SES_VOLTAGE, 100}, {"rotation", KT_SES_COOLING, 1}};
    for (const auto& each : readings) {
        const Json* value = take(reader, each.word);
        if (!value || each.type != type || condition != "ok") continue;
        const std::optional<double> amount = amountOf(*value);
        if (!amount) failLab(reader, each.word, "should be a number");
        setElementReading(context, enclosure, type, element, static_cast<int>(std::lround(*amount * each.unit)));
    }
    return true;
}

static void addToldElement(const Context& context, KT_U16 enclosure, LabReader& reader) {
    const KT_U8 type = takeElementType(reader);
    const auto element = static_cast<KT_U8>(needNumber(reader, "element", 254));
    const std::string text = textToBytes(takeText(reader, "text", ""), reader.path + ".text");
    if (text.size() > sizeof(EnclosureElement::text)) failLab(reader, "text", "is longer than 64 characters");
    if (addElement(context, enclosure, type, text) != element)
        failLab(reader, "element", "is not the next one of its type");
    const KT_U64 id = (KT_U64{enclosure} << 16) + (KT_U64{type} << 8) + element;
    if (!hasWord(reader, "Status")) {
        if (!takeStatusWords(context, enclosure, type, element, reader))
            failLab(reader, "condition", "is none of this type's");
    }
    EnclosureElement row = find<EnclosureElement>(context, id).value_or(EnclosureElement{});
    row.subEnclosure = static_cast<KT_U8>(takeNumber(reader, "subEnclosure", 0, 255));
    if (isSlot(type)) memset(row.status, 0, sizeof row.status);
    static constexpr WordField STATUS[] = {{"Status", "status"}};
    takeAs(reader, KIND_ENCLOSURE_ELEMENT, &row, STATUS);
    leaveOut(reader, {"status", "SesStatus", "condition", "flags", "slot", "rotation", "speedCode", "temperature",
                      "voltage", "mode", "characters"});
    takeNothingElse(reader);
    save(context, id, row);
}

static void addToldEnclosures(Context& context, LabReader& adapter) {
    static constexpr WordField WORDS[] = {
        {"vendor", "VendorID"}, {"product", "ProductID"}, {"revision", "RevisionLevel"}, {"logicalId", "LogicalID"}};
    static const LabWord STATUSES[] = {{"ok", 0}, {"unstable", 2}};
    for (LabReader& reader : takeObjects(adapter, "enclosures")) {
        _Enclosure_Info enclosure = {};
        const auto id = static_cast<KT_U16>(needNumber(reader, "id", 0xFFFE));
        if (find<_Enclosure_Info>(context, id)) failLab(reader, "id", "is another enclosure's already");
        enclosure.EnclosureID = id;
        enclosure.AdapterID = context.adapter;
        save(context, id, enclosure);
        for (LabReader& element : takeObjects(reader, "elements"))
            addToldElement(context, id, element);
        countElementTypes(context, id);
        enclosure = find<_Enclosure_Info>(context, id).value_or(enclosure);
        enclosure.Status = static_cast<KT_U8>(takeWord(reader, "status", STATUSES, std::size(STATUSES), 0));
        takeAs(reader, KIND_ENCLOSURE, &enclosure, WORDS);
        leaveOut(reader, {"types"});
        takeFields(reader, KIND_ENCLOSURE, &enclosure);
        takeNothingElse(reader);
        save(context, id, enclosure);
    }
}

void addReportedParts(Context& context, LabReader& adapter) {
    addToldEnclosures(context, adapter);
    addToldExpanders(context, adapter);
    addToldPortMultipliers(context, adapter);
}

} // namespace sim
