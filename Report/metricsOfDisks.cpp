// Metrics of disks.
#include <algorithm>
#include <map>

#include "Report/metricSeries.h"

using prometheus::MetricType;

template <void (*putOne)(Family&, const Labels&, const Json&)>
static void fillEach(Family& family, const AdapterInReport& in) {
    for (const Json& disk : listIn(in.adapter, "disks")) {
        putOne(family, labelsOfDisk(in, disk), disk);
    }
}

static void fillDiskInfo(Family& family, const AdapterInReport& in) {
    for (const Json& disk : listIn(in.adapter, "disks")) {
        put(family,
            joined(labelsOfDisk(in, disk), {labelOf("type", disk, "type"), labelOf("firmware", disk, "firmware")}), 1);
    }
}

static void fillDiskStates(Family& family, const AdapterInReport& in) {
    static constexpr CodeWord states[] = {{0, "healthy"}, {1, "offline"}, {2, "foreign"}};
    for (const Json& disk : listIn(in.adapter, "disks")) {
        putStates(family, labelsOfDisk(in, disk), states, textIn(disk, "state"));
    }
}

static void fillRoles(Family& family, const AdapterInReport& in) {
    static const char* const roles[] = {"member", "global spare", "dedicated spare", "none"};
    for (const Json& disk : listIn(in.adapter, "disks")) {
        const std::string spare = textIn(disk, "spare");
        const bool member = isTrue(disk, "member");
        const std::string role = !spare.empty() ? spare + " spare" : member ? "member" : "none";
        for (const char* one : roles) {
            put(family, joined(labelsOfDisk(in, disk), {{"role", one}}), role == one ? 1 : 0);
        }
    }
}

// How often each disk was refused, by its id: zero where everything is known.
static void fillDiskUnread(Family& family, const AdapterInReport& in) {
    std::map<KT_U64, double> counts;
    const auto adapter = numberIn(in.adapter, "id");
    for (const Json& refusal : listIn(in.document, "unread")) {
        const std::string call = textIn(refusal, "call");
        const bool ofDisks = call.starts_with("KT_PD_") || call == "KT_Tandem_GetHDMagic";
        if (numberIn(refusal, "adapter") != adapter || !ofDisks || !isRefusal(refusal)) continue;
        for (const Json& id : listIn(refusal, "ids")) {
            if (id.is_number_unsigned()) counts[id.get<KT_U64>()] += 1;
        }
    }
    for (const Json& disk : listIn(in.adapter, "disks")) {
        const auto id = numberIn(disk, "id");
        put(family, labelsOfDisk(in, disk), id ? counts[*id] : 0);
    }
}

// Whether the disk tells of itself at all: what it says goes and comes with it.
static void fillTells(Family& family, const AdapterInReport& in) {
    static const char* const words[] = {"temperature", "poweredOn", "powerCycles",   "reallocated",
                                        "pending",     "wear",      "uncorrectable", "linkErrors"};
    for (const Json& disk : listIn(in.adapter, "disks")) {
        const bool tells = std::any_of(std::begin(words), std::end(words),
                                       [&](const char* word) { return amountIn(disk, word).has_value(); });
        put(family, labelsOfDisk(in, disk), tells ? 1 : 0);
    }
}

static constexpr auto fillAmount = fillEach<putAmount>;
static constexpr auto fillFlag = fillEach<putFlag>;

static constexpr Metric DISK_METRICS[] = {
    {"ktraid_disk_info", MetricType::Gauge, "What the disk is; always 1.", fillDiskInfo},
    {"ktraid_disk_state", MetricType::Gauge, "How the disk stands: 1 for its state.", fillDiskStates},
    {"ktraid_disk_role", MetricType::Gauge, "What the disk is for: 1 for its role.", fillRoles},
    {"ktraid_disk_unread", MetricType::Gauge, "Reading calls that the library refused for the disk.", fillDiskUnread},
    {"ktraid_disk_tells_values", MetricType::Gauge,
     "Whether the disk tells its temperature, hours and errors now; else they have no series.", fillTells},
    {"ktraid_disk_spare_in_use", MetricType::Gauge, "Whether a spare is at work.", fillFlag, "spareInUse"},
    {"ktraid_disk_smart_tripped", MetricType::Gauge, "Whether the disk foretells its failure.", fillFlag,
     "smartTripped"},
    {"ktraid_disk_size_bytes", MetricType::Gauge, "Size of the disk.", fillAmount, "size"},
    {"ktraid_disk_free_bytes", MetricType::Gauge, "What is free of the disk.", fillAmount, "freeSize"},
    {"ktraid_disk_temperature_celsius", MetricType::Gauge, "Temperature of the disk.", fillAmount, "temperature"},
    {"ktraid_disk_wear_ratio", MetricType::Gauge,
     "Used of what a solid state disk can be written; 1 is all that its maker vouches for.", fillAmount, "wear", 0.01},
    {"ktraid_disk_powered_on_seconds_total", MetricType::Counter, "Time under power.", fillAmount, "poweredOn"},
    {"ktraid_disk_power_cycles_total", MetricType::Counter, "How often the disk was switched on.", fillAmount,
     "powerCycles"},
    {"ktraid_disk_reallocated_sectors_total", MetricType::Counter, "Sectors put elsewhere.", fillAmount, "reallocated"},
    {"ktraid_disk_pending_sectors", MetricType::Gauge, "Sectors waiting to be put elsewhere.", fillAmount, "pending"},
    {"ktraid_disk_uncorrectable_errors_total", MetricType::Counter, "Reads that failed for good.", fillAmount,
     "uncorrectable"},
    {"ktraid_disk_link_errors_total", MetricType::Counter, "Errors of the disk's link.", fillAmount, "linkErrors"},
    {"ktraid_disk_link_bytes_per_second", MetricType::Gauge, "Speed that the disk is linked at, 8 bits a byte.",
     fillAmount, "linkSpeed", 0.125},
    {"ktraid_disk_write_cache_enabled", MetricType::Gauge, "Whether the disk's own write cache is on.", fillFlag,
     "writeCache"},
    {"ktraid_disk_locate_led", MetricType::Gauge, "Whether the disk's locate LED is on.", fillFlag, "locateLed"},
};
const std::span<const Metric> diskMetrics = DISK_METRICS;
