// Metrics of adapters, of their batteries and of what goes on.
#include <algorithm>

#include "Report/activities.h"
#include "Report/metricSeries.h"

using prometheus::MetricType;

static Labels adapterLabels(const AdapterInReport& in) {
    return {labelOf("adapter", in.adapter, "id")};
}

static void fillAdapterUp(Family& family, const AdapterInReport& in) {
    put(family, adapterLabels(in), in.adapter.contains("type") ? 1 : 0);
}

static void fillAdapterInfo(Family& family, const AdapterInReport& in) {
    const Json& versions = ::in(in.adapter, "versions");
    put(family,
        joined(adapterLabels(in), {labelOf("serial", in.adapter, "serial"), labelOf("model", in.adapter, "model"),
                                   labelOf("type", in.adapter, "type"), labelOf("firmware", versions, "firmware"),
                                   labelOf("driver", versions, "driver")}),
        1);
}

// Refusals of one adapter. Things that it does not have at all do not count.
static void fillUnreadCalls(Family& family, const AdapterInReport& in) {
    const auto id = numberIn(in.adapter, "id");
    double count = 0;
    for (const Json& refusal : listIn(in.document, "unread")) {
        if (numberIn(refusal, "adapter") == id && isRefusal(refusal)) ++count;
    }
    put(family, adapterLabels(in), count);
}

static void fillAdapterUnread(Family& family, const AdapterInReport& in) {
    const auto id = numberIn(in.adapter, "id");
    for (const Json& refusal : listIn(in.document, "unread")) {
        if (numberIn(refusal, "adapter") != id || !isRefusal(refusal)) continue;
        const auto items = static_cast<double>(std::max<size_t>(listIn(refusal, "ids").size(), 1));
        put(family, joined(adapterLabels(in), {labelOf("call", refusal, "call"), labelOf("status", refusal, "status")}),
            items);
    }
}

static void fillImages(Family& family, const AdapterInReport& in) {
    const Json& images = ::in(in.adapter, "images");
    if (!images.is_object()) return;
    for (const auto& [name, sound] : images.items()) {
        if (sound.is_boolean())
            put(family, joined(adapterLabels(in), {{"image", shown(name)}}), sound.get<bool>() ? 1 : 0);
    }
}

static void fillAutoRebuild(Family& family, const AdapterInReport& in) {
    const auto setting = numberIn(::in(in.adapter, "config"), "AutoRebuildOn");
    if (setting && *setting <= 1) put(family, adapterLabels(in), static_cast<double>(*setting));
}

static void fillNewestEvent(Family& family, const AdapterInReport& in) {
    const Json& events = listIn(in.adapter, "events");
    if (events.empty()) return;
    if (const auto number = numberIn(events.back(), "SequenceNo")) {
        put(family, adapterLabels(in), static_cast<double>(*number));
    }
}

static void fillCount(Family& family, const AdapterInReport& in) {
    const Json& list = ::in(in.adapter, family.metric.word);
    if (list.is_array()) put(family, adapterLabels(in), static_cast<double>(list.size()));
}

static void fillVds(Family& family, const AdapterInReport& in) {
    const bool told = ::in(in.adapter, "arrays").is_array() || ::in(in.adapter, "virtualDisks").is_array();
    if (told) put(family, adapterLabels(in), static_cast<double>(virtualDisksOf(in.adapter).size()));
}

static bool hasBattery(const Json& battery) {
    return (numberIn(battery, "status").value_or(0) & KT_BBU_PRESENT) != 0;
}

// An adapter without a place for a battery misses none.
static void fillBattery(Family& family, const AdapterInReport& in) {
    const Json& battery = ::in(in.adapter, "battery");
    const Json& can = listIn(in.adapter, "advancedFeatures");
    const bool hasPlace = std::find(can.begin(), can.end(), "bbu") != can.end();
    if (battery.is_object() || (hasPlace && isFalse(in.adapter, "battery"))) {
        put(family, adapterLabels(in), hasBattery(battery) ? 1 : 0);
    }
}

static void fillCharging(Family& family, const AdapterInReport& in) {
    const Json& battery = ::in(in.adapter, "battery");
    if (!hasBattery(battery)) return;
    put(family, adapterLabels(in), (numberIn(battery, "status").value_or(0) & KT_BBU_CHARGING) != 0 ? 1 : 0);
}

