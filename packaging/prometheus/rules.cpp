// Prints the alerting rules for Prometheus: one for each row of the table of problems, and those for what keeps
// problems from being told at all.
#include <cctype>
#include <cstdio>
#include <string>

#include "Report/json.h"
#include "Report/problems.h"

namespace {
struct Rule {
    std::string alert;
    std::string expr;
    const char* lasts; // how long it has to be so
    std::string severity;
    std::string summary;
    std::string action;
};
} // namespace

// One machine tells of many where metrics are made from reports: then the host stands beside the instance.
static const std::string MACHINE = "{{ or $labels.host $labels.instance }}";
// The metrics' files, whatever folder they are in.
static const std::string FILES = "{file=~\"(.*/)?ktraid[^/]*[.]prom\"}";

// {"disk-failed", "Ktraid"} -> "KtraidDiskFailed".
static std::string alertName(const std::string& name) {
    std::string alert = "Ktraid";
    bool start = true;
    for (const char c : name) {
        if (c != '-') alert += start ? static_cast<char>(toupper(c)) : c;
        start = c == '-';
    }
    return alert;
}

static std::string withLabels(std::string text) {
    for (const char* word : {"adapter", "id"}) {
        const std::string place = std::string("{") + word + "}";
        for (size_t at; (at = text.find(place)) != std::string::npos;) {
            text.replace(at, place.size(), std::string("{{ $labels.") + word + " }}");
        }
    }
    return text;
}

static std::string quoted(const std::string& text) {
    return Json(text).dump();
}

static void print(const Rule& rule) {
    printf("  - alert: %s\n    expr: %s\n    for: %s\n    labels:\n      severity: %s\n    annotations:\n"
           "      summary: %s\n      action: %s\n",
           rule.alert.c_str(), rule.expr.c_str(), rule.lasts, rule.severity.c_str(), quoted(rule.summary).c_str(),
           quoted(rule.action).c_str());
}

// Warnings wait for what passes by itself: a rebuild's start, a reading that fails once.
static Rule ruleOf(const ProblemRule& row) {
    const bool critical = row.severity == Severity::Critical;
    return {alertName(row.name),
            std::string("ktraid_problem{name=\"") + row.name + "\"} == 1",
            critical ? "1m" : "5m",
            wordOf(row.severity),
            MACHINE + ", {{ $labels.title }}: " + row.meaning,
            withLabels(row.advice)};
}

// Nothing is told of what is gone: these notice it.
static void printCollection() {
    static const std::string look = "Run \"ktreport\" on the machine; it says what is wrong with it.";
    static const std::string service =
        "Look at \"systemctl status ktreport-metrics.timer ktreport-metrics.service\" there.";
    const Rule rules[] = {
        {"KtraidDown", "ktraid_up == 0", "2m", "critical",
         MACHINE + ": the RAID library does not start; nothing is known of the adapters",
         "See that the adapters' driver and sg are loaded. " + look},
        {"KtraidAdapterGone", "max_over_time(ktraid_adapters[1d]) > ktraid_adapters", "2m", "critical",
         MACHINE + ": an adapter is gone - there were {{ $value }} within a day",
         "See whether it is still in the system (lspci, dmesg)."},
        {"KtraidMetricsOld", "time() - node_textfile_mtime_seconds" + FILES + " > 600", "1m", "warning",
         MACHINE + ": {{ $labels.file }} was not written for {{ humanizeDuration $value }}", service},
        {"KtraidMetricsGone",
         "max_over_time(node_textfile_mtime_seconds" + FILES + "[1d]) unless node_textfile_mtime_seconds" + FILES +
             " and on (job, instance) up == 1",
         "5m", "warning", MACHINE + ": {{ $labels.file }} is gone, or node-exporter cannot read it", service},
        {"KtraidReportOld", "time() - ktraid_read_timestamp_seconds{host!=\"\"} > 172800", "1m", "warning",
         MACHINE + ": its last report is {{ humanizeDuration $value }} old",
         "See whether the machine is up and its report is still collected."},
        {"KtraidReportUnreadable", "ktraid_report_unreadable == 1", "5m", "warning",
         MACHINE + ": {{ $labels.file }} is no report, or of a machine that another file tells of",
         "Run \"ktreport show --from\" on it; it says what is wrong with it."},
    };
    for (const Rule& rule : rules) {
        print(rule);
    }
}

int main() {
    printf("# Alerts on what \"ktreport metrics\" tells. Generated from the table of problems: do not edit, but run\n"
           "#   cmake --build build/release --target prometheus-rules\n"
           "groups:\n- name: ktraid\n  rules:\n");
    for (const ProblemRule& row : problemRules()) {
        print(ruleOf(row));
    }
    printf("- name: ktraid-collection\n  rules:\n");
    printCollection();
    return 0;
}
