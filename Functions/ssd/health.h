// What a solid-state disk tells of its life.
#pragma once

#include "ktraid.h"

// How a SMART data page was read: KT_OK, or the library's status; `sound` is false for a page whose bytes do not sum to
// zero.
struct SmartPage {
    KT_U8 status;
    bool sound;
    _SSD_Smart_Data data;
};
void readSmartPage(KT_U16 pd, SmartPage& page);

// Prints one line an attribute, known ones in words and units, others by their number.
void printHealth(const _SSD_Smart_Data& data);

// A value as it is printed, with its unit.
struct ValueText {
    char text[64];
};

// What of that stands in a table; "N/A" for what the disk does not tell.
struct HealthColumns {
    ValueText life;
    ValueText written;
    ValueText hours;
    ValueText temperature;
};
HealthColumns healthColumns(const _SSD_Smart_Data& data);
