// The fields of every record by name, so that labs can state and print them one by one.
#pragma once

#include "state/kinds.h"

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace sim {

// Most of the room reads through LabReader and needs no more of JSON than its name; compiling all of it takes seconds.
using Json = nlohmann::ordered_json;

// What is wrong with a lab, with the place: "adapters[0].disks[3].size: ...".
struct LabError {
    std::string message;
};

enum class FieldType { Number, Signed, Text, Hex };

struct Field {
    const char* name;
    size_t offset;
    size_t size;  // of one element
    size_t count; // elements; text and hex fields are one element of `size` bytes
    FieldType type;
};

struct RecordFields {
    Kind kind;
    const char* section; // the lab's word for rows of this kind
    size_t size;
    const Field* fields;
    size_t fieldCount;
};

const RecordFields* fieldsOf(Kind kind);
const RecordFields* fieldsOfSection(const std::string& section);

} // namespace sim
