// The fields of the records of what surrounds virtual disks: age, ciphers, batteries, elements, flash.
#pragma once

#include "lab/labFields.h"

#include <span>

namespace sim {

std::span<const RecordFields> peripheralTables();

} // namespace sim
