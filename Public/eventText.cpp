#include "Public/eventText.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

enum EventClass : KT_U16 {
    ADAPTER = 0,
    VD = 1,
    PD = 2,
    PM = 3,
    EXPANDER = 4,
    MDD = 5,
    BSL = 6,
    SAS = 7,
    ENCLOSURE = 8,
    BATTERY = 9,
    FLASH = 10,
    CACHE = 11,
    MISC = 12,
    ARRAY = 13,
    ENVIRONMENT = 15
};

constexpr KT_U16 ADAPTER_DETECTED = 9;

// What stands at a conversion of a text.
enum Value : KT_U8 {
    None,
    Device,
    Kind, // "Virtual Disk" or "Tandemix"
    Param0,
    Param1,
    Param2,
    Param3,
    Param0Low, // the low eight bits of Param0
    Sequence,
    LastSequence, // Param2, which is a sequence number like the event's own
    Serial,       // the sense data as text
    Class,
    Code
};

// Which events of a class and code a text is for.
enum When : KT_U8 {
    Always,
    WithSerial, // the sense data holds the adapter's serial number
    WithParam0, // Params[0] is not 0
    OnTandemix  // the virtual disk is a hybrid one
};

struct EventRow {
    KT_U16 eventClass;
    KT_U16 code;
    When when;
    // Its leading "%s" is always empty, so such a text begins with a blank. Held in place: a table of pointers would be
    // work at every start of the program.
    char text[88];
    Value values[5]; // for the other conversions, in order
};

