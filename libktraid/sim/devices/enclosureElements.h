// Enclosures and their elements, as SCSI enclosure services describe them.
#pragma once

#include "devices/elementConditions.h"

namespace sim {

enum : KT_U8 { OVERALL_ELEMENT = 255 }; // stands for all elements of a type

KT_U8 getElementInfo(const Context& context, KT_U16 enclosure, KT_U8 type, KT_U8 element, _Enc_Element_Info& info);
KT_U8 getElementConfig(const Context& context, KT_U16 enclosure, KT_U8 type, KT_U8 element,
                       _Enc_Element_Config& config);

// Adds the next element of the type, in good order; KT_NO_ID when there are 255 already.
KT_U16 addElement(const Context& context, KT_U16 enclosure, KT_U8 type, const std::string& text);
// The elements of a shelf with that many slots.
void addShelf(const Context& context, KT_U16 enclosure, unsigned slots);
// Slots whose rows say something else than their disks make them say are as they are told; zero is nothing told.
void restoreSlots(const Context& context);
// Makes _Enclosure_Info count the types that there are.
void countElementTypes(const Context& context, KT_U16 enclosure);

// Puts an element into a condition by its word ("failed", "ac-fail", "open", "ok" ...), with its event. False when
// there is no such element or its type does not know the word.
bool setElementCondition(const Context& context, KT_U16 enclosure, KT_U8 type, KT_U8 element, const std::string& word);
// What a sensor measures: Celsius, hundredths of a volt, or a fan's turns a minute.
bool setElementReading(const Context& context, KT_U16 enclosure, KT_U8 type, KT_U8 element, int value);

// Logs what is wrong with elements, as an adapter that boots finds it.
void tellElements(const Context& context);

} // namespace sim
