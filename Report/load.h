// Documents that were written before: --from FILE.
#pragma once

#include <vector>

#include "Report/json.h"
#include "Report/reading.h"

// A document and what it is from: a file's name, or "" for the adapters of this machine now.
struct Report {
    std::string source;
    Json document;
};

// A file that is no report, or cannot be read; the message names it.
struct LoadFailure {
    std::string message;
};

// Bytes of the largest file that is taken.
inline constexpr size_t LARGEST_REPORT = size_t{256} << 20;

// Reads one file's JSON, "-" is standard input; what: a word for what it should be, in messages. Throws LoadFailure.
Json loadJson(const std::string& path, const std::string& what);

// Reads one file, "-" is standard input. Throws LoadFailure for what is no report, of a later version, cut short or of
// more than `most` bytes.
Report loadReport(const std::string& path, size_t most = LARGEST_REPORT);

// A file of thresholds over the program's own ones: `path`, or /etc/ktreport.json, where there is one, for an empty
// path. Throws LoadFailure.
Json loadThresholds(const std::string& path);

// A report of a file, with its problems looked for anew. Throws LoadFailure, for a file of more than `most` bytes too.
Report reportOfFile(const std::string& path, const ReadOptions& options, const Json& thresholds,
                    size_t most = LARGEST_REPORT);
// The adapters of this machine now. Throws ReadFailure.
Report reportNow(const ReadOptions& options, const Json& thresholds);

// A file, among others, that is no report; the message names it.
struct LeftOut {
    std::string path;
    std::string message;
};

struct ReadableReports {
    std::vector<Report> reports;
    std::vector<LeftOut> leftOut;
};

// The adapters now when `from` is empty, else the files; one that is no report, or has more than `most` bytes, keeps
// none of the others away. Throws LoadFailure where there is no other, and ReadFailure.
ReadableReports gatherReadable(const std::vector<std::string>& from, const ReadOptions& options, const Json& thresholds,
                               size_t most = LARGEST_REPORT);

// The adapters now when `from` is empty, else each of the files; their problems are looked for anew.
std::vector<Report> gatherReports(const std::vector<std::string>& from, const ReadOptions& options,
                                  const Json& thresholds);