// The first row that fits an event describes it. The odd spellings and blanks are the texts' own.
// clang-format off
const EventRow eventRows[] = {
    {ADAPTER, ADAPTER_DETECTED, WithSerial, "%s Adapter %d with serial number %s is detected", {Device, Serial}},
    {ADAPTER, ADAPTER_DETECTED, Always, "%s Adapter %d is detected, serial number not available", {Device}},
    {ADAPTER, 4, Always, "%s Auto-rebuild has been enabled", {}},
    {ADAPTER, 6, Always, "%s Media patrol rate has been changed", {}},
    {ADAPTER, 5, Always, "%s Auto-rebuild has been disabled", {}},
    {ADAPTER, 7, Always, "%s Copy back has been enabled", {}},
    {ADAPTER, 8, Always, "%s Copy back has been disabled", {}},
    {ADAPTER, 1, Always, "%s SMART has been disabled", {}},
    {ADAPTER, 0, Always, "%s SMART has been enabled", {}},
    {ADAPTER, 2, Always, "%s Buzzer has been enabled", {}},
    {ADAPTER, 3, Always, "%s Buzzer has been disabled", {}},
    {ADAPTER, 14, Always, "%s Page data has an ECC error and can not be flushed", {}},
    {ADAPTER, 11, Always, "%s Auto dirty data flushed %d/%d", {Param1, Param0}},
    {ADAPTER, 10, Always, "%s Battery backup unit found an ECC error", {}},
    {ADAPTER, 12, Always, "%s Auto starts flush dirty data", {}},
    {ADAPTER, 13, Always, "%s Auto finish flush dirty data", {}},
    {ADAPTER, 16, Always, "%s Adapter %d removed", {Device}},
    {ADAPTER, 15, Always, "%s Adapter %d run as non-cache mode, cause: lacks enough memory", {Device}},
    {ADAPTER, 17, Always, "%s Adapter %d detected", {Device}},
    {ADAPTER, 65535, Always, "%s Event(s) lost. Current seqNum %d, last seqNum %d", {Sequence, LastSequence}},
    {VD, 0, Always, "%s %s %d is offline", {Kind, Device}},
    {VD, 1, Always, "%s %s %d is online", {Kind, Device}},
    {VD, 2, Always, "%s %s %d is created", {Kind, Device}},
    {VD, 3, Always, "%s %s %d is deleted", {Kind, Device}},
    {VD, 4, Always, "%s Virtual Disk %d is degraded", {Device}},
    {VD, 5, Always, "%s Virtual Disk %d lost a redundancy disk", {Device}},
    {VD, 6, Always, "%s Cache mode on %s %d has been changed", {Kind, Device}},
    {VD, 7, Always, "%s Synchronization on %s %d succeeded", {Kind, Device}},
    {VD, 8, Always, "%s Synchronization on %s %d failed ", {Kind, Device}},
    {VD, 9, Always, "%s virtual disk %d has been imported into disk array %d", {Device, Param0}},
    {VD, 20, Always, "%s Consistency check on %s %d started", {Kind, Device}},
    {VD, 21, Always, "%s Consistency check on %s %d restarted", {Kind, Device}},
    {VD, 22, Always, "%s Consistency check on %s %d paused", {Kind, Device}},
    {VD, 23, Always, "%s Consistency check on %s %d resumed", {Kind, Device}},
    {VD, 24, Always, "%s Consistency check on %s %d aborted", {Kind, Device}},
    {VD, 25, Always, "%s Consistency check on %s %d completed", {Kind, Device}},
    {VD, 26, Always, "%s Consistency check on %s %d is %d%% done", {Kind, Device, Param0}},
    {VD, 27, Always, "%s Consistency check on %s %d failed", {Kind, Device}},
    {VD, 28, Always, "%s Consistency check on %s %d is auto paused", {Kind, Device}},
    {VD, 29, Always, "%s Consistency check on %s %d is auto resumed", {Kind, Device}},
    {VD, 30, Always, "%s Consistency fix on %s %d started", {Kind, Device}},
    {VD, 31, Always, "%s Consistency fix on %s %d restarted", {Kind, Device}},
    {VD, 32, Always, "%s Consistency fix on %s %d paused", {Kind, Device}},
    {VD, 33, Always, "%s Consistency fix on %s %d resumed", {Kind, Device}},
    {VD, 34, Always, "%s Consistency fix on %s %d aborted", {Kind, Device}},
    {VD, 35, Always, "%s Consistency fix on %s %d completed", {Kind, Device}},
    {VD, 36, Always, "%s Consistency fix on %s %d is %d%% done", {Kind, Device, Param0}},
    {VD, 37, Always, "%s Consistency fix on %s %d failed", {Kind, Device}},
    {VD, 38, Always, "%s Consistency fix on %s %d is auto paused", {Kind, Device}},
    {VD, 39, Always, "%s Consistency fix on %s %d is auto resumed", {Kind, Device}},
    {VD, 40, Always, "%s Fast initialization on %s %d started", {Kind, Device}},
    {VD, 41, Always, "%s Fast initialization on %s %d restarted", {Kind, Device}},
    {VD, 42, Always, "%s Fast initialization on %s %d paused", {Kind, Device}},
    {VD, 43, Always, "%s Fast initialization on %s %d resumed", {Kind, Device}},
    {VD, 44, Always, "%s Fast initialization on %s %d aborted", {Kind, Device}},
    {VD, 45, Always, "%s Fast initialization on %s %d completed", {Kind, Device}},
    {VD, 46, Always, "%s Fast initialization on %s %d is %d%% done", {Kind, Device, Param0}},
    {VD, 47, Always, "%s Fast initialization on %s %d failed", {Kind, Device}},
    {VD, 48, Always, "%s Fast initialization on %s %d is auto paused", {Kind, Device}},
    {VD, 49, Always, "%s Fast initialization on %s %d is auto resumed", {Kind, Device}},
    {VD, 50, Always, "%s Background initialization on virtual disk %d started", {Device}},
    {VD, 51, Always, "%s Background initialization on virtual disk %d restarted", {Device}},
    {VD, 52, Always, "%s Background initialization on virtual disk %d paused", {Device}},
    {VD, 53, Always, "%s Background initialization on virtual disk %d resumed", {Device}},
    {VD, 54, Always, "%s Background initialization on virtual disk %d aborted", {Device}},
    {VD, 55, Always, "%s Background initialization on virtual disk %d completed", {Device}},
    {VD, 56, Always, "%s Background initialization on virtual disk %d is %d%% done", {Device, Param0}},
    {VD, 57, Always, "%s Background initialization on virtual disk %d failed", {Device}},
    {VD, 58, Always, "%s Background initialization on virtual disk %d auto paused", {Device}},
    {VD, 59, Always, "%s Background initialization on virtual disk %d auto resumed", {Device}},
    {VD, 60, Always, "%s Foreground initialization on virtual disk %d started", {Device}},
    {VD, 61, Always, "%s Foreground initialization on virtual disk %d restarted", {Device}},
    {VD, 62, Always, "%s Foreground initialization on virtual disk %d paused", {Device}},
    {VD, 63, Always, "%s Foreground initialization on virtual disk %d resumed", {Device}},
    {VD, 64, Always, "%s Foreground initialization on virtual disk %d aborted", {Device}},
    {VD, 65, Always, "%s Foreground initialization on virtual disk %d completed", {Device}},
    {VD, 66, Always, "%s Foreground initialization on virtual disk %d is %d%% done", {Device, Param0}},
    {VD, 67, Always, "%s Foreground initialization on virtual disk %d failed", {Device}},
    {VD, 68, Always, "%s Foreground initialization on virtual disk %d auto paused", {Device}},
    {VD, 69, Always, "%s Foreground initialization on virtual disk %d auto resumed", {Device}},
    {VD, 70, OnTandemix, "%s Initialization data on Tandemix %d started", {Device}},
    {VD, 70, Always, "%s Rebuild disk on virtual disk %d started", {Device}},
    {VD, 71, Always, "%s Rebuild disk on virtual disk %d restarted", {Device}},
    {VD, 72, Always, "%s Rebuild disk on virtual disk %d paused", {Device}},
    {VD, 73, OnTandemix, "%s Initialization data on Tandemix %d resumed", {Device}},
    {VD, 73, Always, "%s Rebuild disk on virtual disk %d resumed", {Device}},
    {VD, 74, OnTandemix, "%s Initialization data on Tandemix %d aborted", {Device}},
    {VD, 74, Always, "%s Rebuild disk on virtual disk %d aborted", {Device}},
    {VD, 75, OnTandemix, "%s Initialization data on Tandemix %d completed", {Device}},
    {VD, 75, Always, "%s Rebuild disk on virtual disk %d completed", {Device}},
    {VD, 76, Always, "%s Rebuild disk on virtual disk %d is %d%% done", {Device, Param0}},
    {VD, 77, OnTandemix, "%s Initialization data on Tandemix %d failed", {Device}},
    {VD, 77, Always, "%s Rebuild disk on virtual disk %d failed", {Device}},
    {VD, 78, Always, "%s Rebuild disk on virtual disk %d is auto paused", {Device}},
    {VD, 79, Always, "%s Rebuild disk on virtual disk %d is auto resumed", {Device}},
    {VD, 80, Always, "%s Migration on virtual disk %d started", {Device}},
    {VD, 81, Always, "%s Migration on virtual disk %d restarted", {Device}},
    {VD, 82, Always, "%s Migration on virtual disk %d paused", {Device}},
    {VD, 83, Always, "%s Migration on virtual disk %d resumed", {Device}},
    {VD, 84, Always, "%s Migration on virtual disk %d aborted", {Device}},
    {VD, 85, Always, "%s Migration on virtual disk %d completed", {Device}},
    {VD, 86, Always, "%s Migration on virtual disk %d is %d%% done", {Device, Param0}},
    {VD, 87, Always, "%s Migration on virtual disk %d failed", {Device}},
    {VD, 88, Always, "%s Migration on virtual disk %d is auto paused", {Device}},
    {VD, 89, Always, "%s Migration on virtual disk %d is auto resumed", {Device}},
    {VD, 90, Always, "%s Copy back on virtual disk %d started", {Device}},
    {VD, 91, Always, "%s Copy back on virtual disk %d restarted", {Device}},
    {VD, 92, Always, "%s Copy back on virtual disk %d paused", {Device}},
    {VD, 93, Always, "%s Copy back on virtual disk %d resumed", {Device}},
    {VD, 94, Always, "%s Copy back on virtual disk %d aborted", {Device}},
    {VD, 95, Always, "%s Copy back on virtual disk %d completed", {Device}},
    {VD, 96, Always, "%s Copy back on virtual disk %d is %d%% done", {Device, Param0}},
    {VD, 97, Always, "%s Copy back on virtual disk %d failed", {Device}},
    {VD, 98, Always, "%s Copy back on virtual disk %d is auto paused", {Device}},
    {VD, 99, Always, "%s Copy back on virtual disk %d is auto resumed", {Device}},
    {VD, 100, WithParam0, "%s Consistency check/fix on virtual disk %d found inconsistent LBA 0x%x%08x", {Device, Param0, Param1}},
    {VD, 100, Always, "%s Consistency check/fix on virtual disk %d found inconsistent LBA 0x%x", {Device, Param1}},
    {PD, 0, Always, "%s Physical disk %d is plugged out", {Device}},
    {PD, 1, Always, "%s Physical disk %d is plugged in", {Device}},
    {PD, 2, Always, "%s Physical disk %d is set down", {Device}},
    {PD, 3, Always, "%s Request to physical disk %d is timed out", {Device}},
    {PD, 4, Always, "%s Physical disk %d read write error.", {Device}},
    {PD, 5, Always, "%s Physical disk %d  S.M.A.R.T started", {Device}},
    {PD, 6, Always, "%s Physical disk %d error being fixed", {Device}},
    {PD, 9, Always, "%s Physical disk %d has been assigned as spare drive", {Device}},
    {PD, 10, Always, "%s Physical disk %d has been unset as spare drive", {Device}},
    {PD, 11, Always, "%s SMART has over threshold on physical disk %d", {Device}},
    {PD, 12, Always, "%s SMART polling failed on physical disk %d", {Device}},
    {PD, 13, Always, "%s Bad block table on physical disk %d is 80%% full", {Device}},
    {PD, 14, Always, "%s Bad block table on physical disk %d is full", {Device}},
    {PD, 15, Always, "%s Bad block reassigned on physical disk %d", {Device}},
    {PD, 16, Always, "%s Cache mode of physical disk %d has been changed", {Device}},
    {PD, 17, Always, "%s Media Patrol on physical disk %d started", {Device}},
    {PD, 18, Always, "%s Media Patrol on physical disk %d restarted", {Device}},
    {PD, 19, Always, "%s Media Patrol on physical disk %d paused", {Device}},
    {PD, 20, Always, "%s Media Patrol on physical disk %d resumed", {Device}},
    {PD, 21, Always, "%s Media Patrol on physical disk %d aborted", {Device}},
    {PD, 22, Always, "%s Media Patrol on physical disk %d completed", {Device}},
    {PD, 23, Always, "%s Media Patrol on physical disk %d is %d%% done", {Device, Param0}},
    {PD, 24, Always, "%s Media Patrol on physical disk %d failed", {Device}},
    {PD, 25, Always, "%s Media Patrol on physical disk %d is auto paused", {Device}},
    {PD, 26, Always, "%s Media Patrol on physical disk %d is auto resumed", {Device}},
    {PD, 36, Always, "%s Command [0x%x] on physical disk %d failed. Sense key=0x%x, ASC=0x%x, ASCQ=0x%x", {Param0, Device, Param1, Param2, Param3}},
    {PD, 37, Always, "%s Bad Sector is detected on disk %d at LBA 0x%x%08x, count=%d, flag=0x%08x.", {Device, Param0, Param1, Param2, Param3}},
    {PD, 38, Always, "%s Bad Sector is fixed on disk %d at LBA 0x%x%08x, count=%d, flag=0x%08x.", {Device, Param0, Param1, Param2, Param3}},
    {PD, 54, Always, "%s Physical disk %d has been set as free disk", {Device}},
    {PD, 55, Always, "%s Physical disk %d offline caused by plain disk on AES enabled port", {Device}},
    {PD, 56, Always, "%s Physical disk %d offline caused by crypto disk on AES disable port", {Device}},
    {PD, 57, Always, "%s Physical disk %d offline caused by cipher is mismatch between disk and port", {Device}},
    {PD, 59, WithParam0, "%s Spare disk %d used by disk array %d", {Param0Low, Param1}},
    {PD, 59, Always, "%s Spare disk information changed", {}},
    {EXPANDER, 0, Always, "%s Expander %d is plugged in", {Device}},
    {EXPANDER, 1, Always, "%s Expander %d is plugged out", {Device}},
    {BATTERY, 0, Always, "%s Battery present", {}},
    {BATTERY, 1, Always, "%s Battery not present", {}},
    {BATTERY, 2, Always, "%s New battery detecte", {}},
    {BATTERY, 3, Always, "%s Battery needs to be replaced", {}},
    {BATTERY, 4, Always, "%s Battery has been replaced", {}},
    {BATTERY, 5, Always, "%s Battery is removed", {}},
    {BATTERY, 6, Always, "%s Battery relearn started", {}},
    {BATTERY, 7, Always, "%s Battery relearn in progress", {}},
    {BATTERY, 8, Always, "%s Battery relearn completed", {}},
    {BATTERY, 9, Always, "%s Battery relearn timed out", {}},
    {BATTERY, 10, Always, "%s Battery relearn pending: Battery is under charge", {}},
    {BATTERY, 11, Always, "%s Battery relearn postponed", {}},
    {BATTERY, 12, Always, "%s Battery relearn will start in 4 days", {}},
    {BATTERY, 13, Always, "%s Battery relearn will start in 2 days", {}},
    {BATTERY, 14, Always, "%s Battery relearn will start in 1 day", {}},
    {BATTERY, 15, Always, "%s Battery relearn will start in 5 hours", {}},
    {BATTERY, 16, Always, "%s Battery is discharging", {}},
    {BATTERY, 17, Always, "%s Battery started charging", {}},
    {BATTERY, 18, Always, "%s Battery completed charging", {}},
    {BATTERY, 19, Always, "%s Battery/charger problems detected", {}},
    {BATTERY, 20, Always, "%s Battery capacity is below threshold", {}},
    {BATTERY, 21, Always, "%s Battery capacity is above threshold", {}},
    {BATTERY, 22, Always, "%s Battery temperature is low", {}},
    {BATTERY, 23, Always, "%s Battery temperature back to normal", {}},
    {BATTERY, 24, Always, "%s Battery temperature is high", {}},
    {BATTERY, 25, Always, "%s Battery voltage is low", {}},
    {BATTERY, 26, Always, "%s Battery voltage back to normal", {}},
    {BATTERY, 27, Always, "%s Battery voltage is high", {}},
    {BATTERY, 28, Always, "%s Battery status is abnormal, VDs with auto-cache are now in write through mode", {}},
    {BATTERY, 29, Always, "%s Battery status back to normal, VDs with auto-cache are now in write back mode", {}},
    {BATTERY, 30, Always, "%s Battery stop charging", {}},
    {BATTERY, 31, Always, "%s Battery stop discharging", {}},
    {BATTERY, 32, Always, "%s Battery change charge threshold", {}},
    {BATTERY, 33, Always, "%s Battery change voltage warning threshold", {}},
    {BATTERY, 34, Always, "%s Battery change temperature warning threshold", {}},
    {FLASH, 1, Always, "%s Flash Erase Failed", {}},
    {FLASH, 3, Always, "%s Flash Recover Failed", {}},
    {FLASH, 15, Always, "%s Normal flash write operation failed", {}},
    {FLASH, 17, Always, "%s Update image succeeded", {}},
    {FLASH, 18, Always, "%s Backup image succeeded", {}},
    {FLASH, 19, Always, "%s Update image failed", {}},
    {FLASH, 20, Always, "%s Backup image failed", {}},
    {FLASH, 21, Always, "%s Image generation invalid", {}},
    {FLASH, 22, Always, "%s Dual Images generation both invalid", {}},
    {FLASH, 23, Always, "%s Image Header corrupted (Signature invalid)", {}},
    {FLASH, 24, Always, "%s Image Data in Flash is invalid", {}},
    {FLASH, 25, Always, "%s Image Data and Header are all invalid", {}},
    {MISC, 1, Always, "%s Background activity rate changed to %d%%", {Param0}},
    {MISC, 5, Always, "%s Multi-bit ECC error: count = %d, address = 0x%X, module ID = %d", {Param0, Param1, Param2}},
    {MISC, 6, Always, "%s Single-bit ECC error: count = %d", {Param0}},
    {MISC, 7, Always, "%s Shutdown command received from host", {}},
    {MISC, 16, Always, "%s Physical disk missing from virtual disk %d configuration at boot", {Device}},
    {MISC, 17, Always, "%s Virtual disk %d missing drives and went offline at boot", {Device}},
    {MISC, 18, Always, "%s Virtual disk %d missing at boot", {Device}},
    {MISC, 19, Always, "%s Previous configuration completely missing at boot", {}},
    {MISC, 20, Always, "%s Physical disk %d too small to be used for auto-rebuild", {Device}},
    {MISC, 21, Always, "%s Physical disk %d too small to be used for copy back", {Device}},
    {MISC, 22, Always, "%s Synchronization rate has been changed to %d%%", {Param0}},
    {MISC, 23, Always, "%s Initialization rate has been changed to %d%%", {Param0}},
    {MISC, 24, Always, "%s Rebuild rate has been changed to %d%%", {Param0}},
    {MISC, 25, Always, "%s Migration rate has been changed to %d%%", {Param0}},
    {MISC, 26, Always, "%s Copyback rate has been changed to %d%%", {Param0}},
    {MISC, 27, Always, "%s Media patrol rate has been changed to %d%%", {Param0}},
    {MISC, 28, Always, "%s Adapter buzzer set to mute", {}},
    {ARRAY, 0, Always, "%s Array %d is created", {Device}},
    {ARRAY, 1, Always, "%s Array %d is deleted", {Device}},
    {ENVIRONMENT, 0, Always, "%s Adapter %d temperature check pass", {Device}},
    {ENVIRONMENT, 1, Always, "%s Adapter %d is high temperature", {Device}},
    {ENVIRONMENT, 2, Always, "%s Adapter %d is critical temperature, immediate action requested", {Device}},
    {ENVIRONMENT, 3, Always, "%s Adapter %d Fan %d check pass", {Device, Param0}},
    {ENVIRONMENT, 4, Always, "%s Adapter %d Defective fan %d found", {Device, Param0}},
    {ENVIRONMENT, 5, Always, "%s Adapter %d Absent fan %d found", {Device, Param0}},
    {ENVIRONMENT, 6, Always, "%s Adapter %d power supply %d alert", {Device, Param0}},
    {ENVIRONMENT, 7, Always, "%s Adapter %d power supply %d is optimal", {Device, Param0}},
    {ENVIRONMENT, 8, Always, "%s Adapter %d mute is pressed", {Device}},
    {ENVIRONMENT, 9, Always, "%s Adapter %d identification is pressed", {Device}},
    {ENVIRONMENT, 10, Always, "%s Adapter %d identification is on", {Device}},
    {ENVIRONMENT, 11, Always, "%s Adapter %d identification is off", {Device}},
    {ENVIRONMENT, 12, Always, "%s Adapter %d intrusion is opened", {Device}},
    {ENVIRONMENT, 13, Always, "%s Adapter %d intrusion is closed", {Device}},
    {ENVIRONMENT, 14, Always, "%s Adapter %d become low power status", {Device}},
    {ENVIRONMENT, 15, Always, "%s Adapter %d become idle status", {Device}},
};

