// The words of what is attached to an adapter beside disks.
#include <iterator>

#include "Report/element.h"
#include "Report/parts.h"
#include "Report/records.h"

static Json physOf(const _Link_Endpoint& end) {
    Json phys = Json::array();
    for (unsigned i = 0; i < end.PhyCnt && i < std::size(end.PhyID); ++i) {
        phys.push_back(end.PhyID[i]);
    }
    return phys;
}

static Json endOf(const _Link_Endpoint& end) {
    Json object = Json::object();
    addCode(object, "on", parentWords, end.DevType, "DevType");
    add(object, "id", end.DevID);
    add(object, "ports", physOf(end));
    if (!isZero(end.SAS_Address)) add(object, "address", hexOf(end.SAS_Address));
    return object;
}

static Json expanderOf(const _Exp_Info& info, bool records) {
    const _Link_Endpoint& self = info.Link.Self;
    Json object = Json::object();
    add(object, "id", self.DevID);
    add(object, "parent", endOf(info.Link.Parent));
    add(object, "ports", physOf(self));
    if (!isZero(self.SAS_Address)) add(object, "address", hexOf(self.SAS_Address));
    if (self.EnclosureID != KT_NO_ID) add(object, "enclosure", self.EnclosureID);
    add(object, "phys", info.PhyCount);
    add(object, "vendor", textOf(info.VendorID));
    add(object, "product", textOf(info.ProductID));
    add(object, "revision", textOf(info.ProductRevision));
    add(object, "componentVendor", textOf(info.ComponentVendorID));
    add(object, "routeTable",
        info.Configuring              ? "being configured"
        : info.RouteTableConfigurable ? "not self configurable"
                                      : "self configurable");
    if (records) addFields(object, expanderFields, &info);
    return object;
}

static Json multiplierOf(const _PM_Info& info, bool records) {
    Json object = Json::object();
    add(object, "id", info.Link.Self.DevID);
    add(object, "parent", endOf(info.Link.Parent));
    add(object, "ports", info.NumberOfPorts);
    add(object, "vendor", info.VendorID);
    add(object, "device", info.DeviceID);
    add(object, "revision", info.ProductRevision);
    add(object, "specRevision",
        std::to_string(info.SpecRevision >> 4) + "." + std::to_string(info.SpecRevision & 0x0F));
    if (records) addFields(object, multiplierFields, &info);
    return object;
}

static std::string textOfElement(const _Enc_Element_Config& config) {
    return textOfBytes(config.Text, std::min<size_t>(config.TextLength, sizeof config.Text));
}

static Json enclosureOf(const EnclosureReading& enclosure, bool records) {
    const _Enclosure_Info& info = enclosure.info;
    Json object = Json::object();
    add(object, "id", info.EnclosureID);
    add(object, "status", info.Status == 0 ? "ok" : "unstable");
    add(object, "vendor", textOf(info.VendorID));
    add(object, "product", textOf(info.ProductID));
    add(object, "revision", textOf(info.RevisionLevel));
    add(object, "logicalId", hexOf(info.LogicalID));
    Json types = Json::array();
    Json elements = Json::array();
    for (const ElementType& type : enclosure.types) {
        Json whole = Json::object();
        addCode(whole, "type", elementTypeWords, type.whole.ElementType, "ElementType");
        add(whole, "count", type.whole.NumberOfElements);
        add(whole, "subEnclosure", type.whole.SubEnclosureID);
        add(whole, "text", textOfElement(type.whole));
        types.push_back(std::move(whole));
        for (size_t i = 0; i < type.elements.size(); ++i) {
            Json element = Json::object();
            addCode(element, "type", elementTypeWords, type.whole.ElementType, "ElementType");
            add(element, "element", i);
            if (type.configs[i]) add(element, "subEnclosure", type.configs[i]->SubEnclosureID);
            if (type.configs[i]) add(element, "text", textOfElement(*type.configs[i]));
            if (type.elements[i]) addElementStatus(element, *type.elements[i], records);
            elements.push_back(std::move(element));
        }
    }
    add(object, "types", std::move(types));
    add(object, "elements", std::move(elements));
    if (records) addFields(object, enclosureFields, &info);
    return object;
}

static Json portOf(const PortReading& port) {
    Json object = Json::object();
    add(object, "id", port.id);
    if (port.config) add(object, "enabled", port.config->aes_enable != 0);
    return object;
}

// Entries for keys with the ports that use them, and the ports that use none. Nothing of a key or a password is here.
static void addKeys(Json& object, const AdapterReading& adapter) {
    static constexpr KT_U8 NO_ENTRY = 255;
    if (!adapter.keys) return;
    const auto entryOf = [](const PortReading& port) { return port.info ? port.info->entry : port.entry; };
    const auto portsOf = [&](KT_U8 entry) {
        Json ports = Json::array();
        for (const PortReading& port : adapter.ports) {
            if (entryOf(port) == entry) ports.push_back(portOf(port));
        }
        return ports;
    };
    Json keys = Json::array();
    for (const auto& [id, entry] : *adapter.keys) {
        Json key = Json::object();
        add(key, "id", id);
        if (entry) add(key, "hasKey", entry->hasKey != 0);
        add(key, "ports", portsOf(id));
        keys.push_back(std::move(key));
    }
    add(object, "keys", std::move(keys));
    Json unlinked = Json::array();
    for (const PortReading& port : adapter.ports) {
        const KT_U8 entry = entryOf(port);
        if (adapter.keys->count(entry)) continue;
        Json one = portOf(port);
        if (entry != NO_ENTRY) add(one, "entry", entry);
        unlinked.push_back(std::move(one));
    }
    add(object, "unlinkedPorts", std::move(unlinked));
}

template <class Item, class Make>
static void addList(Json& object, const char* word, const std::optional<std::map<KT_U16, Item>>& items, Make make) {
    if (!items) return;
    Json list = Json::array();
    for (const auto& item : *items) {
        list.push_back(make(item.second));
    }
    add(object, word, std::move(list));
}

void addParts(Json& object, const AdapterReading& adapter, const ReadOptions& options) {
    const bool records = options.records;
    if (adapter.battery) {
        const bool present = (adapter.battery->status & KT_BBU_PRESENT) != 0;
        // Without a battery the record may still tell of the one that was there.
        static constexpr _BBU_Info nothing = {};
        const bool empty = memcmp(&*adapter.battery, &nothing, sizeof nothing) == 0;
        add(object, "battery", present || !empty ? fieldsOf(batteryFields, &*adapter.battery) : Json(false));
    }
    addKeys(object, adapter);
    addList(object, "expanders", adapter.expanders, [&](const _Exp_Info& info) { return expanderOf(info, records); });
    addList(object, "portMultipliers", adapter.portMultipliers,
            [&](const _PM_Info& info) { return multiplierOf(info, records); });
    addList(object, "enclosures", adapter.enclosures,
            [&](const EnclosureReading& enclosure) { return enclosureOf(enclosure, records); });
}
