#include "Public/elementFlags.h"

static const ElementFlag flags[] = {
    {ANY_ELEMENT, 0, 0x40, "Predicted failure"},
    {ANY_ELEMENT, 0, 0x20, "Disabled"},
    {ANY_ELEMENT, 0, 0x10, "Swapped"},

    {KT_SES_DEVICE, 2, 0x02, "Ident"},
    {KT_SES_DEVICE, 2, 0x08, "Ready to insert"},
    {KT_SES_DEVICE, 2, 0x04, "Ready to remove"},
    {KT_SES_DEVICE, 2, 0x40, "Do not remove"},
    {KT_SES_DEVICE, 3, 0x40, "Fault sensed"},
    {KT_SES_DEVICE, 3, 0x20, "Fault requested"},
    {KT_SES_DEVICE, 3, 0x10, "Device off"},

    {KT_SES_ARRAY_DEVICE, 2, 0x02, "Ident"},
    {KT_SES_ARRAY_DEVICE, 3, 0x40, "Fault sensed"},
    {KT_SES_ARRAY_DEVICE, 3, 0x20, "Fault requested"},
    {KT_SES_ARRAY_DEVICE, 1, 0x02, "Rebuild"},
    {KT_SES_ARRAY_DEVICE, 1, 0x01, "Rebuild aborted"},
    {KT_SES_ARRAY_DEVICE, 3, 0x10, "Device off"},
    {KT_SES_ARRAY_DEVICE, 1, 0x20, "Hot spare"},
    {KT_SES_ARRAY_DEVICE, 1, 0x40, "Reserved device"},
    {KT_SES_ARRAY_DEVICE, 1, 0x10, "Consistency check"},
    {KT_SES_ARRAY_DEVICE, 1, 0x08, "In critical array"},
    {KT_SES_ARRAY_DEVICE, 1, 0x04, "In failed array"},
    {KT_SES_ARRAY_DEVICE, 2, 0x08, "Ready to insert"},
    {KT_SES_ARRAY_DEVICE, 2, 0x04, "Ready to remove"},
    {KT_SES_ARRAY_DEVICE, 2, 0x40, "Do not remove"},

    {KT_SES_POWER_SUPPLY, 1, 0x80, "Ident"},
    {KT_SES_POWER_SUPPLY, 3, 0x40, "Fail"},
    {KT_SES_POWER_SUPPLY, 3, 0x10, "Off"},
    {KT_SES_POWER_SUPPLY, 3, 0x02, "AC fail"},
    {KT_SES_POWER_SUPPLY, 3, 0x01, "DC fail"},
    {KT_SES_POWER_SUPPLY, 2, 0x08, "DC over voltage"},
    {KT_SES_POWER_SUPPLY, 2, 0x04, "DC under voltage"},
    {KT_SES_POWER_SUPPLY, 2, 0x02, "DC over current"},
    {KT_SES_POWER_SUPPLY, 3, 0x08, "Over temperature failure"},
    {KT_SES_POWER_SUPPLY, 3, 0x04, "Temperature warning"},

    {KT_SES_COOLING, 1, 0x80, "Ident"},
    {KT_SES_COOLING, 3, 0x40, "Fail"},
    {KT_SES_COOLING, 3, 0x10, "Off"},

    {KT_SES_TEMPERATURE, 1, 0x80, "Ident"},
    {KT_SES_TEMPERATURE, 1, 0x40, "Fail"},
    {KT_SES_TEMPERATURE, 3, 0x08, "Over temperature failure"},
    {KT_SES_TEMPERATURE, 3, 0x04, "Over temperature warning"},
    {KT_SES_TEMPERATURE, 3, 0x02, "Under temperature failure"},
    {KT_SES_TEMPERATURE, 3, 0x01, "Under temperature warning"},

    {KT_SES_DOOR_LOCK, 1, 0x80, "Ident"},
    {KT_SES_DOOR_LOCK, 1, 0x40, "Fail"},
    {KT_SES_DOOR_LOCK, 3, 0x02, "Open"},
    {KT_SES_DOOR_LOCK, 3, 0x01, "Unlocked"},

    {KT_SES_ALARM, 1, 0x80, "Ident"},
    {KT_SES_ALARM, 1, 0x40, "Fail"},
    {KT_SES_ALARM, 3, 0x80, "Mute requested"},
    {KT_SES_ALARM, 3, 0x40, "Muted"},
    {KT_SES_ALARM, 3, 0x10, "Remind"},
    {KT_SES_ALARM, 3, 0x08, "Tone information"},
    {KT_SES_ALARM, 3, 0x04, "Tone non-critical"},
    {KT_SES_ALARM, 3, 0x02, "Tone critical"},
    {KT_SES_ALARM, 3, 0x01, "Tone unrecoverable"},

    {KT_SES_DISPLAY, 1, 0x80, "Ident"},
    {KT_SES_DISPLAY, 1, 0x40, "Fail"},

    {KT_SES_VOLTAGE, 1, 0x80, "Ident"},
    {KT_SES_VOLTAGE, 1, 0x40, "Fail"},
    {KT_SES_VOLTAGE, 1, 0x08, "Over voltage warning"},
    {KT_SES_VOLTAGE, 1, 0x04, "Under voltage warning"},
    {KT_SES_VOLTAGE, 1, 0x02, "Over voltage critical"},
    {KT_SES_VOLTAGE, 1, 0x01, "Under voltage critical"},
};

const std::span<const ElementFlag> elementFlags = flags;

const char* elementFlagLabel(KT_U8 type, KT_U8 byte, KT_U8 bit) {
    for (const ElementFlag& flag : elementFlags) {
        if (flag.type == type && flag.byte == byte && flag.bit == bit) return flag.label;
    }
    return nullptr;
}