// Events without a row, by class.
struct UnknownRow {
    KT_U16 eventClass;
    const char* text;
};
const UnknownRow unknownRows[] = {
    {ADAPTER, "Unknown adapter event code %d"},
    {VD, "Unknown VD event code %d"},
    {PD, "Unknown PD event code %d"},
    {PM, "%s Unknown PM event class: code = %d"},
    {EXPANDER, "Unknown expander event code %d"},
    {MDD, "%s Unknown MDD event class: code = %d"},
    {BSL, "%s Unknown BSL event class: code = %d"},
    {SAS, "%s Unknown SAS event class: code = %d"},
    {ENCLOSURE, "%s Unknown Enclosure event class: code = %d"},
    {BATTERY, "Unknown battery event code %d"},
    {FLASH, "%s Unknown Flash event class: code = %d"},
    {CACHE, "%s Unknown Cache event class: code = %d"},
    {MISC, "%s Unknown miscellaneous event: code = %d"},
};
// clang-format on

// The part of the text that is written so far; what does not fit is dropped.
struct Composed {
    char (&text)[EVENT_TEXT_SIZE];
    size_t length;
};

} // namespace

__attribute__((format(printf, 2, 3))) static void add(Composed& composed, const char* format, ...) {
    const size_t room = EVENT_TEXT_SIZE - composed.length;
    va_list arguments;
    va_start(arguments, format);
    const int written = vsnprintf(composed.text + composed.length, room, format, arguments);
    va_end(arguments);
    if (written > 0) composed.length += std::min(static_cast<size_t>(written), room - 1);
}

