// What is attached to an adapter beside disks, and its event log.
#include <algorithm>
#include <iterator>

#include "Report/library.h"
#include "Report/words.h"

static constexpr KT_U8 WHOLE_TYPE = 255; // the element that stands for all of its type
static constexpr KT_U8 NO_PORT = 255;

// One type of elements; nothing is noted when the enclosure has none.
static void readElements(Reader& reader, EnclosureReading& enclosure, KT_U8 type) {
    const KT_U8 adapter = reader.adapter.index;
    const KT_U16 id = enclosure.info.EnclosureID;
    ElementType found;
    const KT_U8 status = KT_ENC_GetElementConfig(adapter, id, type, WHOLE_TYPE, &found.whole);
    if (status == KT_ERR_INVALID_ELEMENT) return;
    if (status != KT_OK) {
        refuse(reader, "KT_ENC_GetElementConfig", status, id);
        return;
    }
    for (unsigned i = 0; i < found.whole.NumberOfElements && i < WHOLE_TYPE; ++i) {
        const auto element = static_cast<KT_U8>(i);
        _Enc_Element_Info info = {};
        bool known = ask(reader, LIBRARY_CALL(KT_ENC_GetElementInfo), id, id, type, element, &info);
        found.elements.push_back(known ? std::optional(info) : std::nullopt);
        _Enc_Element_Config config = {};
        known = ask(reader, LIBRARY_CALL(KT_ENC_GetElementConfig), id, id, type, element, &config);
        found.configs.push_back(known ? std::optional(config) : std::nullopt);
    }
    enclosure.types.push_back(std::move(found));
}

static void readEnclosures(Reader& reader) {
    readItems<_Enclosure_Info>(
        reader, LIBRARY_CALL(KT_ENC_GetEnclosureInfo), reader.adapter.enclosures,
        [](const _Enclosure_Info& info) { return info.EnclosureID; },
        [](EnclosureReading& enclosure, const _Enclosure_Info& info) { enclosure.info = info; });
    if (!reader.adapter.enclosures || reader.adapter.enclosures->empty() || reader.machine.options.onlyLayout) return;
    if (!libraryHas(reader, "KT_ENC_GetElementConfig")) return;
    for (auto& [id, enclosure] : *reader.adapter.enclosures) {
        for (const CodeWord& type : elementTypeWords) {
            readElements(reader, enclosure, static_cast<KT_U8>(type.code));
        }
    }
}

static void readKeys(Reader& reader) {
    const _Adapter_Info& info = *reader.adapter.info;
    if ((info.AdvancedFeatures & KT_ADV_CRYPTO) == 0 && info.MaxAESPort == 0 && info.MaxAESEntry == 0) return;
    _aes_entry_info overview = {};
    if (!ask(reader, LIBRARY_CALL(KT_AES_GetEntryInfo), std::nullopt, &overview)) return;
    auto& keys = reader.adapter.keys.emplace();
    const auto most = static_cast<KT_U8>(std::min<size_t>(info.MaxAESEntry, std::size(overview.entry)));
    for (KT_U8 id = 0; id < most; ++id) {
        _AES_ENTRY_INFO entry = {};
        const bool known = ask(reader, LIBRARY_CALL(KT_AES_OnlyGetEntryInfo), id, id, &entry);
        keys[id] = known ? std::optional(entry) : std::nullopt;
    }
    std::vector<bool> seen(256);
    for (const _aes_port_entry& listed : overview.aes_port) {
        if (listed.id == NO_PORT || seen[listed.id]) continue;
        seen[listed.id] = true;
        PortReading port = {listed.id, listed.entry, std::nullopt, std::nullopt};
        _AES_Port_Config config = {};
        if (ask(reader, LIBRARY_CALL(KT_AES_GetPortConfig), port.id, port.id, &config)) port.config = config;
        _AES_PORT_INFO link = {};
        if (ask(reader, LIBRARY_CALL(KT_AES_OnlyGetPortInfo), port.id, port.id, &link)) port.info = link;
        reader.adapter.ports.push_back(port);
    }
}

// A library without a place for a battery says so with one of these; that is an answer.
static bool saysNoBattery(KT_U8 status) {
    return status == KT_ERR_INVALID_BBU || status == KT_ERR_NOT_SUPPORTED || status == KT_ERR_NOT_ON_THIS_ADAPTER;
}

static void readBattery(Reader& reader) {
    if (!libraryHas(reader, "KT_BBU_GetInfo")) return;
    _BBU_Info battery = {};
    const KT_U8 status = KT_BBU_GetInfo(reader.adapter.index, &battery);
    const bool expected = (reader.adapter.info->AdvancedFeatures & KT_ADV_BBU) != 0;
    if (status == KT_OK || (saysNoBattery(status) && !expected)) {
        reader.adapter.battery = status == KT_OK ? battery : _BBU_Info{};
    } else {
        refuse(reader, "KT_BBU_GetInfo", status);
    }
}

void readParts(Reader& reader) {
    readBattery(reader);
    const auto self = [](const auto& info) { return info.Link.Self.DevID; };
    if (reader.adapter.info->MaxExpander != 0) {
        readItems<_Exp_Info>(reader, LIBRARY_CALL(KT_PD_GetExpanderInfo), reader.adapter.expanders, self,
                             [](_Exp_Info& kept, const _Exp_Info& info) { kept = info; });
    }
    if (reader.adapter.info->MaxPM != 0) {
        readItems<_PM_Info>(reader, LIBRARY_CALL(KT_PD_GetPMInfo), reader.adapter.portMultipliers, self,
                            [](_PM_Info& kept, const _PM_Info& info) { kept = info; });
    }
    readEnclosures(reader);
    if (!reader.machine.options.onlyLayout) readKeys(reader);
}

void readEvents(Reader& reader) {
    // As many as the call can ask for; fewer where that is too many for a library.
    static constexpr KT_U8 MOST = 255;
    static constexpr KT_U8 FEWER = 50;
    if (!libraryHas(reader, "KT_EVT_GetEvent")) return;
    std::vector<_Event> events(MOST);
    KT_U8 asked = MOST;
    KT_U8 count = 0;
    if (KT_EVT_GetEvent(reader.adapter.index, asked, &count, events.data()) != KT_OK) {
        asked = FEWER;
        count = 0;
        if (!ask(reader, LIBRARY_CALL(KT_EVT_GetEvent), std::nullopt, asked, &count, events.data())) return;
    }
    events.resize(std::min(count, asked));
    const auto earlier = [](const _Event& a, const _Event& b) { return a.SequenceNo < b.SequenceNo; };
    std::stable_sort(events.begin(), events.end(), earlier);
    reader.adapter.events = std::move(events);
}
