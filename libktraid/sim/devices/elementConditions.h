// What the elements of an enclosure can be: their kinds, the conditions that each knows, and what a sensor's reading
// means. Tables, for enclosureElements.h.
#pragma once

#include "state/events.h"

#include <span>
#include <string>
#include <vector>

namespace sim {

// The element status code, the low four bits of the first byte.
enum : KT_U8 { SES_OK = 1, SES_CRITICAL = 2, SES_NONCRITICAL = 3, SES_NOT_INSTALLED = 5, SES_CODE_MASK = 0x0F };
enum : KT_U8 { SES_PREDICTED_FAILURE = 0x40 };
// Bits of the slot elements.
enum : KT_U8 {
    SLOT_OK = 0x80,
    SLOT_SPARE = 0x20,
    SLOT_CHECK = 0x10,
    SLOT_CRITICAL_ARRAY = 0x08,
    SLOT_FAILED_ARRAY = 0x04,
    SLOT_REBUILD = 0x02,
    SLOT_REBUILD_ABORTED = 0x01,
    SLOT_IDENT = 0x02,
    SLOT_FAULT = 0x40
};
// Bits of the others.
enum : KT_U8 { ALARM_MUTED = 0x40, TONE_NONCRITICAL = 0x04, TONE_CRITICAL = 0x02 };
enum : KT_U8 { DOOR_OPEN = 0x02, DOOR_UNLOCKED = 0x01 };
enum : KT_U8 { HOT_SWAP = 0x80, REQUESTED_ON = 0x20 };
inline constexpr EventName NO_EVENT{0xFFFFFFFF};

struct ElementKind {
    KT_U8 type;       // KT_SES_*
    const char* word; // as `enc -t` and labs call it
    const char* name;
};
std::span<const ElementKind> elementKinds();
const ElementKind* elementKind(KT_U8 type); // null for an unknown one
const ElementKind* elementKindNamed(const std::string& word);
std::vector<std::string> elementWords();
// Slots are as their disks are.
bool isSlot(KT_U8 type);

// A condition of a type, or (EVERY_TYPE) of all but slots: the event that says so, what the status element becomes.
inline constexpr KT_U8 EVERY_TYPE = 0;
struct Condition {
    const char* word;
    EventName event;
    KT_U8 type;
    KT_U8 status[4];
    EventSeverity severity;
};
const Condition* conditionNamed(KT_U8 type, const std::string& word); // null when the type does not know the word
std::vector<std::string> conditionWords(KT_U8 type);

// What a sensor's reading means.
struct Reading {
    bool (*holds)(int value, int nominal);
    EventName event;
    KT_U8 type;
    KT_U8 code;
    KT_U8 flag;
    EventSeverity severity;
};
// Null for a type that measures nothing. `nominal`: hundredths of a volt, of voltages only.
const Reading* readingOf(KT_U8 type, int value, int nominal);
// What is logged of a status element that says something is wrong; NO_EVENT of others. `nominal` as above.
struct Alert {
    EventName event;
    EventSeverity severity;
};
Alert alertOf(KT_U8 type, const KT_U8 (&status)[4], int nominal);
// Writes the value and what it means into the status element.
void putReading(KT_U8 type, const Reading& reading, int value, KT_U8 (&status)[4]);

} // namespace sim
