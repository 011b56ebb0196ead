// What is printed of an element: its SES status element, decoded.
#include <iterator>

#include "Functions/enclosure/enclosure.h"
#include "Public/elementFlags.h"

void PrintElementType(KT_U8 type) {
    switch (type) {
    case KT_SES_POWER_SUPPLY:
        out("Power Supply\n");
        break;
    case KT_SES_COOLING:
        out("Cooling Device\n");
        break;
    case KT_SES_TEMPERATURE:
        out("Temperature Sensor\n");
        break;
    case KT_SES_DOOR_LOCK:
        out("Door Lock\n");
        break;
    case KT_SES_ALARM:
        out("Audible Alarm\n");
        break;
    case KT_SES_DISPLAY:
        out("Display\n");
        break;
    case KT_SES_VOLTAGE:
        out("Voltage Sensor\n");
        break;
    case KT_SES_ARRAY_DEVICE:
        out("Array Device\n");
        break;
    default:
        out("Unspecified element\n");
        break;
    }
}

int getTemperature(KT_U8 stored) {
    // Stored from -20 degrees upwards.
    return stored - 20;
}

static const char* statusWord(KT_U8 common) {
    static const char* const words[] = {
        "unsupported",   "OK",      "critical",      "non-critical",     "unrecoverable",
        "not installed", "unknown", "not available", "no access allowed"};
    unsigned code = common & 0x0F;
    return code < std::size(words) ? words[code] : "reserved";
}

static const char* fanSpeedWord(unsigned code) {
    static const char* const words[] = {"stopped",      "lowest",        "second lowest",  "third lowest",
                                        "intermediate", "third highest", "second highest", "highest"};
    return words[code & 0x07];
}

static void printFlags(KT_U8 type, const KT_U8 (&status)[4]) {
    for (const ElementFlag& flag : elementFlags) {
        if (flag.type == type) out("%s: %s\n", flag.label, status[flag.byte] & flag.bit ? "yes" : "no");
    }
}

// What an element measures or shows.
static void printReading(const _Enc_Element_Info* element) {
    const KT_U8(&status)[4] = element->Status;
    unsigned word = static_cast<unsigned>(status[2]) << 8 | status[3];
    switch (element->ElementType) {
    case KT_SES_DEVICE:
        out("Slot: %d\n", status[1]);
        break;
    case KT_SES_ARRAY_DEVICE:
        // An array device reports no address of its own: its number in the enclosure is the slot's.
        out("Slot: %d\n", element->ElementID);
        break;
    case KT_SES_COOLING:
        // Eleven bits, in tens of revolutions.
        out("Actual speed: %d RPM\n", ((status[1] & 0x07) << 8 | status[2]) * 10);
        out("Speed code: %d (%s)\n", status[3] & 0x07, fanSpeedWord(status[3]));
        break;
    case KT_SES_TEMPERATURE:
        out("Temperature: %d Celsius\n", getTemperature(status[2]));
        break;
    case KT_SES_VOLTAGE:
        // Signed, in tens of millivolts.
        out("Voltage: %.2f V\n", static_cast<KT_S16>(word) / 100.0);
        break;
    case KT_SES_DISPLAY:
        out("Display mode: %d\n", status[1] & 0x03);
        out("Display characters: 0x%04X\n", word);
        break;
    default:
        break;
    }
}

void PrintEncElementInfo(const _Enc_Element_Info* element) {
    out("Enclosure ID: %d\n", element->EnclosureID);
    out("Element ID: %d\n", element->ElementID);
    out("Element type: ");
    PrintElementType(element->ElementType);
    out("Status: %s\n", statusWord(element->Status[0]));
    printFlags(ANY_ELEMENT, element->Status);
    printReading(element);
    if (element->ElementType != ANY_ELEMENT) printFlags(element->ElementType, element->Status);
}

void PrintEncElementConfig(const _Enc_Element_Config* config) {
    constexpr size_t room = sizeof config->Text;
    char text[room + 1];
    fieldText(text, config->Text, config->TextLength < room ? config->TextLength : room);
    out("Enclosure ID: %d\n", config->EnclosureID);
    if (config->ElementID != ALL_ELEMENTS) out("Element ID: %d\n", config->ElementID);
    out("Element type: ");
    PrintElementType(config->ElementType);
    out("Number of elements: %d\n", config->NumberOfElements);
    out("Sub-enclosure ID: %d\n", config->SubEnclosureID);
    out("Text: %s\n", text);
}
