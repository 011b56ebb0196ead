#include "Report/metrics.h"

#include <ctime>
#include <map>
#include <ostream>
#include <prometheus/text_serializer.h>

#include "Report/metricSeries.h"
#include "Report/problems.h"

using prometheus::MetricType;

namespace {
// A family of which a report has series of its own, beside those of its adapters.
struct ReportMetric {
    Metric metric;
    void (*fill)(Family& family, const Report& report, const MetricsSource& source);
};
} // namespace

// A library that did not start left this note and nothing else.
static bool isRead(const Json& document) {
    for (const Json& refusal : listIn(document, "unread")) {
        if (!numberIn(refusal, "adapter") && textIn(refusal, "call") == "KT_API_Initialize") return false;
    }
    return true;
}

static void fillUp(Family& family, const Report& report, const MetricsSource&) {
    put(family, {}, isRead(report.document) ? 1 : 0);
}

static void fillInfo(Family& family, const Report& report, const MetricsSource&) {
    put(family, {labelOf("report", report.document, "report"), labelOf("library", report.document, "library")}, 1);
}

// Seconds since 1970 of "2026-11-21T22:10:00Z"; none for what is no such time.
static std::optional<double> secondsOf(const std::string& text) {
    tm time = {};
    const char* end = strptime(text.c_str(), "%Y-%m-%dT%H:%M:%SZ", &time);
    if (end == nullptr || *end != '\0') return std::nullopt;
    return static_cast<double>(timegm(&time));
}

static void fillTime(Family& family, const Report& report, const MetricsSource&) {
    if (const auto seconds = secondsOf(textIn(report.document, "made"))) put(family, {}, *seconds);
}

static void fillDuration(Family& family, const Report&, const MetricsSource& source) {
    if (source.seconds) put(family, {}, *source.seconds);
}

// The library's own count, which an adapter that is not read counts for as well.
static void fillAdapters(Family& family, const Report& report, const MetricsSource&) {
    if (!isRead(report.document)) return;
    const auto counted = numberIn(report.document, "adapterCount");
    put(family, {}, static_cast<double>(counted.value_or(listIn(report.document, "adapters").size())));
}

static void fillLibraryUnread(Family& family, const Report& report, const MetricsSource&) {
    double count = 0;
    for (const Json& refusal : listIn(report.document, "unread")) {
        if (!numberIn(refusal, "adapter") && isRefusal(refusal)) ++count;
    }
    put(family, {}, count);
}

static void fillProblemCounts(Family& family, const Report& report, const MetricsSource&) {
    if (!isRead(report.document)) return;
    std::map<std::string, double> counts;
    for (const Json& problem : listIn(report.document, "problems")) {
        counts[textIn(problem, "name")] += 1;
    }
    for (const ProblemRule& rule : problemRules()) {
        put(family, {{"name", rule.name}, {"severity", wordOf(rule.severity)}}, counts[rule.name]);
    }
}

// Labels of a problem stay the same as long as it lasts: an alert whose labels change is another alert.
static void fillProblems(Family& family, const Report& report, const MetricsSource&) {
    static const Json nothing;
    for (const Json& problem : listIn(report.document, "problems")) {
        const auto adapterId = numberIn(problem, "adapter");
        const Json* adapter = adapterId ? findAdapter(report.document, *adapterId) : nullptr;
        const Json* object = adapter != nullptr ? objectOfProblem(*adapter, problem) : nullptr;
        const Json& about = object != nullptr ? *object : nothing;
        const bool isDisk = textIn(problem, "object") == "disk" && object != nullptr;
        put(family,
            {labelOf("name", problem, "name"),
             labelOf("severity", problem, "severity"),
             labelOf("adapter", problem, "adapter"),
             labelOf("object", problem, "object"),
             labelOf("id", problem, "id"),
             labelOf("serial", about, "serial"),
             labelOf("model", about, "model"),
             {"bay", isDisk ? placeOf(about) : std::string()},
             {"title", titleOfProblem(report.document, problem)}},
            1);
    }
}

