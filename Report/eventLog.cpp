#include "Report/eventLog.h"

#include <cctype>
#include <set>

#include "Report/look.h"
#include "Report/words.h"

static std::string keyOf(const Json& document, const Json& adapter) {
    const std::string serial = textIn(adapter, "serial");
    size_t same = 0;
    for (const Json& one : listIn(document, "adapters")) {
        if (textIn(one, "serial") == serial) ++same;
    }
    return serial.empty() || same > 1 ? "#" + std::to_string(numberIn(adapter, "id").value_or(0)) : serial;
}

static bool isProgress(const std::string& text) {
    return text.ends_with("% done");
}

static std::string upper(std::string word) {
    for (char& c : word)
        c = static_cast<char>(toupper(static_cast<unsigned char>(c)));
    return word;
}

// The priority that stands for a severity: from 1, look at once, to 6, good to know.
static std::string priority(const std::string& severity, const EventWords& words) {
    if (!words.journal) return "";
    static constexpr CodeWord priorities[] = {{1, "fatal"}, {2, "critical"}, {3, "major"},
                                              {4, "minor"}, {4, "warning"},  {6, "info"}};
    return "<" + std::to_string(codeOf(priorities, severity).value_or(5)) + ">";
}

static std::string lineOf(const Json& adapter, const Json& event, const EventWords& words) {
    if (words.json) {
        Json line = {{"adapter", in(adapter, "id")}};
        line.update(event);
        return priority(textIn(event, "severity"), words) + line.dump(-1, ' ', true, Json::error_handler_t::replace);
    }
    const std::string severity = shown(textIn(event, "severity"));
    return priority(severity, words) + shown(textIn(event, "time")) + " adapter " + in(adapter, "id").dump() + " #" +
           std::to_string(numberIn(event, "SequenceNo").value_or(0)) + " [" +
           (severity.empty() ? "UNKNOWN" : upper(severity)) + "] " + shown(textIn(event, "text"));
}

// A line about the log itself. count: events that went untold; 0: the log has begun anew.
static std::string remark(const Json& adapter, KT_U64 count, const EventWords& words) {
    const Json& id = in(adapter, "id");
    if (words.json) {
        const Json line = count ? Json{{"adapter", id}, {"lost", count}} : Json{{"adapter", id}, {"restarted", true}};
        return priority("warning", words) + line.dump();
    }
    const std::string before = priority("warning", words) + "adapter " + id.dump();
    if (count == 0) return before + ": the log has begun anew";
    return before + ": " + std::to_string(count) + (count == 1 ? " event was" : " events were") +
           " lost: the log has gone on without them";
}

static void addNew(NewEvents& found, const Json& adapter, const std::string& key, KT_U64 since,
                   const EventWords& words) {
    const Json& events = listIn(adapter, "events");
    if (events.empty()) return;
    const auto at = found.told.find(key);
    const bool isNew = at == found.told.end();
    KT_U64 last = isNew ? (since == 0 ? 0 : since - 1) : at->second;
    const KT_U64 newest = numberIn(events.back(), "SequenceNo").value_or(0);
    if (!isNew && newest < last) {
        found.lines.push_back({remark(adapter, 0, words), key, 0});
        last = 0;
    }
    const KT_U64 oldest = numberIn(events.front(), "SequenceNo").value_or(0);
    if (!isNew && last != 0 && oldest > last + 1) {
        found.lines.push_back({remark(adapter, oldest - last - 1, words), key, oldest - 1});
    }
    for (const Json& event : events) {
        const KT_U64 sequence = numberIn(event, "SequenceNo").value_or(0);
        if (sequence <= last) continue;
        last = sequence;
        if (words.quietProgress && isProgress(textIn(event, "text"))) continue;
        found.lines.push_back({lineOf(adapter, event, words), key, sequence});
    }
    found.told[key] = last;
}

NewEvents eventsAfter(const Json& document, const Told& told, KT_U64 since, const EventWords& words) {
    NewEvents found = {{}, told};
    for (const Json& adapter : listIn(document, "adapters")) {
        addNew(found, adapter, keyOf(document, adapter), since, words);
    }
    return found;
}
