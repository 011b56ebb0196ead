// The library's records field by field, under the names that labs know them by: what `--records` adds to the words, and
// what settings, the battery and events are told in.
#pragma once

#include <span>

#include "Report/json.h"

enum class FieldKind { Number, Signed, Text, Hex };

struct RecordField {
    const char* name;
    size_t offset;
    size_t size;  // of one element
    size_t count; // elements; texts and bytes count as one element
    FieldKind kind;
};

using RecordFields = std::span<const RecordField>;

extern const RecordFields adapterFields;  // _Adapter_Info
extern const RecordFields configFields;   // _Adapter_Config_V2
extern const RecordFields batteryFields;  // _BBU_Info
extern const RecordFields settingsFields; // _HBA_Info_Page
extern const RecordFields diskFields;     // _HD_Info
extern const RecordFields diskRaidFields; // _HD_RAID_STATUS
extern const RecordFields diskConfigFields;
extern const RecordFields diskActivityFields;
extern const RecordFields diskSmartFields;
extern const RecordFields diskSpaceFields;
extern const RecordFields vdFields; // _LD_Info
extern const RecordFields vdStatusFields;
extern const RecordFields vdConfigFields;
extern const RecordFields arrayFields; // _DG_Info
extern const RecordFields arrayConfigFields;
extern const RecordFields blockFields;
extern const RecordFields expanderFields;
extern const RecordFields multiplierFields;
extern const RecordFields enclosureFields;
extern const RecordFields eventFields;

// Adds every field of the record to the object. A list whose last elements are the same ends in "...": the one before
// it goes on to the end of the field.
void addFields(Json& object, RecordFields fields, const void* record);

// The record as an object of its own.
Json fieldsOf(RecordFields fields, const void* record);
