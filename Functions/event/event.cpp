#include "Functions/event/event.h"

#include <algorithm>
#include <ctime>

#include "Public/utility.h"
#include "events/eventText.h"
#include "utcTime/utcTime.h"

static Take takeOption(int option, const char* value, KT_U32& start) {
    if (option != 's') return Take::Help;
    if (parseDecimal(emptyIsZero(value), start)) return Take::Yes;
    out("-s : start sequence should be a number\n");
    return Take::Failed;
}

// With a hardware clock that keeps local time the adapter's seconds are local time already; reading them as UTC shows
// them unchanged. The event that an adapter was found is stamped by the host.
static void printTime(const _Event& event) {
    const time_t seconds = event.TimeStamp;
    const bool asUtc = gUTCStatus == UTC_CLOCK_LOCAL && !isAdapterDetected(event);
    struct tm parts = {};
    asUtc ? gmtime_r(&seconds, &parts) : localtime_r(&seconds, &parts);
    char text[200];
    if (strftime(text, sizeof text, "%a %b %e %H:%M:%S %Y", &parts) == 0) text[0] = '\0';
    printStr(13, "Time:", text);
}

static void printSenseData(const _Event& event) {
    const size_t valid = std::min<size_t>(event.SenseDataLength, sizeof event.SenseData);
    char text[sizeof event.SenseData * 3 + 1] = "";
    for (size_t i = 0; i < valid; ++i) {
        snprintf(text + 3 * i, 4, "%02X ", event.SenseData[i]);
    }
    // The label's conversion and line break are printed as they stand.
    printStr(13, "Sense Code : %s\n", text);
}

void evt_printf(const _Event* event) {
    char description[EVENT_TEXT_SIZE];
    composeEvent(*event, description);
    printNum(13, "Sequence:", event->SequenceNo);
    printTime(*event);
    printStr(13, "Level:", severityText(event->Severity));
    printStr(12, "Description:", description);
    if (event->SenseDataLength != 0 && !isAdapterDetected(*event)) printSenseData(*event);
    out("\n");
}

int doEvent(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    KT_U32 start = 0;
    auto take = [&](int option, const char* value) { return takeOption(option, value, start); };
    if (!scanOptions({argc, argv, row}, eventOptions, given, result, take)) return result;
    _Event events[EVENTS_ASKED] = {};
    KT_U8 count = 0;
    if (KT_EVT_GetEvent(gCurrentAdapter, EVENTS_ASKED, &count, events) != KT_OK || count == 0) return 0;
    out("Current AdapterID:%d\n\n", gCurrentAdapter);
    for (KT_U8 left = std::min(count, EVENTS_ASKED); left > 0 && events[left - 1].SequenceNo > start; --left) {
        evt_printf(&events[left - 1]);
    }
    return 0;
}
