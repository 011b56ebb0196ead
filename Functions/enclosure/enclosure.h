// The enc command: the enclosures behind the adapter and the state of what stands in them.
#pragma once

#include "Public/optionRows.h"

int doEnclosure(int argc, char** argv, _cmd_struct* row);

inline constexpr char enc_sh[] = ":Get enclosure, enclosure element or enclosure config information.";
inline constexpr OptionRow encRows[] = {
    {'o', "object", "<enc|ele|elecfg>", Takes::Words, ONCE | REQUIRED,
     "What to display: enclosures (enc), the status of enclosure elements\n"
     "(ele) or their configuration (elecfg)."},
    {'i', "id", "<enclosure id>", Takes::Enclosure, ONCE, "ID of the enclosure, 0 to 254. Default: all enclosures."},
    {'t', "type", "<dev|arydev|pow|fan|tpr|dor|alm|dpl|vlt>", Takes::Words, ONCE,
     "Type of the elements, required by ele and elecfg: device (dev), array\n"
     "device (arydev), power supply (pow), cooling device (fan), temperature\n"
     "sensor (tpr), door lock (dor), audible alarm (alm), display (dpl) or\n"
     "voltage sensor (vlt)."},
    {'e', "element", "<element id>", Takes::Text, ONCE,
     "ID of the element, 0 to 254. Default: all elements of the type; for\n"
     "elecfg, the type as a whole."},
    HELP_ROW,
    {'a', "", "<value>", Takes::Text, UNNAMED},
};
inline constexpr CommandWords encWords = {
    .usage = "\nenc -o <enc|ele|elecfg> [-i <enclosure id>] [-t <type>] [-e <element id>] [-h]\n",
    .rows = encRows,
    .examples = "enc -o enc\n\n"
                "Display all enclosures.\n\n"
                "enc -o ele -i 0 -t fan -e 1\n\n"
                "Display the status of cooling device 1 of enclosure 0.\n"};
inline constexpr const char* enc_help = helpOf<encWords>;
inline constexpr const OptionSet& encOptions = optionSet<encWords>;

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
