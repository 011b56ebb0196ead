#include "twin.h"
#include "state/storeFile.h"

#include "child.h"
#include "commands.h"
#include "lab/lab.h"

#include <algorithm>
#include <cstring>

using namespace sim;

static std::string firstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

static Json parsed(const std::string& text, const std::string& name) {
    try {
        Json report = Json::parse(text);
        if (report.is_object() && report.contains("report")) return report;
    } catch (const Json::exception&) {
        throw CommandFailure{name + ": is no whole report", RESULT_NO_TWIN};
    }
    throw CommandFailure{name + ": is no report", RESULT_NO_TWIN};
}

// What ktreport says, without its name and a full stop too many.
static std::string reasonOf(const ChildResult& result) {
    std::string reason = firstLine(result.errors);
    for (const std::string start : {"ktreport: ", "ktsim: "})
        if (reason.rfind(start, 0) == 0) reason.erase(0, start.size());
    return reason.empty() ? "ktreport ends with status " + std::to_string(result.status) : reason;
}

static Json askedReport(const Surroundings& surroundings, bool records) {
    std::vector<std::string> words = {"ktreport", "json"};
    if (records) words.emplace_back("--records");
    const ChildResult result = runChild(words, ChildOptions{surroundings, Streams::Caught, true, true});
    if (result.output.empty() || result.status > 3) // 3 comes with a report that tells why
        throw CommandFailure{"there is no report of the adapters: " + reasonOf(result), RESULT_NO_TWIN};
    Json report = parsed(result.output, "what ktreport prints");
    if (result.status != 0) {
        const Json& unread = report["unread"];
        const std::string reason = unread.empty() ? reasonOf(result) : unread[0].value("text", reasonOf(result));
        throw CommandFailure{"there is no report of the adapters: " + reason, RESULT_NO_TWIN};
    }
    return report;
}

Json reportOf(const std::string& state, bool records) {
    return askedReport(Surroundings{state}, records);
}

// One machine's reports of an adapter each make one of all of them.
static void join(Json& report, const Json& more) {
    for (const char* list : {"adapters", "unread"}) {
        if (!more.contains(list) || !more[list].is_array()) continue;
        if (!report.contains(list)) report[list] = Json::array();
        for (const Json& item : more[list])
            report[list].push_back(item);
    }
    if (report.contains("adapterCount") && more.contains("adapterCount"))
        report["adapterCount"] = std::max(report["adapterCount"], more["adapterCount"]);
    if (!more.value("records", false)) report.erase("records");
}

Json reportFrom(const std::vector<std::string>& files) {
    Json report;
    for (const std::string& file : files) {
        Json next = parsed(labText(file), file);
        if (report.is_null()) {
            report = std::move(next);
        } else {
            join(report, next);
        }
    }
    if (files.empty()) report = askedReport(Surroundings{}, true);
    const auto adapters = report.find("adapters");
    if (adapters == report.end() || !adapters->is_array() || adapters->empty())
        throw CommandFailure{"there is no adapter", RESULT_NO_TWIN};
    return report;
}

static bool counts(const std::string& word, const std::string& path) {
    static const char* const TOP[] = {"made", "host", "library", "unread", "problems"};
    if (word == "magic") return false;
    return !path.empty() ||
           std::none_of(std::begin(TOP), std::end(TOP), [&](const char* each) { return word == each; });
}

static std::string shownValue(const Json& value) {
    std::string text = value.dump(-1, ' ', true);
    if (text.size() > 60) text = text.substr(0, 57) + "...";
    return text;
}

std::string firstDifference(const Json& told, const Json& made, const std::string& path) {
    if (told.is_object() && made.is_object()) {
        for (const auto& [word, value] : told.items()) {
            if (!counts(word, path)) continue;
            const std::string place = path.empty() ? word : path + "." + word;
            const auto other = made.find(word);
            if (other == made.end()) return place + ": no adapter tells that beside the rest";
            std::string difference = firstDifference(value, *other, place);
            if (!difference.empty()) return difference;
        }
        return {};
    }
    if (told.is_array() && made.is_array() && told.size() == made.size()) {
        for (size_t i = 0; i < told.size(); ++i) {
            std::string difference = firstDifference(told[i], made[i], path + "[" + std::to_string(i) + "]");
            if (!difference.empty()) return difference;
        }
        return {};
    }
    if (told == made) return {};
    return path + ": is " + shownValue(told) + ", with which the rest does not go (" + shownValue(made) + " would)";
}

static KT_U64 madeAt(const Json& report) {
    const std::string text =
        report.contains("made") && report["made"].is_string() ? report["made"].get<std::string>() : "";
    tm parts = {};
    const char* end = strptime(text.c_str(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    const time_t seconds = end && !*end ? timegm(&parts) : time(nullptr);
    return static_cast<KT_U64>(std::max<time_t>(seconds, 1)) * 1000;
}

Json makeTwin(const std::string& path, const Json& report, const std::string& name, KT_U64 at) {
    const std::string text = report.dump();
    const BuiltInLab lab{name.c_str(), text.c_str(), at ? at : madeAt(report)};
    try {
        closeStore(openStore(path, fillFromLab, &lab));
    } catch (const LabError& error) {
        throw CommandFailure{"no twin of " + error.message, RESULT_NO_TWIN};
    } catch (const StoreFailure& failure) {
        throw CommandFailure{"no twin: " + failure.message, RESULT_NO_TWIN};
    }
    Json made = reportOf(path, report.value("records", false));
    const std::string difference = firstDifference(report, made);
    if (!difference.empty()) throw CommandFailure{"no twin of " + name + ": " + difference, RESULT_NO_TWIN};
    return made;
}
