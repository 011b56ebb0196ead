#include "commands.h"
#include "devices/battery.h"
#include "state/simClock.h"
#include "statusRows.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>

using namespace sim;

std::string clockText(Store& store);       // clock.cpp
std::string faultText(const Fault& fault); // fault.cpp

static const size_t ROWS = 16;           // of a kind of thing, so that an adapter fits a screen
static const size_t ROWS_IN_A_CROWD = 2; // of those that are well, when there are many adapters: where not all are
static const size_t MANY_ADAPTERS = 3;
static const size_t EVERY_ROW = 0x7FFFFFFF;

struct StatusOptions {
    bool all = false;
    int adapter = -1; // -1 = every one
};

struct AdapterStatus {
    KT_U8 adapter;
    _Adapter_Info info;
    std::vector<StatusRow> rows; // the most urgent first
};

static std::string healthNotes(const Context& context) {
    std::string notes;
    _BBU_Info battery = {};
    if (getBattery(context, battery) == KT_OK && battery.status != 0) {
        notes += ", battery " + std::to_string(battery.percentage) + "%";
    } else {
        notes += ", no battery";
    }
    if (const auto last = lastRow(context.store, context.adapter, KIND_EVENT))
        notes += ", last event " + std::to_string(*last);
    return notes;
}

// "8 disks, 1 array, 2 virtual disks"
static std::string contentsText(const Context& context, const _Adapter_Info& info) {
    const std::string arrays = info.MaxDiskGroup ? countText(count<_DG_Info>(context), "array") + ", " : "";
    return countText(count<_HD_Info>(context), "disk") + ", " + arrays +
           countText(count<_LD_Info>(context), "virtual disk");
}

static void printHead(const Context& context, const _Adapter_Info& info) {
    printf("\nAdapter %u  %s (%s)%s\n", context.adapter, printable(info.ModelNumber, 20).c_str(),
           info.MaxDiskGroup ? "array-based" : "LD-based", healthNotes(context).c_str());
    printf("  %s\n", contentsText(context, info).c_str());
}

// All that is said of an adapter that is well and at rest, when there are many.
static void printBrief(const Context& context, const _Adapter_Info& info) {
    printf("Adapter %-3u %-12s all well: %s (-a %u shows them)\n", context.adapter,
           printable(info.ModelNumber, 20).c_str(), contentsText(context, info).c_str(), context.adapter);
}

static const char* nameOf(Thing thing) {
    switch (thing) {
    case Thing::Array:
        return "array";
    case Thing::Vd:
        return "virtual disk";
    case Thing::Disk:
        return "disk";
    case Thing::Port:
        return "port";
    default:
        return "enclosure";
    }
}

// What is cut off is what is best.
static void printRows(const std::vector<StatusRow>& rows, size_t rowsOfUrgent, size_t rowsOfWell) {
    std::map<Thing, size_t> shown;
    std::map<Thing, size_t> cut;
    std::map<Thing, size_t> wrong;
    for (const StatusRow& row : rows) {
        if (shown[row.thing] < (row.urgency == Urgency::Well ? rowsOfWell : rowsOfUrgent)) {
            ++shown[row.thing];
            printf("%s\n", row.text.c_str());
        } else {
            ++cut[row.thing];
            wrong[row.thing] += row.urgency == Urgency::Wrong ? 1 : 0;
        }
    }
    for (const auto& [thing, more] : cut) {
        const std::string bad = wrong[thing] ? ", " + std::to_string(wrong[thing]) + " of them not well" : "";
        printf("    ... %zu more %s%s%s (--all shows them)\n", more, nameOf(thing), more == 1 ? "" : "s", bad.c_str());
    }
}

static void printFaults(Store& store) {
    bool any = false;
    forEach<Fault>(store, ADAPTER_GLOBAL, 0, [&](KT_U64, const Fault& fault) {
        printf("%-8s%s\n", any ? "" : "Faults", faultText(fault).c_str());
        any = true;
        return true;
    });
    if (!any) printf("%-8snone\n", "Faults");
}

static Urgency urgencyOf(const AdapterStatus& adapter) {
    return adapter.rows.empty() ? Urgency::Well : adapter.rows.front().urgency;
}

// The adapters, the most urgent first.
static std::vector<AdapterStatus> readAdapters(Store& store, const StatusOptions& wanted) {
    std::vector<AdapterStatus> adapters;
    const KT_U64 now = simulatedNow(store);
    for (unsigned i = 0; i < adapterCount(store); ++i) {
        const Context context{store, static_cast<KT_U8>(i), now};
        const auto info = find<_Adapter_Info>(context, 0);
        if (!info || (wanted.adapter >= 0 && static_cast<unsigned>(wanted.adapter) != i)) continue;
        AdapterStatus status{context.adapter, *info, statusRows(context)};
        std::stable_sort(status.rows.begin(), status.rows.end(),
                         [](const StatusRow& one, const StatusRow& other) { return one.urgency < other.urgency; });
        adapters.push_back(std::move(status));
    }
    std::stable_sort(adapters.begin(), adapters.end(), [](const AdapterStatus& one, const AdapterStatus& other) {
        return urgencyOf(one) < urgencyOf(other);
    });
    return adapters;
}

static void printStatus(Store& store, const std::string& path, const StatusOptions& wanted) {
    if (wanted.adapter >= 0 && static_cast<unsigned>(wanted.adapter) >= adapterCount(store)) {
        throw CommandFailure{"there is no adapter " + std::to_string(wanted.adapter) + ", only " +
                             std::to_string(adapterCount(store)) + " of them"};
    }
    const GlobalState global = find<GlobalState>(store, ADAPTER_GLOBAL, 0).value_or(GlobalState{});
    printf("%-8s%s (lab %s)\n", "State", path.c_str(), printable(global.lab, sizeof global.lab).c_str());
    printf("%-8s%s\n", "Clock", clockText(store).c_str());
    if (global.powerOff) printf("%-8soff\n", "Power");
    printFaults(store);
    const KT_U64 now = simulatedNow(store);
    const std::vector<AdapterStatus> adapters = readAdapters(store, wanted);
    const size_t rows = wanted.all ? EVERY_ROW : ROWS;
    const bool crowd = !wanted.all && adapters.size() > MANY_ADAPTERS;
    bool brief = false;
    for (const AdapterStatus& each : adapters) {
        const Context context{store, each.adapter, now};
        if (crowd && urgencyOf(each) == Urgency::Well) {
            if (!brief) printf("\n");
            brief = true;
            printBrief(context, each.info);
            continue;
        }
        printHead(context, each.info);
        printRows(each.rows, rows, crowd ? ROWS_IN_A_CROWD : rows);
    }
}

void addStatus(const Command& app, Options& options) {
    const Command command = app.addCommand("status", "Print what is wrong, what is going on, and what else there is");
    const auto wanted = std::make_shared<StatusOptions>();
    command.addFlag("--all", wanted->all, "Every disk and virtual disk, however many");
    command.addOption("-a,--adapter", wanted->adapter, "Only this adapter").check(inRange(0, 254));
    command.onGiven([&options, wanted] {
        const std::string path = statePathOf(options);
        changeState(options, [&](Store& store) { printStatus(store, path, *wanted); });
    });
}
