#include "Report/load.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include "Report/document.h"
#include "Report/look.h"
#include "Report/problems.h"

static constexpr int DEEPEST = 32;

[[noreturn]] static void fail(const std::string& path, const std::string& what) {
    throw LoadFailure{(path == "-" ? "standard input" : shown(path)) + ": " + what};
}

static std::string readWhole(int file, const std::string& path, size_t most) {
    std::string text;
    std::vector<char> page(size_t{1} << 16);
    for (;;) {
        const ssize_t count = read(file, page.data(), page.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) fail(path, strerror(errno));
        if (count == 0) return text;
        text.append(page.data(), static_cast<size_t>(count));
        if (text.size() > most) {
            fail(path, "is larger than " + std::to_string(most >> 20) + " MB, too large for a report");
        }
    }
}

static std::string textOfFile(const std::string& path, size_t most = LARGEST_REPORT) {
    if (path == "-") return readWhole(STDIN_FILENO, path, most);
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (file < 0) fail(path, strerror(errno));
    try {
        std::string text = readWhole(file, path, most);
        close(file);
        return text;
    } catch (...) {
        close(file);
        throw;
    }
}

// what: a word for what the file should be, in messages.
static Json parse(const std::string& text, const std::string& path, const std::string& what) {
    const auto shallow = [&](int depth, Json::parse_event_t, Json&) {
        if (depth > DEEPEST) fail(path, "is nested too deeply for a " + what);
        return true;
    };
    try {
        return Json::parse(text, shallow);
    } catch (const Json::exception& error) {
        if (text.find_first_not_of(" \t\r\n") == std::string::npos) fail(path, "is empty");
        const auto* at = dynamic_cast<const Json::parse_error*>(&error);
        const bool atEnd = at != nullptr && at->byte > text.size(); // in the middle of a word, too
        if (atEnd || strstr(error.what(), "end of input") != nullptr) fail(path, "is cut short");
        // "[json.exception.parse_error.101] parse error at line 1, column 2: ..."
        const char* detail = strstr(error.what(), "] ");
        fail(path, "is no " + what + ": " + shown(detail ? detail + 2 : error.what()));
    }
}

// The lists that views walk: their items are objects.
static const char* const adapterLists[] = {"disks",     "arrays",          "virtualDisks", "blocks", "enclosures",
                                           "expanders", "portMultipliers", "events",       "keys",   "unlinkedPorts"};
static const struct {
    const char* list;
    const char* words[2];
} itemLists[] = {
    {"arrays", {"virtualDisks", "slots"}}, {"enclosures", {"elements", "types"}}, {"keys", {"ports", "ports"}}};

static void checkList(const Json& owner, const char* word, const std::string& path) {
    const Json& list = in(owner, word);
    if (list.is_null()) return;
    if (!list.is_array()) fail(path, std::string("is no report: \"") + word + "\" is no list");
    for (const Json& item : list) {
        if (!item.is_object()) fail(path, std::string("is no report: \"") + word + "\" holds what is no object");
    }
}

static void checkAdapter(const Json& adapter, const std::string& path) {
    if (!numberIn(adapter, "id")) fail(path, "is no report: an adapter lacks its \"id\"");
    for (const char* word : adapterLists) {
        checkList(adapter, word, path);
    }
    for (const auto& row : itemLists) {
        for (const Json& item : listIn(adapter, row.list)) {
            checkList(item, row.words[0], path);
            checkList(item, row.words[1], path);
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
        checkAdapter(adapter, path);
    }
    checkList(document, "unread", path);
    checkList(document, "problems", path);
}

Json loadJson(const std::string& path, const std::string& what) {
    return parse(textOfFile(path, LARGEST_REPORT), path, what);
}

Report loadReport(const std::string& path, size_t most) {
    Report report = {path, parse(textOfFile(path, most), path, "report")};
    checkReport(report.document, path);
    return report;
}

Json loadThresholds(const std::string& path) {
    static const char standard[] = "/etc/ktreport.json";
    Json thresholds = defaultThresholds();
    if (path.empty() && access(standard, F_OK) != 0) return thresholds;
    const std::string file = path.empty() ? standard : path;
    const std::string wrong = mergeThresholds(thresholds, parse(textOfFile(file), file, "list of thresholds"));
    if (!wrong.empty()) fail(file, wrong);
    return thresholds;
}

// What is left of a report when only one adapter is asked for.
static void keepAdapter(Json& document, int adapter, const std::string& path) {
    Json wanted = Json::array();
    for (Json& one : document["adapters"]) {
        if (numberIn(one, "id") == static_cast<KT_U64>(adapter)) wanted.push_back(std::move(one));
    }
    if (wanted.empty()) fail(path, "has no adapter " + std::to_string(adapter));
    document["adapters"] = std::move(wanted);
    Json unread = Json::array();
    for (Json& refusal : document["unread"]) {
        const auto about = numberIn(refusal, "adapter");
        if (!about || *about == static_cast<KT_U64>(adapter)) unread.push_back(std::move(refusal));
    }
    document["unread"] = std::move(unread);
}

Report reportOfFile(const std::string& path, const ReadOptions& options, const Json& thresholds, size_t most) {
    Report report = loadReport(path, most);
    if (options.adapter >= 0) keepAdapter(report.document, options.adapter, path);
    report.document["problems"] = problemsOf(report.document, thresholds);
    return report;
}

Report reportNow(const ReadOptions& options, const Json& thresholds) {
    const Machine machine = readMachine(options);
    if (!machine.opened) {
        const Refusal& refusal = machine.refusals.front();
        throw ReadFailure{"the library does not start: error " +
                          std::to_string(refusal.status.value_or(KT_ERR_FAILED)) + ", " + refusal.text};
    }
    return {"", documentOf(machine, thresholds)};
}

std::vector<Report> gatherReports(const std::vector<std::string>& from, const ReadOptions& options,
                                  const Json& thresholds) {
    std::vector<Report> reports;
    for (const std::string& path : from) {
        reports.push_back(reportOfFile(path, options, thresholds));
    }
    if (from.empty()) reports.push_back(reportNow(options, thresholds));
    return reports;
}

ReadableReports gatherReadable(const std::vector<std::string>& from, const ReadOptions& options, const Json& thresholds,
                               size_t most) {
    ReadableReports gathered;
    if (from.empty()) gathered.reports.push_back(reportNow(options, thresholds));
    for (const std::string& path : from) {
        try {
            gathered.reports.push_back(reportOfFile(path, options, thresholds, most));
        } catch (const LoadFailure& failure) {
            if (from.size() == 1) throw;
            gathered.leftOut.push_back({path, failure.message});
        }
    }
    if (gathered.reports.empty()) {
        throw LoadFailure{"none of the files is a report; the first one, " + gathered.leftOut.front().message};
    }
    return gathered;
}
