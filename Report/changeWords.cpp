#include "Report/changeWords.h"

#include <algorithm>
#include <cctype>

#include "Report/look.h"

bool changesByItself(const std::string& object, const std::string& word) {
    static const char* const words[] = {
        "made",     "host",   "temperature",  "poweredOn", "powerCycles", "percent",       "attributes",     "written",
        "blocks",   "slots",  "memberPatrol", "rotation",  "voltage",     "minutesToFull", "minutesToEmpty", "magic",
        "problems", "events", "table",        "speedCode", "member",      "flags",         "cipherPercent"};
    // A battery charges and discharges; where a disk has room follows from what is on it.
    static const char* const ofBattery[] = {"percentage", "capacity", "rechargeCycle"};
    static const char* const ofDisk[] = {"freeSize", "validSize"};
    const auto isOneOf = [&](const auto& list) {
        return std::find(std::begin(list), std::end(list), word) != std::end(list);
    };
    if (isOneOf(words) || (object == "disk" && isOneOf(ofDisk)) || (object == "adapter" && isOneOf(ofBattery)))
        return true;
    return !word.empty() && isupper(static_cast<unsigned char>(word.front())) != 0;
}

std::string wordsOf(const std::string& word) {
    std::string text;
    for (size_t i = 0; i < word.size(); ++i) {
        const auto c = static_cast<unsigned char>(word[i]);
        const bool starts = isupper(c) != 0 && i > 0 && islower(static_cast<unsigned char>(word[i - 1])) != 0;
        if (starts) text += ' ';
        text += c == '.' || c == '_' ? ' ' : static_cast<char>(tolower(c));
    }
    return shown(text);
}

static bool isSize(const std::string& word) {
    static const char* const words[] = {"size", "freeSize", "validSize", "memberSize", "target.size"};
    return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

static std::string batteryChangeText(const Json& status) {
    const KT_U64 bits = status.is_number_unsigned() ? status.get<KT_U64>() : 0;
    if ((bits & KT_BBU_PRESENT) == 0) return "missing";
    return bits & KT_BBU_CHARGING ? "charging" : bits & KT_BBU_DISCHARGING ? "discharging" : "there";
}

static std::string valueText(const std::string& word, const Json& value) {
    if (value.is_null()) return "not known";
    if (word == "battery.status") return batteryChangeText(value);
    if (value.is_boolean()) return value.get<bool>() ? "on" : "off";
    if (value.is_string()) return value.get<std::string>().empty() ? "none" : shown(value.get<std::string>());
    if (value.is_number_unsigned() && isSize(word)) return sizeText(value.get<KT_U64>());
    if (value.is_array()) {
        std::string text;
        for (const Json& one : value) {
            text += (text.empty() ? "" : ", ") + (one.is_null() ? std::string("missing") : valueText(word, one));
        }
        return text.empty() ? "none" : text;
    }
    return shown(value.dump(-1, ' ', true, Json::error_handler_t::replace));
}

static std::string activityText(const std::string& name, const Json& before, const Json& after, bool all) {
    const auto kind = [](const Json& activity) {
        const std::string word = shown(textIn(activity, "kind"));
        return word.empty() ? std::string("an activity") : word;
    };
    if (before.is_null()) return name + ": " + kind(after) + " began";
    if (after.is_null()) return name + ": " + kind(before) + " has ended";
    if (kind(before) != kind(after)) return name + ": " + kind(after) + " goes on (was " + kind(before) + ")";
    const std::string was = shown(textIn(before, "state"));
    const std::string is = shown(textIn(after, "state"));
    if (was != is) return name + ": " + kind(after) + " is " + is + " now (was " + was + ")";
    if (!all) return "";
    const Json& percent = in(after, "percent");
    return name + ": " + kind(after) + " is " +
           (percent.is_null() ? "at an unknown point" : percent.dump() + " % done");
}

static bool holdsObjects(const Json& value) {
    return value.is_array() && !value.empty() && value.front().is_object();
}

std::string changeText(const std::string& name, const std::string& word, const Json& before, const Json& after,
                       bool all) {
    if (word == "activity" || word == "patrol") return activityText(name, before, after, all);
    const std::string is = valueText(word, after);
    const std::string was = valueText(word, before);
    if (is == was && !all) return ""; // sizes that differ by less than is shown
    if (word == "state" || word == "status") return name + " is " + is + " now (was " + was + ")";
    if (word == "name")
        return name + " is called \"" + shown(after.is_string() ? after.get<std::string>() : "") + "\" now";
    if (word == "disks") return name + " is on disks " + is + " now (was on " + was + ")";
    if (word == "spare" && after.is_null()) return name + " is no " + was + " spare any more";
    if (word == "spare") return name + " is a " + is + " spare now" + (before.is_null() ? "" : " (was " + was + ")");
    if (word == "array" && before.is_null()) return name + " belongs to array " + is + " now";
    if (word == "array" && after.is_null()) return name + " has left array " + was;
    if (word == "spareInUse" && after == true) return name + " is in use as a spare now";
    if (holdsObjects(before) || holdsObjects(after)) return name + ": " + wordsOf(word) + " have changed";
    return name + ": " + wordsOf(word) + " is " + is + " now (was " + was + ")";
}

std::string aboutItem(const Json& item) {
    const std::string level = shown(textIn(item, "level"));
    const auto size = numberIn(item, "size");
    if (level.empty() || !size) return "";
    return "(" + level + ", " + sizeText(*size) + ") ";
}
