// What the report reads, finds and says; of documents with words of other values, too.
#include "Report/check.h"
#include "Report/diff.h"
#include "Report/document.h"
#include "Report/eventCursor.h"
#include "Report/losses.h"
#include "Report/map.h"
#include "Report/metrics.h"
#include "Report/page.h"
#include "Report/problems.h"
#include "Report/show.h"
#include "Report/wait.h"
#include "past.h"

static const char* const REPORT_PASTS[] = {
    "2e7d 1c46 c768 73f8 5092 cd13 ", "7a31 3df8 85b6 c968 99ee 7958 ", "a9fa ee26 2565 5bb1 8e2e 767d ",
    "550b 3cf3 876d 1de4 526b d3fd ", "1acf 349e 038b 048b da11 ecce ", "6f2c b902 f0a1 1a59 04ce 91c7 ",
    "c84c 45a7 82b5 6200 d1a3 e960 ", "9330 f4be 54c2 abb0 93ea 602c ", "a93b b439 136c 8f3e 00ba e858 ",
    "8472 557d d0e2 38c7 8486 4213 ", "f481 99ea c88c 56ae 06bd 4cc2 ", "27f8 35fe e726 653d 5800 73f6 ",
    "3fc8 4684 07f3 f0e3 8727 1630 ", "1c0a c10a 2de5 5e1f dffe ed7f ", "a726 3628 ef97 7d66 f7f2 92b7 ",
    "f1c0 fa09 8572 4fb6 5b05 a198 ", "e078 2d21 f7c2 62fe 7ec3 1fef ", "c448 65a4 2266 dab6 9fa8 09c8 ",
    "f723 644d cb1e 3c34 f326 6920 ", "b2d9 ccb4 a7ed 26fd ec72 d7bf ",
};

// Reports tell when and where they were made.
static time_t stoppedAt;
extern "C" time_t time(time_t*) noexcept {
    return stoppedAt;
}
extern "C" int gethostname(char* name, size_t size) noexcept {
    snprintf(name, size, "host");
    return 0;
}

// Some value in the document, and what it lies in; behind a list or an object, one of its items.
static Json& anyOf(Json& document) {
    Json* at = &document;
    while (at->is_structured() && !at->empty() && (at == &document || below(8) != 0)) {
        auto item = at->begin();
        std::advance(item, below(at->size()));
        at = &*item;
    }
    return *at;
}

// Values of all kinds in the place of others.
static void spoil(Json& document) {
    static const Json values[] = {
        nullptr, -1, 0,         1,       2,         97,        1.5,           0xFFFFFFFFFFFFFFFF, true,
        false,   "", "optimal", "x\x01", "offline", "running", Json::array(), Json::object(),     {1, "a", nullptr}};
    for (size_t times = below(30); times > 0; --times) {
        Json value = values[below(std::size(values))];
        if (below(4) == 0) value = anyOf(document);
        Json& place = anyOf(document);
        if (place.is_number() && below(2) == 0) value = below(120);
        if (&place != &document) place = value;
    }
}

struct Reports : Past {
    Awaiting awaiting;
    Json before;
    const std::string keptCursor = "../cursor"; // which no digest is of

    template <class Code>
    void attempt(Code code) {
        try {
            code();
        } catch (const LoadFailure& failure) {
            text += failure.message + "\n";
        } catch (const ReadFailure& failure) {
            text += failure.message + "\n";
        } catch (const CursorFailure& failure) {
            text += failure.message + "\n";
        }
    }

    // Some numbers are others, and some are none.
    Json thresholds() {
        Json found = defaultThresholds();
        for (Json& number : found)
            if (below(12) == 0) number = below(100);
        if (below(20) == 0) found["disk-hot"] = "hot";
        if (below(20) == 0) found["none"] = 1;
        writeText("limits", found.dump());
        attempt([&] { found = loadThresholds("limits"); });
        return found;
    }

    Json read() {
        ReadOptions options;
        const size_t kind = below(12);
        options.records = kind < 4;
        options.attributes = kind != 5;
        options.onlyEvents = kind == 6;
        options.onlyLayout = kind == 7;
        if (kind == 8) options.adapter = static_cast<int>(below(4));
        stoppedAt = static_cast<time_t>(run.now / 1000 + below(10));
        Machine machine;
        runHere([&] { attempt([&] { machine = readMachine(options); }); });
        const Json limits = thresholds();
        std::ostringstream written;
        writeDocument(written, machine, limits);
        text += written.str();
        return documentOf(machine, limits);
    }

