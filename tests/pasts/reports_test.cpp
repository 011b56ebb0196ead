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

static const char* const PASTS[] = {
    "d167 1dee a71d 3975 0c6d dedf ",
    "3e91 c5eb 8562 e2aa 0dc5 cb8f ",
    "ae31 2fc5 d523 df1b 446c 9d2d ",
    "89a1 d385 7449 0ec7 1081 1a29 ",
    "6969 44ba b687 5522 e7c1 ddf9 ",
    "1590 9033 2f0a 9fab cba5 4138 ",
    "f819 01f2 c0bb d0da 6d37 a16e ",
    "b100 1b40 63b5 32ae ac0c 5cd0 ",
    "8f76 8cce 2a50 18f4 571d 2577 ",
    "efe2 9eeb f311 27a9 b009 4d04 ",
    "04f4 1988 7f0b 3ee1 8704 3eae ",
    "feb3 909f f0d3 d8d2 62ad d4a1 ",
    "986f c26f bb8d 700e c1f3 28bf ",
    "76cf 5554 c555 da4b 52de b813 ",
    "2f22 e965 0779 5616 0911 f643 ",
    "ad65 42f5 29cf 47f9 fd74 688e ",
    "376d 04a0 ae77 ff7d da4c d494 ",
    "da7d 0437 567e 3870 911c a61d ",
    "5806 4563 dfc1 194f 3bed f366 ",
    "1576 5204 4251 823a ac62 796f ",
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
        happen(below(50));
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
    EXPECT_EQ(digests, PASTS[GetParam()]);
}
INSTANTIATE_TEST_SUITE_P(Seeds, Reports, testing::Range(0U, 20U));
