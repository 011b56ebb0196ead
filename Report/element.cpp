#include "Report/element.h"

#include "Report/parts.h"

namespace {
// A yes/no field of a status element: the byte and the bit it stands in. condition: what labs call it when it is set.
struct Flag {
    KT_U8 type;
    KT_U8 byte;
    KT_U8 bit;
    const char* word;
    const char* condition = nullptr;
};
constexpr KT_U8 ANY_TYPE = 0;
const Flag flags[] = {
    {ANY_TYPE, 0, 0x40, "predicted failure"},
    {ANY_TYPE, 0, 0x20, "disabled"},
    {ANY_TYPE, 0, 0x10, "swapped"},

    {KT_SES_DEVICE, 2, 0x02, "ident"},
    {KT_SES_DEVICE, 2, 0x08, "ready to insert"},
    {KT_SES_DEVICE, 2, 0x04, "ready to remove"},
    {KT_SES_DEVICE, 2, 0x40, "do not remove"},
    {KT_SES_DEVICE, 3, 0x40, "fault sensed"},
    {KT_SES_DEVICE, 3, 0x20, "fault requested"},
    {KT_SES_DEVICE, 3, 0x10, "device off"},

    {KT_SES_ARRAY_DEVICE, 2, 0x02, "ident"},
    {KT_SES_ARRAY_DEVICE, 3, 0x40, "fault sensed"},
    {KT_SES_ARRAY_DEVICE, 3, 0x20, "fault requested"},
    {KT_SES_ARRAY_DEVICE, 1, 0x02, "rebuild"},
    {KT_SES_ARRAY_DEVICE, 1, 0x01, "rebuild aborted"},
    {KT_SES_ARRAY_DEVICE, 3, 0x10, "device off"},
    {KT_SES_ARRAY_DEVICE, 1, 0x20, "hot spare"},
    {KT_SES_ARRAY_DEVICE, 1, 0x40, "reserved device"},
    {KT_SES_ARRAY_DEVICE, 1, 0x10, "consistency check"},
    {KT_SES_ARRAY_DEVICE, 1, 0x08, "in critical array"},
    {KT_SES_ARRAY_DEVICE, 1, 0x04, "in failed array"},
    {KT_SES_ARRAY_DEVICE, 2, 0x08, "ready to insert"},
    {KT_SES_ARRAY_DEVICE, 2, 0x04, "ready to remove"},
    {KT_SES_ARRAY_DEVICE, 2, 0x40, "do not remove"},

    {KT_SES_POWER_SUPPLY, 1, 0x80, "ident"},
    {KT_SES_POWER_SUPPLY, 3, 0x02, "AC fail", "ac-fail"},
    {KT_SES_POWER_SUPPLY, 3, 0x01, "DC fail", "dc-fail"},
    {KT_SES_POWER_SUPPLY, 3, 0x08, "over temperature failure", "overheated"},
    {KT_SES_POWER_SUPPLY, 3, 0x10, "off", "off"},
    {KT_SES_POWER_SUPPLY, 3, 0x40, "fail"},
    {KT_SES_POWER_SUPPLY, 2, 0x08, "DC over voltage"},
    {KT_SES_POWER_SUPPLY, 2, 0x04, "DC under voltage"},
    {KT_SES_POWER_SUPPLY, 2, 0x02, "DC over current"},
    {KT_SES_POWER_SUPPLY, 3, 0x04, "temperature warning"},

    {KT_SES_COOLING, 1, 0x80, "ident"},
    {KT_SES_COOLING, 3, 0x40, "fail", "failed"},
    {KT_SES_COOLING, 3, 0x10, "off", "off"},

    {KT_SES_TEMPERATURE, 1, 0x80, "ident"},
    {KT_SES_TEMPERATURE, 1, 0x40, "fail", "failed"},
    {KT_SES_TEMPERATURE, 3, 0x08, "over temperature failure"},
    {KT_SES_TEMPERATURE, 3, 0x04, "over temperature warning"},
    {KT_SES_TEMPERATURE, 3, 0x02, "under temperature failure"},
    {KT_SES_TEMPERATURE, 3, 0x01, "under temperature warning"},

    {KT_SES_DOOR_LOCK, 1, 0x80, "ident"},
    {KT_SES_DOOR_LOCK, 1, 0x40, "fail", "failed"},
    {KT_SES_DOOR_LOCK, 3, 0x02, "open", "open"},
    {KT_SES_DOOR_LOCK, 3, 0x01, "unlocked", "unlocked"},

    {KT_SES_ALARM, 1, 0x80, "ident"},
    {KT_SES_ALARM, 1, 0x40, "fail", "failed"},
    {KT_SES_ALARM, 3, 0x40, "muted", "muted"},
    {KT_SES_ALARM, 3, 0x80, "mute requested"},
    {KT_SES_ALARM, 3, 0x10, "remind"},
    {KT_SES_ALARM, 3, 0x08, "tone information"},
    {KT_SES_ALARM, 3, 0x04, "tone non-critical", "sounding"},
    {KT_SES_ALARM, 3, 0x02, "tone critical", "sounding"},
    {KT_SES_ALARM, 3, 0x01, "tone unrecoverable", "sounding"},

    {KT_SES_DISPLAY, 1, 0x80, "ident"},
    {KT_SES_DISPLAY, 1, 0x40, "fail", "failed"},

    {KT_SES_VOLTAGE, 1, 0x80, "ident"},
    {KT_SES_VOLTAGE, 1, 0x40, "fail", "failed"},
    {KT_SES_VOLTAGE, 1, 0x08, "over voltage warning"},
    {KT_SES_VOLTAGE, 1, 0x04, "under voltage warning"},
    {KT_SES_VOLTAGE, 1, 0x02, "over voltage critical"},
    {KT_SES_VOLTAGE, 1, 0x01, "under voltage critical"},
};
} // namespace

