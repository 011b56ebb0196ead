#include "Report/look.h"

#include <algorithm>
#include <cstdio>

const Json& in(const Json& object, const char* word) {
    static const Json nothing;
    if (!object.is_object()) return nothing;
    const auto at = object.find(word);
    return at == object.end() ? nothing : *at;
}

const Json& listIn(const Json& object, const char* word) {
    static const Json none = Json::array();
    const Json& list = in(object, word);
    return list.is_array() ? list : none;
}

std::string textIn(const Json& object, const char* word) {
    const Json& value = in(object, word);
    return value.is_string() ? value.get<std::string>() : std::string();
}

std::optional<KT_U64> numberIn(const Json& object, const char* word) {
    const Json& value = in(object, word);
    if (value.is_number_unsigned()) return value.get<KT_U64>();
    if (value.is_number_integer() && value.get<int64_t>() >= 0) return static_cast<KT_U64>(value.get<int64_t>());
    return std::nullopt;
}

std::optional<double> amountIn(const Json& object, const char* word) {
    const Json& value = in(object, word);
    return value.is_number() ? std::optional(value.get<double>()) : std::nullopt;
}

bool isTrue(const Json& object, const char* word) {
    const Json& value = in(object, word);
    return value.is_boolean() && value.get<bool>();
}

bool isFalse(const Json& object, const char* word) {
    const Json& value = in(object, word);
    return value.is_boolean() && !value.get<bool>();
}

std::optional<EventName> nameOfEvent(const Json& event) {
    const auto eventClass = numberIn(event, "Class");
    const auto code = numberIn(event, "Code");
    if (!eventClass || !code || *eventClass > 0xFFFF || *code > 0xFFFF) return std::nullopt;
    return static_cast<EventName>(*eventClass << 16 | *code);
}

const Json* findItem(const Json& owner, const char* list, KT_U64 id) {
    for (const Json& item : listIn(owner, list)) {
        if (numberIn(item, "id") == id) return &item;
    }
    return nullptr;
}

const Json* findAdapter(const Json& document, KT_U64 id) {
    return findItem(document, "adapters", id);
}

std::vector<VdInArray> virtualDisksOf(const Json& adapter) {
    std::vector<VdInArray> all;
    for (const Json& array : listIn(adapter, "arrays")) {
        for (const Json& vd : listIn(array, "virtualDisks"))
            all.push_back({&vd, &array});
    }
    for (const Json& vd : listIn(adapter, "virtualDisks"))
        all.push_back({&vd, nullptr});
    const auto earlier = [](const VdInArray& a, const VdInArray& b) {
        return numberIn(*a.vd, "id") < numberIn(*b.vd, "id");
    };
    std::stable_sort(all.begin(), all.end(), earlier);
    return all;
}

static bool names(const Json& list, KT_U64 id) {
    return std::any_of(list.begin(), list.end(), [&](const Json& one) { return one.is_number_integer() && one == id; });
}

std::vector<VdInArray> virtualDisksOn(const Json& adapter, KT_U64 disk) {
    std::vector<VdInArray> found;
    for (const VdInArray& one : virtualDisksOf(adapter)) {
        if (names(listIn(*one.vd, "disks"), disk)) found.push_back(one);
    }
    return found;
}

bool isRefusal(const Json& unread) {
    const KT_U64 status = numberIn(unread, "status").value_or(KT_OK);
    return status != KT_ERR_NOT_SUPPORTED && status != KT_ERR_NOT_ON_THIS_ADAPTER;
}

bool isOfWhatIsOffline(const Json& document, const Json& unread) {
    const Json* adapter = findAdapter(document, numberIn(unread, "adapter").value_or(~KT_U64{0}));
    const Json& ids = listIn(unread, "ids");
    const std::string call = textIn(unread, "call");
    const bool ofDisks = call.starts_with("KT_PD_");
    if (adapter == nullptr || ids.empty() || (!ofDisks && !call.starts_with("KT_Tandemix_"))) return false;
    const Json& things = listIn(*adapter, ofDisks ? "disks" : "virtualDisks");
    return std::all_of(ids.begin(), ids.end(), [&](const Json& id) {
        return std::any_of(things.begin(), things.end(), [&](const Json& thing) {
            return in(thing, "id") == id && textIn(thing, ofDisks ? "state" : "status") == "offline";
        });
    });
}

