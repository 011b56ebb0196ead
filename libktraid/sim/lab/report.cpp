#include "lab/report.h"

#include "devices/enclosureElements.h"
#include "lab/reportAdapter.h"
#include "lab/reportDisks.h"
#include "lab/reportHealth.h"
#include "lab/reportParts.h"
#include "lab/reportVolumes.h"
#include "lab/reportWords.h"
#include "state/simClock.h"

#include <cstring>

namespace sim {

static const KT_U64 REPORT_VERSION = 1;

static void addAdapter(Store& store, KT_U8 index, LabReader& adapter, const LabReader& top) {
    // One that did not answer has only its id, and does not answer here either.
    if (wordCount(adapter) == 1) return;
    Context context{store, index, simulatedNow(store)};
    addReportedAdapter(context, adapter);
    const Past past = addReportedEvents(context, adapter, top);
    addReportedParts(context, adapter);
    addReportedDisks(context, adapter, past);
    addReportedVolumes(context, adapter, past);
    addReportedKeys(context, adapter, past);
    addReportedHealth(context, adapter);
    restoreSlots(context);
    takeNothingElse(adapter);
}

static void addAdapters(Store& store, LabReader& report, GlobalState& global) {
    const KT_U64 counted = takeNumber(report, "adapterCount", 0, ADAPTER_GLOBAL);
    std::set<KT_U64> seen;
    for (LabReader& adapter : takeObjects(report, "adapters")) {
        const KT_U64 id = needNumber(adapter, "id", ADAPTER_GLOBAL - 1);
        if (!seen.insert(id).second) failLab(adapter, "id", "is another adapter's already");
        global.adapterCount = static_cast<KT_U16>(std::max<KT_U64>(global.adapterCount, id + 1));
        addAdapter(store, static_cast<KT_U8>(id), adapter, report);
    }
    global.adapterCount = static_cast<KT_U16>(std::max<KT_U64>(global.adapterCount, counted));
}

void fillFromReport(Store& store, LabReader& report, const BuiltInLab& source) {
    const KT_U64 version = needNumber(report, "report", NEVER);
    if (version > REPORT_VERSION) {
        failLab(report, "report",
                "is version " + std::to_string(version) + ", later than this program knows (" +
                    std::to_string(REPORT_VERSION) + ")");
    }
    if (version == 0) failLab(report, "report", "should be a version");
    const KT_U64 made = takeTime(report, "made", realNow() / 1000) * 1000;
    if (made > LAST_MOMENT) failLab(report, "made", "is later than the adapters' clock can show");
    setClock(store, source.stoppedAt ? source.stoppedAt : made, 1000, source.stoppedAt != 0);
    leaveOut(report, {"host", "library", "records", "unread", "problems"});
    GlobalState global = {};
    global.sgVersion = static_cast<KT_U32>(takeNumber(report, "sgVersion", 0, 0x7FFFFFFF));
    strncpy(global.lab, source.name, sizeof global.lab - 1);
    addAdapters(store, report, global);
    takeNothingElse(report);
    save(store, ADAPTER_GLOBAL, 0, global);
}

} // namespace sim
