#include "Report/check.h"

#include <algorithm>

#include "Report/look.h"

namespace {
struct Count {
    size_t critical = 0;
    size_t warning = 0;
    size_t unread = 0;
    size_t adapters = 0;
    size_t disks = 0;
    size_t virtualDisks = 0;
    std::optional<double> hottest;
    std::vector<std::string> criticalTexts;
    std::vector<std::string> texts; // of the others
    std::vector<std::string> criticalLines;
    std::vector<std::string> lines; // of the others
};
} // namespace

static bool isAmong(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// No rule looks at what these tell.
static bool decides(const std::string& call) {
    static const char* const idle[] = {"KT_PD_GetMBRInfo",     "KT_DiskHasOS",     "KT_Tandem_GetHDMagic",
                                       "KT_Tandem_GetVDMagic", "KT_VDHDD_GetLink", "KT_Tandemix_GetEntriesTableInfo",
                                       "KT_Flash_Bin"};
    return std::none_of(std::begin(idle), std::end(idle), [&](const char* name) { return call == name; });
}

// What was refused and a verdict needs.
static bool isMissing(const Json& document, const Json& unread) {
    return decides(textIn(unread, "call")) && isRefusal(unread) && !isOfWhatIsOffline(document, unread);
}

static void countThings(const Json& document, Count& count) {
    for (const Json& adapter : listIn(document, "adapters")) {
        count.adapters += 1;
        count.disks += listIn(adapter, "disks").size();
        count.virtualDisks += virtualDisksOf(adapter).size();
        for (const Json& disk : listIn(adapter, "disks")) {
            const auto celsius = amountIn(disk, "temperature");
            if (celsius && (!count.hottest || *celsius > *count.hottest)) count.hottest = celsius;
        }
    }
}

static void countProblems(const Report& report, const CheckOptions& options, bool many, Count& count) {
    const std::string host = many ? shown(textIn(report.document, "host")) : "";
    for (const Json& problem : listIn(report.document, "problems")) {
        const std::string name = textIn(problem, "name");
        if (isAmong(options.ignore, name) || (!options.only.empty() && !isAmong(options.only, name))) continue;
        // What could not be read is judged by itself.
        if (name == "unread") continue;
        const bool critical = textIn(problem, "severity") == "critical";
        (critical ? count.critical : count.warning) += 1;
        const std::string text = (host.empty() ? "" : host + ": ") + shown(textIn(problem, "text"));
        (critical ? count.criticalTexts : count.texts).push_back(text);
        (critical ? count.criticalLines : count.lines)
            .push_back((critical ? "CRITICAL: " : "WARNING: ") + text + " " + shown(textIn(problem, "action")));
    }
    if (isAmong(options.ignore, "unread")) return;
    for (const Json& refusal : listIn(report.document, "unread")) {
        if (!isMissing(report.document, refusal)) continue;
        count.unread += 1;
        const std::string text = shown(textIn(refusal, "text"));
        count.texts.push_back((host.empty() ? "" : host + ": ") + "unread: " + shown(textIn(refusal, "call")) + ": " +
                              text);
        count.lines.push_back("UNKNOWN: " + count.texts.back());
    }
}

static CheckResult resultOf(const Count& count) {
    if (count.critical != 0) return CHECK_CRITICAL;
    if (count.unread != 0 || count.adapters == 0) return CHECK_UNKNOWN;
    return count.warning != 0 ? CHECK_WARNING : CHECK_OK;
}

// The bar begins performance data.
static std::string withoutBars(std::string text) {
    std::replace(text.begin(), text.end(), '|', '/');
    return text;
}

static std::string summary(const Count& count) {
    static constexpr size_t SAID = 4;
    if (count.adapters == 0) return "no adapter was looked at";
    if (count.texts.empty()) {
        return std::to_string(count.adapters) + (count.adapters == 1 ? " adapter, " : " adapters, ") +
               std::to_string(count.virtualDisks) + " virtual disks, " + std::to_string(count.disks) + " disks";
    }
    std::string text;
    for (size_t i = 0; i < count.texts.size() && i < SAID; ++i) {
        text += (i == 0 ? "" : " ") + count.texts[i];
    }
    if (count.texts.size() > SAID) text += " And " + std::to_string(count.texts.size() - SAID) + " more.";
    return withoutBars(std::move(text));
}

Verdict checkReports(const ReadableReports& gathered, const CheckOptions& options) {
    static const char* const words[] = {"OK", "WARNING", "CRITICAL", "UNKNOWN"};
    Count count;
    const bool many = gathered.reports.size() + gathered.leftOut.size() > 1;
    for (const LeftOut& file : gathered.leftOut) {
        count.unread += 1;
        count.texts.push_back(shown(file.message));
        count.lines.push_back("UNKNOWN: " + shown(file.message));
    }
    for (const Report& report : gathered.reports) {
        countThings(report.document, count);
        countProblems(report, options, many, count);
    }
    count.texts.insert(count.texts.begin(), count.criticalTexts.begin(), count.criticalTexts.end());
    const CheckResult result = resultOf(count);
    std::string line = std::string("RAID ") + words[result] + " - " + summary(count);
    line += " | critical=" + std::to_string(count.critical) + ";;0;0 warning=" + std::to_string(count.warning) +
            ";0;;0 unread=" + std::to_string(count.unread) + ";;;0 adapters=" + std::to_string(count.adapters) +
            ";;;0 virtualdisks=" + std::to_string(count.virtualDisks) + ";;;0 disks=" + std::to_string(count.disks) +
            ";;;0";
    if (count.hottest) {
        char degrees[32];
        snprintf(degrees, sizeof degrees, " hottest=%.0f", *count.hottest);
        line += degrees;
    }
    Verdict verdict = {result, line, {}};
    if (options.everything) {
        for (const auto* lines : {&count.criticalLines, &count.lines}) {
            for (const std::string& one : *lines) {
                verdict.further.push_back(withoutBars(one));
            }
        }
    }
    return verdict;
}