// The low four bits of an element's first status byte.
enum : KT_U8 { ELEMENT_OK = 1, ELEMENT_MISSING = 5, ELEMENT_UNKNOWN = 6 };

static bool isSlot(KT_U8 type) {
    return type == KT_SES_DEVICE || type == KT_SES_ARRAY_DEVICE;
}

// Adds the flags that are set; answers the condition of the first that has one.
static const char* addFlags(Json& object, const _Enc_Element_Info& element) {
    const char* condition = nullptr;
    Json set = Json::array();
    for (const Flag& flag : flags) {
        if (flag.type != ANY_TYPE && flag.type != element.ElementType) continue;
        if ((element.Status[flag.byte] & flag.bit) == 0) continue;
        set.push_back(flag.word);
        if (condition == nullptr) condition = flag.condition;
    }
    add(object, "flags", std::move(set));
    return condition;
}

// What an element measures or shows.
static void addReading(Json& object, const _Enc_Element_Info& element) {
    const KT_U8(&status)[4] = element.Status;
    const unsigned word = static_cast<unsigned>(status[2]) << 8 | status[3];
    switch (element.ElementType) {
    case KT_SES_DEVICE:
        add(object, "slot", status[1]);
        break;
    case KT_SES_ARRAY_DEVICE:
        add(object, "slot", element.ElementID);
        break;
    case KT_SES_COOLING:
        add(object, "rotation", ((status[1] & 0x07U) << 8 | status[2]) * 10);
        add(object, "speedCode", status[3] & 0x07);
        break;
    case KT_SES_TEMPERATURE:
        add(object, "temperature", status[2] - 20);
        break;
    case KT_SES_VOLTAGE:
        // Signed, in tens of millivolts.
        add(object, "voltage", static_cast<KT_S16>(word) / 100.0);
        break;
    case KT_SES_DISPLAY:
        add(object, "mode", status[1] & 0x03);
        add(object, "characters", hexOfBytes(status + 2, 2));
        break;
    default:
        break;
    }
}

void addElementStatus(Json& object, const _Enc_Element_Info& element, bool records) {
    const KT_U8 code = element.Status[0] & 0x0F;
    addCode(object, "status", elementStatusWords, code, "SesStatus");
    const char* condition = addFlags(object, element);
    if (code == ELEMENT_MISSING) condition = "missing";
    if (code == ELEMENT_UNKNOWN) condition = "unknown";
    if (condition == nullptr && code == ELEMENT_OK) condition = "ok";
    // What a slot says follows from the disk in it.
    if (condition != nullptr && !isSlot(element.ElementType)) add(object, "condition", condition);
    addReading(object, element);
    if (records) add(object, "Status", hexOf(element.Status));
}
