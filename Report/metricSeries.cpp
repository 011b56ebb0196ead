#include "Report/metricSeries.h"

#include <algorithm>
#include <cmath>

void put(Family& family, const Labels& labels, double value) {
    prometheus::ClientMetric series;
    series.label = joined(family.common, labels);
    std::string key;
    for (const auto& label : series.label) {
        key += label.value;
        key += '\n'; // which no value has
    }
    if (!family.seen.insert(std::move(key)).second) return;
    if (family.told.type == prometheus::MetricType::Counter) {
        series.counter.value = value;
    } else {
        series.gauge.value = value;
    }
    family.told.metric.push_back(std::move(series));
}

void putStates(Family& family, const Labels& labels, CodeWords words, const std::string& state) {
    const auto putOne = [&](const std::string& word, bool is) {
        put(family, joined(labels, {{"state", word}}), is ? 1 : 0);
    };
    const bool known =
        std::any_of(words.begin(), words.end(), [&](const CodeWord& word) { return state == word.word; });
    for (const CodeWord& word : words) {
        const bool meant = known ? state == word.word : strcmp(word.word, "unknown") == 0;
        putOne(word.word, meant);
    }
    // Left out where the words have it.
    putOne("unknown", !known);
}

void putAmount(Family& family, const Labels& labels, const Json& object) {
    const auto amount = amountIn(object, family.metric.word);
    if (amount && std::isfinite(*amount * family.metric.unit)) put(family, labels, *amount * family.metric.unit);
}

void putFlag(Family& family, const Labels& labels, const Json& object) {
    const bool is = isTrue(object, family.metric.word);
    if (is || isFalse(object, family.metric.word)) put(family, labels, is ? 1 : 0);
}

prometheus::ClientMetric::Label labelOf(const char* label, const Json& object, const char* word) {
    if (const auto number = numberIn(object, word)) return {label, std::to_string(*number)};
    return {label, shown(textIn(object, word))};
}

Labels joined(Labels labels, const Labels& more) {
    labels.insert(labels.end(), more.begin(), more.end());
    return labels;
}

Labels labelsOfDisk(const AdapterInReport& in, const Json& disk) {
    return {labelOf("adapter", in.adapter, "id"),
            labelOf("id", disk, "id"),
            labelOf("serial", disk, "serial"),
            labelOf("model", disk, "model"),
            {"bay", placeOf(disk)}};
}

Labels labelsOfVd(const AdapterInReport& in, const Json& vd) {
    return {labelOf("adapter", in.adapter, "id"), labelOf("id", vd, "id"), labelOf("name", vd, "name")};
}

Labels labelsOfArray(const AdapterInReport& in, const Json& array) {
    return labelsOfVd(in, array);
}
