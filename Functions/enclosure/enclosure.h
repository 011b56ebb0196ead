// The enc command: the enclosures behind the adapter and the state of what stands in them.
#pragma once

#include "Public/options.h"

int doEnclosure(int argc, char** argv, _cmd_struct* row);
extern const char enc_sh[];
extern const char enc_help[];
extern const OptionSet encOptions;

// The type code of an element word of -t; 0 for any other word.
KT_U8 SetElementType(const char* word);

// Each prints what it finds; it answers KT_OK or the library's status after printing what went wrong. enclosure
// ALL_ITEMS = every enclosure; element ALL_ELEMENTS = every element of the type, for the configuration the type as a
// whole.
inline constexpr KT_U8 ALL_ELEMENTS = 255;
KT_U8 getEnclosureInfo(KT_U8 adapter, KT_U16 enclosure);
KT_U8 getElementInfo(KT_U8 adapter, KT_U16 enclosure, KT_U8 element, KT_U8 type);
KT_U8 getElementConfigInfo(KT_U8 adapter, KT_U16 enclosure, KT_U8 element, KT_U8 type);

void PrintEncInfo(const _Enclosure_Info* enclosure);

// The name of an element type, with the line's end.
void PrintElementType(KT_U8 type);

// Degrees Celsius of a temperature byte.
int getTemperature(KT_U8 stored);

// The state of one element: what every type reports, then the fields of its own type.
void PrintEncElementInfo(const _Enc_Element_Info* element);

// The configuration of one element, or of its type as a whole when the element is ALL_ELEMENTS.
void PrintEncElementConfig(const _Enc_Element_Config* config);
