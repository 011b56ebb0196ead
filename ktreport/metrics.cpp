// ktreport metrics: all of it as numbers for Prometheus.
#include <cerrno>
#include <chrono>
#include <iostream>
#include <sstream>
#include <sys/stat.h>

#include "Public/wholeFile.h"
#include "Report/document.h"
#include "Report/metrics.h"
#include "ktreport/commands.h"

// What keeps the adapters from being read becomes a number too; alerts go by it.
static void readNow(Invocation& invocation, const Json& thresholds, MetricsSource& source) {
    ReadOptions options;
    options.attributes = false;
    const auto start = std::chrono::steady_clock::now();
    try {
        const Machine machine = readMachine(options);
        source.reports.push_back({"", documentOf(machine, thresholds)});
        if (!machine.opened) {
            invocation.result = say("the library does not start: " + machine.refusals.front().text, RESULT_UNREADABLE);
        }
    } catch (const ReadFailure& failure) {
        invocation.result = say(failure.message, RESULT_UNREADABLE);
    }
    source.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

static void readFiles(Invocation& invocation, const Json& thresholds, MetricsSource& source) {
    source.fromFiles = true;
    ReadableReports gathered = gatherReadable(invocation.from, {}, thresholds, LARGEST_REPORT_OF_METRICS);
    source.reports = std::move(gathered.reports);
    source.leftOut = std::move(gathered.leftOut);
    leaveOutSameHosts(source);
    sayLeftOut(invocation, source.leftOut);
}

// Whoever collects it is another user; whoever reads meanwhile sees the old file or the new one.
static void replaceFile(const std::string& path, const std::string& text) {
    StagedFile staged;
    errno = 0;
    WroteFile wrote = stageWholeFile(path, text, Existing::Replace, staged);
    if (wrote == WroteFile::Yes && chmod(staged.unnamed.c_str(), 0644) != 0) {
        dropStagedFile(staged);
        wrote = WroteFile::NotWritten;
    }
    if (wrote == WroteFile::Yes) wrote = placeStagedFile(staged);
    if (wrote != WroteFile::Yes) {
        throw LoadFailure{path + ": cannot be written" + (errno == 0 ? "" : std::string(": ") + strerror(errno))};
    }
}

static void runMetrics(Invocation& invocation, bool named, const std::string& file) {
    if (named && file.empty()) throw UsageFailure{"-o: the file's name is empty"};
    const Json thresholds = loadThresholds(invocation.thresholds);
    MetricsSource source;
    if (invocation.from.empty()) {
        readNow(invocation, thresholds, source);
    } else {
        readFiles(invocation, thresholds, source);
    }
    if (!named) {
        writeMetrics(std::cout, source);
        return;
    }
    std::ostringstream text;
    writeMetrics(text, source);
    replaceFile(file, text.str());
}

void addMetrics(const Command& app, Invocation& invocation) {
    const Command metrics = app.addCommand("metrics", "Print everything as numbers for Prometheus");
    addFrom(metrics, invocation);
    addThresholds(metrics, invocation);
    auto file = std::make_shared<std::string>();
    const Option named = metrics.addOption("-o,--output", *file, "Replace this file, as a whole, instead of printing");
    metrics.onGiven([&invocation, named, file] { runMetrics(invocation, named.isGiven(), *file); });
}
