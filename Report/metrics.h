// The view for Prometheus: the documents as metrics in its text format, for node-exporter's textfile collector.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "Report/load.h"

// Bytes of the largest file whose metrics are told beside those of others.
inline constexpr size_t LARGEST_REPORT_OF_METRICS = size_t{64} << 20;

// What the metrics are of.
struct MetricsSource {
    std::vector<Report> reports;
    bool fromFiles = false;        // then every series carries its report's host
    std::optional<double> seconds; // that the reading took; none: it was not done now
    std::vector<LeftOut> leftOut;
};

// Moves reports whose host a report before them has as well to source.leftOut: their series could not be told apart.
void leaveOutSameHosts(MetricsSource& source);

// Writes all series, a family behind the other; no two have the same name and labels. An object that is there always
// has its series; what only some adapters, disks or batteries have makes series where it is.
void writeMetrics(std::ostream& to, const MetricsSource& source);