static void addSerial(Composed& composed, const _Event& event) {
    const size_t valid = std::min<size_t>(event.SenseDataLength, sizeof event.SenseData);
    for (size_t i = 0; i < valid && event.SenseData[i] != 0; ++i) {
        const KT_U8 byte = event.SenseData[i];
        add(composed, "%c", byte >= 0x20 && byte < 0x7F ? byte : '?');
    }
}

static KT_U32 number(const _Event& event, Value value) {
    switch (value) {
    case Device:
        return event.DeviceID;
    case Param0:
        return event.Params[0];
    case Param1:
        return event.Params[1];
    case Param2:
    case LastSequence:
        return event.Params[2];
    case Param3:
        return event.Params[3];
    case Param0Low:
        return event.Params[0] & 0xFF;
    case Sequence:
        return event.SequenceNo;
    case Class:
        return event.Class;
    case Code:
        return event.Code;
    default:
        return 0;
    }
}

static bool isHybrid(const _Event& event) {
    return event.Params[3] == 1;
}

// Writes the value at the conversion that `at` points to and returns what stands behind it.
static const char* addValue(Composed& composed, const char* at, const _Event& event, Value value) {
    if (strncmp(at, "%08x", 4) == 0) {
        add(composed, "%08x", number(event, value));
        return at + 4;
    }
    if (value == Kind) {
        add(composed, "%s", isHybrid(event) ? "Tandemix" : "Virtual Disk");
    } else if (value == Serial) {
        addSerial(composed, event);
    } else if (at[1] == 'x') {
        add(composed, "%x", number(event, value));
    } else if (at[1] == 'X') {
        add(composed, "%X", number(event, value));
    } else if (value == Sequence || value == LastSequence) {
        add(composed, "%u", number(event, value));
    } else {
        add(composed, "%d", static_cast<int>(number(event, value)));
    }
    return at + 2;
}