std::string placeOf(const Json& disk) {
    const auto number = [&](const char* word) { return std::to_string(numberIn(disk, word).value_or(0)); };
    if (numberIn(disk, "enclosure")) return "slot " + number("slot") + " of enclosure " + number("enclosure");
    const std::string on = textIn(disk, "on");
    if (on == "PM" || on == "expander") return "port " + number("port") + " of " + on + " " + number("parent");
    return numberIn(disk, "port") ? "port " + number("port") : std::string("place unknown");
}

static std::string withName(const char* kind, const Json& object) {
    std::string text = kind;
    if (const auto id = numberIn(object, "id")) text += " " + std::to_string(*id);
    const std::string name = shown(textIn(object, "name"));
    return name.empty() ? text : text + " \"" + name + "\"";
}

// " (model, serial x)" behind what was said before.
static std::string identity(const Json& object, const std::string& before) {
    std::string text = before;
    const std::string model = shown(textIn(object, "model"));
    const std::string serial = shown(textIn(object, "serial"));
    if (!model.empty()) text += (text.empty() ? "" : ", ") + model;
    if (!serial.empty()) text += (text.empty() ? "serial " : ", serial ") + serial;
    return text.empty() ? text : " (" + text + ")";
}

std::string nameOfDisk(const Json& disk) {
    return withName("disk", disk) + identity(disk, placeOf(disk));
}

std::string nameOfVd(const Json& vd) {
    return withName("virtual disk", vd);
}

std::string nameOfArray(const Json& array) {
    return withName("array", array);
}

std::string statusOfArray(const Json& array) {
    const std::string status = textIn(array, "status");
    return status.empty() && numberIn(array, "Status") ? "offline" : status;
}

std::string nameOfAdapter(const Json& adapter) {
    return withName("adapter", adapter) + identity(adapter, "");
}

std::string namesOfVds(const std::vector<VdInArray>& vds) {
    static constexpr size_t NAMED = 4;
    if (vds.size() == 1) return nameOfVd(*vds.front().vd);
    std::string text = "virtual disks";
    const size_t named = vds.size() > NAMED ? NAMED - 1 : vds.size();
    for (size_t i = 0; i < named; ++i) {
        text += i == 0 ? "" : i + 1 == vds.size() ? " and" : ",";
        text += withName("", *vds[i].vd);
    }
    if (named < vds.size()) text += " and " + std::to_string(vds.size() - named) + " more";
    return text;
}

std::string sizeText(KT_U64 bytes) {
    static const char* const units[] = {"B", "KB", "MB", "GB", "TB", "PB", "EB"};
    auto amount = static_cast<double>(bytes);
    size_t unit = 0;
    for (; amount >= 999.5 && unit + 1 < std::size(units); ++unit) {
        amount /= 1000;
    }
    char text[32];
    snprintf(text, sizeof text, unit > 0 && amount < 99.95 ? "%.1f %s" : "%.0f %s", amount, units[unit]);
    return text;
}

std::string spanText(KT_U64 seconds) {
    const auto pair = [](KT_U64 large, const char* one, KT_U64 small, const char* other) {
        std::string text = std::to_string(large) + one;
        return small == 0 ? text : text + " " + std::to_string(small) + other;
    };
    if (seconds < 60) return std::to_string(seconds) + " s";
    if (seconds < 3600) return std::to_string((seconds + 30) / 60) + " min";
    if (seconds < 86400) return pair(seconds / 3600, " h", seconds % 3600 / 60, " min");
    return pair(seconds / 86400, " d", seconds % 86400 / 3600, " h");
}
