#include "lab/report.h"

#include "changes/ciphers.h"
#include "state/events.h"

namespace sim {

enum : KT_U16 {
    PD_GONE = 0,
    PD_BACK = 1,
    PD_OFFLINE = 2,
    PD_DEAD = 4,
    FIRST_CIPHER_COMPLAINT = 55,
    LAST_CIPHER_COMPLAINT = 57,
    VD_OFFLINE = 0,
    VD_CREATED = 2,
    MISC_TOO_SMALL = 20,
    MISC_TOO_SMALL_TO_COPY = 21,
    MISC_MUTED = 28
};
// Events of the activities that make a virtual disk's redundancy: where their codes begin, and the steps among them.
static const KT_U16 MAKING[] = {30, 40, 50, 60};
enum : KT_U16 { STARTED = 0, RESTARTED = 1, COMPLETED = 5, STEPS = 10, FIX = 30 };

static bool isLoss(const _Event& event) {
    const bool cipher = event.Code >= FIRST_CIPHER_COMPLAINT && event.Code <= LAST_CIPHER_COMPLAINT;
    return event.Class == EVT_PD && (event.Code == PD_GONE || event.Code == PD_OFFLINE || cipher);
}

static void learnOfDisk(const _Event& event, bool sameBlow, Past& past) {
    const KT_U16 pd = event.DeviceID;
    if (isLoss(event)) {
        if (!sameBlow) ++past.lossCount;
        past.losses[pd] = past.lossCount;
        past.toldTooSmall.clear();
    }
    if (event.Code == PD_DEAD) past.deadDisks.insert(pd);
    if (event.Code == PD_BACK || event.Code == PD_GONE) past.deadDisks.erase(pd);
    if (event.Code >= FIRST_CIPHER_COMPLAINT && event.Code <= LAST_CIPHER_COMPLAINT)
        past.cipherComplaint[pd] = event.Code;
}

static void learnOfVd(const _Event& event, Past& past) {
    if (event.Code == VD_OFFLINE) past.offline[event.DeviceID] = past.lossCount;
    if (event.Code == VD_CREATED) past.initialized[event.DeviceID] = false;
    for (const KT_U16 first : MAKING) {
        if (event.Code < first || event.Code >= first + STEPS) continue;
        const int step = event.Code - first;
        if (step == COMPLETED) past.initialized[event.DeviceID] = true;
        if (first != FIX && (step == STARTED || step == RESTARTED)) past.initialized[event.DeviceID] = false;
    }
}

static Past pastOf(const Context& context) {
    Past past;
    bool lossBefore = false;
    forEach<_Event>(context, 0, [&](KT_U64, const _Event& event) {
        if (event.Severity >= SEV_MAJOR) past.muted = false;
        if (event.Class == EVT_PD) learnOfDisk(event, lossBefore, past);
        if (event.Class == EVT_VD) learnOfVd(event, past);
        if (event.Class == EVT_MISC && event.Code == MISC_MUTED) past.muted = true;
        if (event.Class == EVT_MISC && event.Code == MISC_TOO_SMALL) past.toldTooSmall[event.DeviceID] |= TOLD_REBUILD;
        if (event.Class == EVT_MISC && event.Code == MISC_TOO_SMALL_TO_COPY)
            past.toldTooSmall[event.DeviceID] |= TOLD_COPY_BACK;
        // Disks that go one right behind the other go at one blow.
        lossBefore = event.Class == EVT_PD && (isLoss(event) || (lossBefore && event.Code == PD_DEAD));
        return true;
    });
    return past;
}

// Disks that answered a question after their health with a time-out, as drives do that are broken.
static std::set<KT_U16> silentDisks(const LabReader& top, KT_U8 adapter) {
    std::set<KT_U16> silent;
    LabReader reader{top.object, top.path, {}};
    for (LabReader& refusal : takeObjects(reader, "unread")) {
        if (takeNumber(refusal, "adapter", ADAPTER_GLOBAL, ADAPTER_GLOBAL) != adapter) continue;
        if (takeText(refusal, "call", "") != "KT_PD_GET_SMART_INFO") continue;
        if (takeNumber(refusal, "status", 0, 255) != KT_ERR_LINK_TIMEOUT) continue;
        for (const KT_U16 id : takeIds(refusal, "ids"))
            silent.insert(id);
    }
    return silent;
}

Past addReportedEvents(Context& context, LabReader& adapter, const LabReader& top) {
    for (LabReader& reader : takeObjects(adapter, "events")) {
        _Event event = {};
        leaveOut(reader, {"time", "severity", "severityCode", "text"});
        takeFields(reader, KIND_EVENT, &event);
        takeNothingElse(reader);
        if (find<_Event>(context, event.SequenceNo)) failLab(reader, "SequenceNo", "is another event's already");
        save(context, event.SequenceNo, event);
    }
    Past past = pastOf(context);
    past.silentDisks = silentDisks(top, context.adapter);
    AdapterState state = find<AdapterState>(context, 0).value_or(AdapterState{});
    state.muted = past.muted ? 1 : 0;
    state.losses = past.lossCount;
    save(context, 0, state);
    return past;
}

} // namespace sim