static void compose(const _Event& event, const char* text, const Value* values, Composed& composed) {
    const char* at = strncmp(text, "%s", 2) == 0 ? text + 2 : text;
    while (*at != '\0') {
        if (*at != '%') {
            add(composed, "%c", *at++);
        } else if (at[1] == '%') {
            add(composed, "%c", '%');
            at += 2;
        } else {
            at = addValue(composed, at, event, *values++);
        }
    }
}

static bool fits(const EventRow& row, const _Event& event) {
    if (row.eventClass != event.Class || row.code != event.Code) return false;
    switch (row.when) {
    case WithSerial:
        return event.SenseDataLength != 0;
    case WithParam0:
        return event.Params[0] != 0;
    case OnTandemix:
        return isHybrid(event);
    default:
        return true;
    }
}

void composeEvent(const _Event& event, char (&text)[EVENT_TEXT_SIZE]) {
    Composed composed = {text, 0};
    text[0] = '\0';
    for (const EventRow& row : eventRows) {
        if (fits(row, event)) return compose(event, row.text, row.values, composed);
    }
    static const Value code[] = {Code};
    for (const UnknownRow& row : unknownRows) {
        if (row.eventClass == event.Class) return compose(event, row.text, code, composed);
    }
    static const Value classAndCode[] = {Class, Code};
    compose(event, "WARNING: Unknown event class %d, code %d", classAndCode, composed);
}