static constexpr ReportMetric reportMetrics[] = {
    {{"ktraid_up", MetricType::Gauge, "Whether the library started; else nothing is known of the adapters.", nullptr},
     fillUp},
    {{"ktraid_report_info", MetricType::Gauge, "Version of the report's form and of the library.", nullptr}, fillInfo},
    {{"ktraid_read_timestamp_seconds", MetricType::Gauge, "When the adapters were read, in seconds since 1970.",
      nullptr},
     fillTime},
    {{"ktraid_read_duration_seconds", MetricType::Gauge, "How long it took to read the adapters.", nullptr},
     fillDuration},
    {{"ktraid_adapters", MetricType::Gauge, "Adapters that the library counts.", nullptr}, fillAdapters},
    {{"ktraid_library_unread", MetricType::Gauge, "What the library refused to tell of no adapter in particular.",
      nullptr},
     fillLibraryUnread},
    {{"ktraid_problems", MetricType::Gauge, "Problems of each name; 0 where there is none.", nullptr},
     fillProblemCounts},
    {{"ktraid_problem", MetricType::Gauge, "A problem that is there now, by the object it is about.", nullptr},
     fillProblems},
};

// Of two files one machine's name: their series would be the same ones.
void leaveOutSameHosts(MetricsSource& source) {
    std::map<std::string, std::string> files;
    std::vector<Report> kept;
    for (Report& report : source.reports) {
        const std::string host = shown(textIn(report.document, "host"));
        const auto [at, isNew] = files.try_emplace(host, report.source);
        if (isNew) {
            kept.push_back(std::move(report));
            continue;
        }
        source.leftOut.push_back(
            {report.source, shown(report.source) + ": is of host \"" + host + "\", as " + shown(at->second) + " is"});
    }
    source.reports = std::move(kept);
}

static Family familyOf(const Metric& metric) {
    return {metric, {metric.name, metric.help, metric.type, {}}, {}, {}};
}

// Families are written one by one: of many disks only one number is in memory twice.
static void write(std::ostream& to, const Family& family) {
    if (!family.told.metric.empty()) prometheus::TextSerializer().Serialize(to, {family.told});
}

static Labels commonLabels(const MetricsSource& source, const Report& report) {
    return source.fromFiles ? Labels{labelOf("host", report.document, "host")} : Labels();
}

static void writeOfAdapters(std::ostream& to, const MetricsSource& source, std::span<const Metric> metrics) {
    for (const Metric& metric : metrics) {
        Family family = familyOf(metric);
        for (const Report& report : source.reports) {
            family.common = commonLabels(source, report);
            for (const Json& adapter : listIn(report.document, "adapters")) {
                metric.fill(family, {report.document, adapter});
            }
        }
        write(to, family);
    }
}

void writeMetrics(std::ostream& to, const MetricsSource& source) {
    for (const ReportMetric& row : reportMetrics) {
        Family family = familyOf(row.metric);
        for (const Report& report : source.reports) {
            family.common = commonLabels(source, report);
            row.fill(family, report, source);
        }
        // Nothing was read at all.
        if (row.fill == fillUp && source.reports.empty()) put(family, {}, 0);
        write(to, family);
    }
    static constexpr Metric unreadable = {"ktraid_report_unreadable", MetricType::Gauge,
                                          "A file that was left out: it is no report, or of a machine told already.",
                                          nullptr};
    Family family = familyOf(unreadable);
    for (const LeftOut& file : source.leftOut) {
        put(family, {{"file", shown(file.path)}}, 1);
    }
    write(to, family);
    for (const auto& metrics : {adapterMetrics, diskMetrics, volumeMetrics, partMetrics}) {
        writeOfAdapters(to, source, metrics);
    }
}