template <unsigned sensor> // a KT_SENSOR_*; 0: needs none
static void fillBatteryAmount(Family& family, const AdapterInReport& in) {
    const Json& battery = ::in(in.adapter, "battery");
    const auto sensors = numberIn(battery, "sensorSupport").value_or(0);
    if (hasBattery(battery) && (sensor == 0 || (sensors & sensor) != 0)) putAmount(family, adapterLabels(in), battery);
}

static Labels adapterLabels(const AdapterInReport& in, const Going& going) {
    static const char* const kinds[] = {"virtual disk", "array", "disk"};
    return joined(adapterLabels(in), {{"object", kinds[static_cast<size_t>(going.of)]},
                                      {"id", std::to_string(going.id)},
                                      {"object_name", going.title},
                                      {"kind", going.kind}});
}

static void fillProgress(Family& family, const AdapterInReport& in) {
    for (const Going& going : activitiesOf(in.adapter)) {
        if (going.percent) put(family, adapterLabels(in, going), static_cast<double>(*going.percent) / 100);
    }
}

static void fillActivityStates(Family& family, const AdapterInReport& in) {
    for (const Going& going : activitiesOf(in.adapter)) {
        putStates(family, adapterLabels(in, going), stateWords, going.state);
    }
}

static void fillRemaining(Family& family, const AdapterInReport& in) {
    for (const Going& going : activitiesOf(in.adapter)) {
        if (going.secondsLeft) put(family, adapterLabels(in, going), static_cast<double>(*going.secondsLeft));
    }
}

static constexpr Metric ADAPTER_METRICS[] = {
    {"ktraid_adapter_up", MetricType::Gauge, "Whether the adapter answers.", fillAdapterUp},
    {"ktraid_adapter_info", MetricType::Gauge, "What the adapter is; always 1.", fillAdapterInfo},
    {"ktraid_adapter_unread", MetricType::Gauge, "Reading calls that the library refused for the adapter.",
     fillUnreadCalls},
    {"ktraid_unread", MetricType::Gauge, "Items that a call refused to tell of; 1 for a list as a whole.",
     fillAdapterUnread},
    {"ktraid_adapter_image_sound", MetricType::Gauge, "Whether an image in the adapter's flash is sound.", fillImages},
    {"ktraid_adapter_auto_rebuild_enabled", MetricType::Gauge, "Whether automatic rebuild is on.", fillAutoRebuild},
    {"ktraid_adapter_event_sequence", MetricType::Gauge, "Number of the newest event in the adapter's log.",
     fillNewestEvent},
    {"ktraid_adapter_disks", MetricType::Gauge, "Disks that the adapter lists.", fillCount, "disks"},
    {"ktraid_adapter_virtual_disks", MetricType::Gauge, "Virtual disks that the adapter lists.", fillVds},
    {"ktraid_battery_present", MetricType::Gauge, "Whether the adapter, which has a place for a battery, has one.",
     fillBattery},
    {"ktraid_battery_charging", MetricType::Gauge, "Whether the battery is being charged.", fillCharging},
    {"ktraid_battery_charge_ratio", MetricType::Gauge, "Charge of the battery, 0 to 1.",
     fillBatteryAmount<KT_SENSOR_CAPACITY>, "percentage", 0.01},
    {"ktraid_battery_capacity_joules", MetricType::Gauge, "Energy in the battery.",
     fillBatteryAmount<KT_SENSOR_CAPACITY>, "capacity", 36}, // from hundredths of a watt-hour
    {"ktraid_battery_temperature_celsius", MetricType::Gauge, "Temperature of the battery.",
     fillBatteryAmount<KT_SENSOR_TEMPERATURE>, "temperature", 0.01},
    {"ktraid_battery_volts", MetricType::Gauge, "Voltage of the battery.", fillBatteryAmount<KT_SENSOR_VOLTAGE>,
     "voltage", 0.001},
    {"ktraid_battery_full_seconds", MetricType::Gauge, "Time until the battery is charged.", fillBatteryAmount<0>,
     "minutesToFull", 60},
    {"ktraid_battery_charges_total", MetricType::Counter, "Charges of the battery so far.", fillBatteryAmount<0>,
     "rechargeCycle"},
    {"ktraid_activity_progress_ratio", MetricType::Gauge, "How far an activity is, 0 to 1.", fillProgress},
    {"ktraid_activity_state", MetricType::Gauge, "How an activity is: 1 for its state.", fillActivityStates},
    {"ktraid_activity_remaining_seconds", MetricType::Gauge,
     "Time that a running activity takes yet, as the log tells.", fillRemaining},
};
const std::span<const Metric> adapterMetrics = ADAPTER_METRICS;
