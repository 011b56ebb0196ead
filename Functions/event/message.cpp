#include "Functions/event/message.h"

#include <algorithm>

#include "Functions/event/event.h"
#include "events/eventText.h"

template <size_t N>
static void printText(int width, const char* label, const char (&text)[N]) {
    char shown[N + 1];
    printStr(width, label, fieldText(shown, reinterpret_cast<const KT_U8*>(text), N));
}

void msg_printf(const _Event_Message* message) {
    printNum(13, "Sequence:", message->SequenceNo);
    printText(13, "Time:", message->time);
    printStr(13, "Level:", severityText(message->Severity));
    printText(12, "Description:", message->msg);
}

int doMessage(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    auto take = [](int, const char*) { return Take::Help; };
    if (!scanOptions({argc, argv, row}, messageOptions, given, result, take)) return result;
    _Event_Message messages[EVENTS_ASKED] = {};
    KT_U8 count = 0;
    if (KT_EVT_GetEventMessage(gCurrentAdapter, EVENTS_ASKED, &count, messages) != KT_OK || count == 0) return 0;
    out("Current AdapterID:%d\n\n", gCurrentAdapter);
    for (KT_U8 left = std::min(count, EVENTS_ASKED); left > 0; --left) {
        msg_printf(&messages[left - 1]);
        out("\n");
    }
    return 0;
}
