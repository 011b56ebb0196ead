#include "lab/reportPast.h"

#include "changes/ciphers.h"
#include "lab/reportWords.h"
#include "state/events.h"

#include <algorithm>

namespace sim {

static const EventName LOSSES[] = {EVT_PD_PLUGGED_OUT, EVT_PD_SET_DOWN, EVT_PD_PLAIN_ON_CRYPTO_PORT,
                                   EVT_PD_CRYPTO_ON_PLAIN_PORT, EVT_PD_CIPHER_MISMATCH};
static const EventName CIPHER_COMPLAINTS[] = {EVT_PD_PLAIN_ON_CRYPTO_PORT, EVT_PD_CRYPTO_ON_PLAIN_PORT,
                                              EVT_PD_CIPHER_MISMATCH};
// What the loss of a disk that a virtual disk needs makes of it.
static const EventName WORSENED[] = {EVT_VD_LOST_REDUNDANCY, EVT_VD_DEGRADED, EVT_VD_OFFLINE};
// What makes a virtual disk's redundancy, and what begins to.
static const EventName MADE[] = {EVT_VD_FIX_COMPLETED, EVT_VD_QUICK_INIT_COMPLETED, EVT_VD_BACKGROUND_INIT_COMPLETED,
                                 EVT_VD_FOREGROUND_INIT_COMPLETED};
static const EventName MAKING[] = {EVT_VD_CREATED,
                                   EVT_VD_QUICK_INIT_STARTED,
                                   EVT_VD_QUICK_INIT_RESTARTED,
                                   EVT_VD_BACKGROUND_INIT_STARTED,
                                   EVT_VD_BACKGROUND_INIT_RESTARTED,
                                   EVT_VD_FOREGROUND_INIT_STARTED,
                                   EVT_VD_FOREGROUND_INIT_RESTARTED};

template <size_t N>
static bool isOneOf(const EventName (&names)[N], const _Event& event) {
    return std::any_of(std::begin(names), std::end(names), [&](EventName name) { return isEvent(event, name); });
}

static void learnOfDisk(const _Event& event, bool sameBlow, Past& past) {
    const KT_U16 pd = event.DeviceID;
    if (isOneOf(LOSSES, event)) {
        if (!sameBlow) ++past.lossCount;
        past.losses[pd] = past.lossCount;
    }
    if (isEvent(event, EVT_PD_READ_WRITE_ERROR)) past.deadDisks.insert(pd);
    if (isEvent(event, EVT_PD_PLUGGED_OUT) || isEvent(event, EVT_PD_PLUGGED_IN)) past.deadDisks.erase(pd);
    if (isOneOf(CIPHER_COMPLAINTS, event)) past.cipherComplaint[pd] = event.Code;
    if (isEvent(event, EVT_MISC_TOO_SMALL_TO_REBUILD)) past.toldTooSmall[pd] |= TOLD_REBUILD;
    if (isEvent(event, EVT_MISC_TOO_SMALL_TO_COPY_BACK)) past.toldTooSmall[pd] |= TOLD_COPY_BACK;
}

static void learnOfVd(const _Event& event, bool byLoss, Past& past) {
    if (byLoss && isOneOf(WORSENED, event)) past.toldTooSmall.clear();
    if (isEvent(event, EVT_VD_OFFLINE)) past.offline[event.DeviceID] = past.lossCount;
    if (isOneOf(MAKING, event)) past.initialized[event.DeviceID] = false;
    if (isOneOf(MADE, event)) past.initialized[event.DeviceID] = true;
}

static Past pastOf(const Context& context) {
    Past past;
    bool lossBefore = false;
    forEach<_Event>(context, 0, [&](KT_U64, const _Event& event) {
        if (event.Severity >= SEV_MAJOR) past.muted = false;
        if (isEvent(event, EVT_MISC_MUTED)) past.muted = true;
        learnOfDisk(event, lossBefore, past);
        learnOfVd(event, lossBefore, past);
        // Disks that go one right behind the other go at one blow.
        lossBefore = isOneOf(LOSSES, event) || (lossBefore && isEvent(event, EVT_PD_READ_WRITE_ERROR));
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
