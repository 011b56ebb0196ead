#include "Report/element.h"

#include "Public/elementFlags.h"
#include "Report/parts.h"

namespace {
// A yes/no field of a status element (Public/elementFlags.h), and what labs call it when it is set. Those that say most
// about the element come first.
struct Flag {
    KT_U8 type;
    KT_U8 byte;
    KT_U8 bit;
    const char* condition = nullptr;
};
const Flag flags[] = {
    {ANY_ELEMENT, 0, 0x40},
    {ANY_ELEMENT, 0, 0x20},
    {ANY_ELEMENT, 0, 0x10},

    {KT_SES_DEVICE, 2, 0x02},
    {KT_SES_DEVICE, 2, 0x08},
    {KT_SES_DEVICE, 2, 0x04},
    {KT_SES_DEVICE, 2, 0x40},
    {KT_SES_DEVICE, 3, 0x40},
    {KT_SES_DEVICE, 3, 0x20},
    {KT_SES_DEVICE, 3, 0x10},

    {KT_SES_ARRAY_DEVICE, 2, 0x02},
    {KT_SES_ARRAY_DEVICE, 3, 0x40},
    {KT_SES_ARRAY_DEVICE, 3, 0x20},
    {KT_SES_ARRAY_DEVICE, 1, 0x02},
    {KT_SES_ARRAY_DEVICE, 1, 0x01},
    {KT_SES_ARRAY_DEVICE, 3, 0x10},
    {KT_SES_ARRAY_DEVICE, 1, 0x20},
    {KT_SES_ARRAY_DEVICE, 1, 0x40},
    {KT_SES_ARRAY_DEVICE, 1, 0x10},
    {KT_SES_ARRAY_DEVICE, 1, 0x08},
    {KT_SES_ARRAY_DEVICE, 1, 0x04},
    {KT_SES_ARRAY_DEVICE, 2, 0x08},
    {KT_SES_ARRAY_DEVICE, 2, 0x04},
    {KT_SES_ARRAY_DEVICE, 2, 0x40},

    {KT_SES_POWER_SUPPLY, 1, 0x80},
    {KT_SES_POWER_SUPPLY, 3, 0x02, "ac-fail"},
    {KT_SES_POWER_SUPPLY, 3, 0x01, "dc-fail"},
    {KT_SES_POWER_SUPPLY, 3, 0x08, "overheated"},
    {KT_SES_POWER_SUPPLY, 3, 0x10, "off"},
    {KT_SES_POWER_SUPPLY, 3, 0x40},
    {KT_SES_POWER_SUPPLY, 2, 0x08},
    {KT_SES_POWER_SUPPLY, 2, 0x04},
    {KT_SES_POWER_SUPPLY, 2, 0x02},
    {KT_SES_POWER_SUPPLY, 3, 0x04},

    {KT_SES_COOLING, 1, 0x80},
    {KT_SES_COOLING, 3, 0x40, "failed"},
    {KT_SES_COOLING, 3, 0x10, "off"},

    {KT_SES_TEMPERATURE, 1, 0x80},
    {KT_SES_TEMPERATURE, 1, 0x40, "failed"},
    {KT_SES_TEMPERATURE, 3, 0x08},
    {KT_SES_TEMPERATURE, 3, 0x04},
    {KT_SES_TEMPERATURE, 3, 0x02},
    {KT_SES_TEMPERATURE, 3, 0x01},

    {KT_SES_DOOR_LOCK, 1, 0x80},
    {KT_SES_DOOR_LOCK, 1, 0x40, "failed"},
    {KT_SES_DOOR_LOCK, 3, 0x02, "open"},
    {KT_SES_DOOR_LOCK, 3, 0x01, "unlocked"},

    {KT_SES_ALARM, 1, 0x80},
    {KT_SES_ALARM, 1, 0x40, "failed"},
    {KT_SES_ALARM, 3, 0x40, "muted"},
    {KT_SES_ALARM, 3, 0x80},
    {KT_SES_ALARM, 3, 0x10},
    {KT_SES_ALARM, 3, 0x08},
    {KT_SES_ALARM, 3, 0x04, "sounding"},
    {KT_SES_ALARM, 3, 0x02, "sounding"},
    {KT_SES_ALARM, 3, 0x01, "sounding"},

    {KT_SES_DISPLAY, 1, 0x80},
    {KT_SES_DISPLAY, 1, 0x40, "failed"},

    {KT_SES_VOLTAGE, 1, 0x80},
    {KT_SES_VOLTAGE, 1, 0x40, "failed"},
    {KT_SES_VOLTAGE, 1, 0x08},
    {KT_SES_VOLTAGE, 1, 0x04},
    {KT_SES_VOLTAGE, 1, 0x02},
    {KT_SES_VOLTAGE, 1, 0x01},
};
} // namespace

// The low four bits of an element's first status byte.
enum : KT_U8 { ELEMENT_OK = 1, ELEMENT_MISSING = 5, ELEMENT_UNKNOWN = 6 };

static bool isSlot(KT_U8 type) {
    return type == KT_SES_DEVICE || type == KT_SES_ARRAY_DEVICE;
}

// Its label as a word inside a sentence: in lower case but for abbreviations ("AC fail").
static std::string wordOf(const Flag& flag) {
    const char* label = elementFlagLabel(flag.type, flag.byte, flag.bit);
    std::string word = label != nullptr ? label : "";
    const bool abbreviated = word.size() > 1 && word[1] >= 'A' && word[1] <= 'Z';
    if (!word.empty() && !abbreviated) word[0] = static_cast<char>(word[0] - 'A' + 'a');
    return word;
}

// Adds the flags that are set; answers the condition of the first that has one.
static const char* addFlags(Json& object, const _Enc_Element_Info& element) {
    const char* condition = nullptr;
    Json set = Json::array();
    for (const Flag& flag : flags) {
        if (flag.type != ANY_ELEMENT && flag.type != element.ElementType) continue;
        if ((element.Status[flag.byte] & flag.bit) == 0) continue;
        set.push_back(wordOf(flag));
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
