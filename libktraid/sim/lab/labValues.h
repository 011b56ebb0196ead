// Values of fields as JSON and back.
#pragma once

#include "lab/labFields.h"

namespace sim {

// Sets the named field; false when the record has none of that name. Throws LabError when the value does not fit.
bool setField(const RecordFields& table, void* record, const std::string& name, const Json& value,
              const std::string& path);
// The same for a value that stands under another word; messages name `place`.
bool setFieldAt(const RecordFields& table, void* record, const std::string& name, const Json& value,
                const std::string& place);
// The record's non-zero fields.
Json fieldsToJson(const RecordFields& table, const void* record);

std::string toHex(const void* bytes, size_t size);
// Text of a lab (UTF-8, code points up to 255) to the bytes of a record, and back.
std::string textToBytes(const std::string& text, const std::string& path);
std::string bytesToText(const void* bytes, size_t size);

} // namespace sim
