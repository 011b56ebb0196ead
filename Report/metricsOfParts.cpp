// Metrics of enclosures and what is in them. What a slot says follows from its disk and is told there.
#include "Report/metricSeries.h"

using prometheus::MetricType;

static Labels labelsOf(const AdapterInReport& in, const Json& enclosure) {
    return {labelOf("adapter", in.adapter, "id"), labelOf("id", enclosure, "id")};
}

static void fillEnclosureInfo(Family& family, const AdapterInReport& in) {
    for (const Json& enclosure : listIn(in.adapter, "enclosures")) {
        put(family,
            joined(labelsOf(in, enclosure),
                   {labelOf("vendor", enclosure, "vendor"), labelOf("model", enclosure, "product"),
                    labelOf("firmware", enclosure, "revision")}),
            1);
    }
}

static void fillEnclosureStates(Family& family, const AdapterInReport& in) {
    static constexpr CodeWord states[] = {{0, "ok"}, {1, "unstable"}};
    for (const Json& enclosure : listIn(in.adapter, "enclosures")) {
        putStates(family, labelsOf(in, enclosure), states, textIn(enclosure, "status"));
    }
}

template <class Each>
static void eachElement(const AdapterInReport& in, Each each) {
    for (const Json& enclosure : listIn(in.adapter, "enclosures")) {
        for (const Json& element : listIn(enclosure, "elements")) {
            const std::string type = textIn(element, "type");
            if (type == "dev" || type == "arydev") continue;
            each(Labels{labelOf("adapter", in.adapter, "id"), labelOf("enclosure", enclosure, "id"),
                        labelOf("type", element, "type"), labelOf("id", element, "element"),
                        labelOf("sub_enclosure", element, "subEnclosure"), labelOf("name", element, "text")},
                 element);
        }
    }
}

static void fillElementStates(Family& family, const AdapterInReport& in) {
    eachElement(in, [&](const Labels& labels, const Json& element) {
        putStates(family, labels, elementStatusWords, textIn(element, "status"));
    });
}

static void fillElementAmount(Family& family, const AdapterInReport& in) {
    eachElement(in, [&](const Labels& labels, const Json& element) { putAmount(family, labels, element); });
}

static constexpr Metric PART_METRICS[] = {
    {"ktraid_enclosure_info", MetricType::Gauge, "What the enclosure is; always 1.", fillEnclosureInfo},
    {"ktraid_enclosure_state", MetricType::Gauge, "Status of the enclosure: 1 for its status.", fillEnclosureStates},
    {"ktraid_element_state", MetricType::Gauge, "Status of a part of an enclosure: 1 for its status.",
     fillElementStates},
    {"ktraid_element_temperature_celsius", MetricType::Gauge, "What a temperature sensor says.", fillElementAmount,
     "temperature"},
    {"ktraid_element_volts", MetricType::Gauge, "What a voltage sensor says.", fillElementAmount, "voltage"},
    {"ktraid_element_fan_rpm", MetricType::Gauge, "Speed of a fan in revolutions a minute.", fillElementAmount,
     "rotation"},
};
const std::span<const Metric> partMetrics = PART_METRICS;