static const char* placeholder(Value value) {
    switch (value) {
    case Device:
        return "<device>";
    case Kind:
        return "Virtual Disk";
    case Param0:
    case Param0Low:
        return "<param 1>";
    case Param1:
        return "<param 2>";
    case Param2:
    case LastSequence:
        return "<param 3>";
    case Param3:
        return "<param 4>";
    case Serial:
        return "<sense text>";
    case Sequence:
        return "<sequence>";
    default:
        return "<number>";
    }
}

bool describeEvents(unsigned row, KT_U16& eventClass, KT_U16& code, char (&text)[EVENT_TEXT_SIZE]) {
    if (row >= sizeof eventRows / sizeof eventRows[0]) return false;
    const EventRow& events = eventRows[row];
    eventClass = events.eventClass;
    code = events.code;
    Composed composed = {text, 0};
    text[0] = '\0';
    const Value* value = events.values;
    const char* at = events.text;
    // The leading "%s" is always empty, the blank behind it a margin.
    if (strncmp(at, "%s", 2) == 0) at += 2;
    at += *at == ' ' ? 1 : 0;
    while (*at != '\0') {
        if (*at != '%') {
            add(composed, "%c", *at++);
        } else if (at[1] == '%') {
            add(composed, "%c", '%');
            at += 2;
        } else {
            add(composed, "%s", placeholder(*value++));
            at += strncmp(at, "%08x", 4) == 0 ? 4 : 2;
        }
    }
    return true;
}

bool isAdapterDetected(const _Event& event) {
    return event.Class == ADAPTER && event.Code == ADAPTER_DETECTED;
}

const char* severityText(KT_U8 severity) {
    static const char* const words[] = {"[UNKNOWN]", "[OTHER]", "[INFO]",     "[WARNING]",
                                        "[MINOR]",   "[MAJOR]", "[CRITICAL]", "[FATAL]"};
    return severity < sizeof words / sizeof words[0] ? words[severity] : words[0];
}
