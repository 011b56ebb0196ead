// Metrics of arrays and virtual disks.
#include <algorithm>

#include "Report/metricSeries.h"

using prometheus::MetricType;

static void fillVdInfo(Family& family, const AdapterInReport& in) {
    for (const VdInArray& one : virtualDisksOf(in.adapter)) {
        put(family,
            joined(labelsOfVd(in, *one.vd), {labelOf("level", *one.vd, "level"), labelOf("array", *one.vd, "array")}),
            1);
    }
}

static void fillVdStates(Family& family, const AdapterInReport& in) {
    for (const VdInArray& one : virtualDisksOf(in.adapter)) {
        putStates(family, labelsOfVd(in, *one.vd), vdStatusWords, textIn(*one.vd, "status"));
    }
}

static void fillVdAmount(Family& family, const AdapterInReport& in) {
    for (const VdInArray& one : virtualDisksOf(in.adapter)) {
        putAmount(family, labelsOfVd(in, *one.vd), *one.vd);
    }
}

static void fillWriteBack(Family& family, const AdapterInReport& in) {
    for (const VdInArray& one : virtualDisksOf(in.adapter)) {
        const std::string cache = textIn(*one.vd, "cacheInForce");
        if (cache == "on" || cache == "off") put(family, labelsOfVd(in, *one.vd), cache == "on" ? 1 : 0);
    }
}

static void putMissing(Family& family, const Labels& labels, const Json& object) {
    const Json& disks = in(object, "disks");
    if (!disks.is_array()) return;
    const auto missing = std::count_if(disks.begin(), disks.end(), [](const Json& disk) { return disk.is_null(); });
    put(family, labels, static_cast<double>(missing));
}

static void fillVdMissing(Family& family, const AdapterInReport& in) {
    for (const VdInArray& one : virtualDisksOf(in.adapter)) {
        putMissing(family, labelsOfVd(in, *one.vd), *one.vd);
    }
}

template <void (*putOne)(Family&, const Labels&, const Json&)>
static void fillEachArray(Family& family, const AdapterInReport& in) {
    for (const Json& array : listIn(in.adapter, "arrays")) {
        putOne(family, labelsOfArray(in, array), array);
    }
}

static void putArrayInfo(Family& family, const Labels& labels, const Json& array) {
    put(family, joined(labels, {labelOf("level", array, "level")}), 1);
}

static void putArrayStates(Family& family, const Labels& labels, const Json& array) {
    static constexpr CodeWord states[] = {{0, "functional"}, {1, "disk missing"}, {2, "offline"}};
    putStates(family, labels, states, statusOfArray(array));
}

static void putSpares(Family& family, const Labels& labels, const Json& array) {
    const Json& spares = in(array, "spares");
    if (spares.is_array()) put(family, labels, static_cast<double>(spares.size()));
}

static constexpr Metric VOLUME_METRICS[] = {
    {"ktraid_virtual_disk_info", MetricType::Gauge, "What the virtual disk is; always 1.", fillVdInfo},
    {"ktraid_virtual_disk_state", MetricType::Gauge, "Status of the virtual disk: 1 for its status.", fillVdStates},
    {"ktraid_virtual_disk_size_bytes", MetricType::Gauge, "Size of the virtual disk.", fillVdAmount, "size"},
    {"ktraid_virtual_disk_disks", MetricType::Gauge, "Disks that the virtual disk is made of.", fillVdAmount,
     "members"},
    {"ktraid_virtual_disk_missing_disks", MetricType::Gauge, "Places of the virtual disk without a disk.",
     fillVdMissing},
    {"ktraid_virtual_disk_write_back", MetricType::Gauge, "Whether writes are cached now.", fillWriteBack},
    {"ktraid_array_info", MetricType::Gauge, "What the array is; always 1.", fillEachArray<putArrayInfo>},
    {"ktraid_array_state", MetricType::Gauge, "Status of the array: 1 for its status.", fillEachArray<putArrayStates>},
    {"ktraid_array_size_bytes", MetricType::Gauge, "All space of the array.", fillEachArray<putAmount>, "size"},
    {"ktraid_array_free_bytes", MetricType::Gauge, "What is free of it.", fillEachArray<putAmount>, "freeSize"},
    {"ktraid_array_missing_disks", MetricType::Gauge, "Places of the array without a disk.", fillEachArray<putMissing>},
    {"ktraid_array_spares", MetricType::Gauge, "Spares that stand by for this array alone.", fillEachArray<putSpares>},
};
const std::span<const Metric> volumeMetrics = VOLUME_METRICS;
