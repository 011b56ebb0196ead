#include "Report/load.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include "Report/document.h"
#include "Report/look.h"

static constexpr int DEEPEST = 32;

[[noreturn]] static void fail(const std::string& path, const std::string& what) {
    throw LoadFailure{(path == "-" ? "standard input" : shown(path)) + ": " + what};
}

static std::string readWhole(int file, const std::string& path) {
    std::string text;
    std::vector<char> page(size_t{1} << 16);
    for (;;) {
        const ssize_t count = read(file, page.data(), page.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) fail(path, strerror(errno));
        if (count == 0) return text;
        text.append(page.data(), static_cast<size_t>(count));
        if (text.size() > LARGEST_REPORT) fail(path, "is larger than 256 MB, too large for a report");
    }
}

static std::string textOfFile(const std::string& path) {
    if (path == "-") return readWhole(STDIN_FILENO, path);
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (file < 0) fail(path, strerror(errno));
    try {
        std::string text = readWhole(file, path);
        close(file);
        return text;
    } catch (...) {
        close(file);
        throw;
    }
}

static Json parse(const std::string& text, const std::string& path) {
    const auto shallow = [&](int depth, Json::parse_event_t, Json&) {
        if (depth > DEEPEST) fail(path, "is nested too deeply for a report");
        return true;
    };
    try {
        return Json::parse(text, shallow);
    } catch (const Json::parse_error& error) {
        if (text.find_first_not_of(" \t\r\n") == std::string::npos) fail(path, "is empty");
        if (error.byte >= text.size()) fail(path, "is cut short");
        // "[json.exception.parse_error.101] parse error at line 1, column 2: ..."
        const char* what = strstr(error.what(), "] ");
        fail(path, "is no report: " + shown(what ? what + 2 : error.what()));
    }
}

// Lists that views walk have objects as their items.
static void checkLists(const Json& owner, const std::string& place, const std::string& path) {
    for (const char* word : {"disks", "arrays", "virtualDisks", "blocks", "enclosures", "expanders", "portMultipliers",
                             "events", "keys", "unlinkedPorts", "elements", "types", "slots"}) {
        const Json& list = in(owner, word);
        const bool ids = list.is_array() && !list.empty() && !list.front().is_object();
        if (list.is_null() || (ids && place != "an adapter" && std::string("disks") == word)) continue;
        if (!list.is_array()) fail(path, "is no report: \"" + std::string(word) + "\" of " + place + " is no list");
        for (const Json& item : list) {
            if (!item.is_object() && !(item.is_null() && place != "an adapter")) {
                fail(path, "is no report: \"" + std::string(word) + "\" of " + place + " holds what is no object");
            }
            if (place == "an adapter" && std::string("events") != word)
                checkLists(item, std::string("an item of ") + word, path);
        }
    }
}

static void checkReport(const Json& document, const std::string& path) {
    const Json& version = in(document, "report");
    if (!version.is_number_unsigned() || version == 0U) fail(path, "is no report: it lacks \"report\"");
    if (version.get<KT_U64>() > REPORT_VERSION) {
        fail(path, "is a report of version " + version.dump() + "; this program knows version " +
                       std::to_string(REPORT_VERSION));
    }
    const Json& adapters = in(document, "adapters");
    if (!adapters.is_array()) fail(path, "is no report: it lacks \"adapters\"");
    for (const Json& adapter : adapters) {
        if (!numberIn(adapter, "id")) fail(path, "is no report: an adapter lacks its \"id\"");
        checkLists(adapter, "an adapter", path);
    }
    for (const char* word : {"unread", "problems"}) {
        for (const Json& item : listIn(document, word)) {
            if (!item.is_object()) fail(path, "is no report: \"" + std::string(word) + "\" holds what is no object");
        }
    }
}

Report loadReport(const std::string& path) {
    Report report = {path, parse(textOfFile(path), path)};
    checkReport(report.document, path);
    return report;
}

std::vector<Report> gatherReports(const std::vector<std::string>& from, const ReadOptions& options) {
    std::vector<Report> reports;
    for (const std::string& path : from) {
        reports.push_back(loadReport(path));
        if (options.adapter < 0) continue;
        // The same adapter as asked for of a machine.
        Json& adapters = reports.back().document["adapters"];
        Json wanted = Json::array();
        for (Json& adapter : adapters) {
            if (numberIn(adapter, "id") == static_cast<KT_U64>(options.adapter)) wanted.push_back(std::move(adapter));
        }
        if (wanted.empty()) fail(path, "has no adapter " + std::to_string(options.adapter));
        adapters = std::move(wanted);
    }
    if (from.empty()) reports.push_back({"", documentOf(readMachine(options))});
    return reports;
}