    void view(const std::vector<Report>& reports, const std::vector<LeftOut>& leftOut) {
        std::ostringstream to;
        const Look look = {below(2) == 0, static_cast<unsigned>(below(3) * 60)};
        writeShow(to, look, reports, below(2) == 0);
        writeMap(to, look, reports);
        writeMapAsCsv(to, reports);
        CheckOptions options;
        for (const ProblemRule& rule : problemRules()) {
            const size_t named = below(60);
            if (named < 2) (named == 0 ? options.only : options.ignore).push_back(rule.name);
        }
        options.everything = below(2) == 0;
        const Verdict verdict = checkReports({reports, leftOut}, options);
        to << verdict.result << " " << verdict.line << "\n";
        for (const std::string& line : verdict.further)
            to << line << "\n";
        MetricsSource source = {reports, reports.size() > 1, 0.25, leftOut};
        leaveOutSameHosts(source);
        writeMetrics(to, source);
        std::vector<std::string> machines;
        for (const Report& report : reports)
            machines.push_back(machineOfPage(report));
        for (const LeftOut& left : source.leftOut)
            to << left.path << left.message << "\n";
        to << (below(8) == 0 ? pageOf(machines, {"left <out>"}) : machines.front()) << "\n";
        text += to.str();
    }

    void compare(const Json& document) {
        std::ostringstream to;
        const std::vector<Change> changes = changesBetween(before, document, below(2) == 0);
        to << changesAsJson(changes).dump(1, ' ', true) << "\n";
        writeChanges(to, changes);
        writeChanges(to, takeLosses(changes));
        const EventWords words = {below(3) == 0, below(3) == 0, below(3) == 0};
        const KT_U64 since = below(40);
        runHere([&] {
            attempt([&] {
                EventCursor cursor = openCursor(keptCursor);
                tellEvents(cursor, eventsAfter(document, cursor.told, since, words));
            });
        });
        if (below(8) == 0) writeText(keptCursor, R"({"cursor": 1, "pending": {"text": "lines\n", "told": {"#0": 3}}})");
        if (below(8) == 0) writeText(keptCursor, fileText(keptCursor).substr(0, below(200)));
        if (below(8) == 0) std::filesystem::remove(keptCursor);
        const size_t of = below(4);
        const size_t adapter = below(2);
        Awaited awaited = {std::nullopt, adapter, below(3)};
        if (of < 3) awaited.of = static_cast<ActivityOf>(of);
        if (below(4) == 0) awaiting.clear();
        lookAgain(awaiting, document, awaited);
        to << isThere(document, awaited) << static_cast<int>(stateOf(awaiting)) << "\n";
        to << writeProgress(to, {below(2) == 0, 100}, awaiting) << "\n";
        text += to.str();
    }

    // The adapters, or files of the documents, of which one may be no report.
    void look(const std::vector<Json>& documents) {
        std::vector<std::string> files;
        for (const Json& document : documents) {
            files.push_back("report" + std::to_string(files.size()));
            std::ostringstream written;
            layOut(written, document);
            std::string bytes = written.str();
            const size_t kind = below(20);
            const size_t at = below(bytes.size());
            if (kind == 0) bytes.resize(at);
            if (kind == 1) bytes[at] = static_cast<char>(below(256));
            writeText(files.back(), bytes);
        }
        attempt([&] {
            const Json limits = thresholds();
            ReadableReports gathered;
            runHere([&] { attempt([&] { gathered = gatherReadable(files, {}, limits); }); });
            if (gathered.reports.empty()) return;
            view(gathered.reports, gathered.leftOut);
            for (const Report& report : gathered.reports) {
                compare(report.document);
                before = report.document;
            }
        });
        for (const std::string& file : files)
            std::filesystem::remove(file);
    }
};

TEST_P(Reports, SayWhatTheySaid) {
    begin(GetParam());
    for (int step = 1; step <= 6; ++step) {
        happen(below(20));
        const Json document = read();
        Json other = document;
        spoil(other);
        if (below(2) == 0) other["host"] = "other";
        const size_t kind = below(4);
        if (kind == 0) look({});
        if (kind == 1) look({document});
        if (kind == 2) look({other});
        if (kind == 3) look({document, other});
        note();
    }
    Past::compare(REPORT_PASTS);
}
INSTANTIATE_TEST_SUITE_P(Seeds, Reports, testing::Range(0U, seeds(std::size(REPORT_PASTS))));
