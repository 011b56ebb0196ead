// How the families of metrics are put together. Each is a row of a table: its name, what it means, and how its series
// are found in an adapter.
#pragma once

#include <prometheus/metric_family.h>
#include <set>
#include <span>

#include "Report/look.h"
#include "Report/words.h"

using Labels = std::vector<prometheus::ClientMetric::Label>;

struct Metric;

// One family while it is filled.
struct Family {
    const Metric& metric;
    prometheus::MetricFamily told;
    Labels common; // of the report that is looked at: its host, where there are several
    std::set<std::string> seen;
};

// One adapter of a document.
struct AdapterInReport {
    const Json& document;
    const Json& adapter;
};

struct Metric {
    const char* name;
    prometheus::MetricType type;
    const char* help;
    void (*fill)(Family& family, const AdapterInReport& in);
    const char* word = nullptr; // what it is in the document, for the functions that serve several families
    double unit = 1;            // what the document's number is multiplied with
};

// A series; one whose labels are there already is left out, so that the text stays valid whatever a file says.
void put(Family& family, const Labels& labels, double value);
// A series a word, 1 for that which is so and 0 for the others; "unknown" stands for any other.
void putStates(Family& family, const Labels& labels, CodeWords words, const std::string& state);
// The number under the family's word, where the object has it.
void putAmount(Family& family, const Labels& labels, const Json& object);
// 1 or 0 for true or false under the family's word, where the object has it.
void putFlag(Family& family, const Labels& labels, const Json& object);

// A label whose value is a text or a number of the object, "" without one; texts are made safe to print.
prometheus::ClientMetric::Label labelOf(const char* label, const Json& object, const char* word);
Labels joined(Labels labels, const Labels& more);
Labels labelsOfDisk(const AdapterInReport& in, const Json& disk); // adapter, id, serial, model, bay
Labels labelsOfVd(const AdapterInReport& in, const Json& vd);     // adapter, id, name
Labels labelsOfArray(const AdapterInReport& in, const Json& array);

extern const std::span<const Metric> adapterMetrics;
extern const std::span<const Metric> diskMetrics;
extern const std::span<const Metric> volumeMetrics;
extern const std::span<const Metric> partMetrics;
