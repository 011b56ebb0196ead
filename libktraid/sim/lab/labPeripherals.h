// Enclosures' elements, key entries and encrypting ports of a lab.
#pragma once

#include "lab/labReader.h"
#include "state/store.h"

namespace sim {

// Adds the elements that the enclosure's object lists.
void addLabElements(Context& context, KT_U16 enclosure, LabReader& reader);
// Adds the key entries and encrypting ports that the adapter's object lists.
void addLabPeripherals(Context& context, LabReader& adapter);

} // namespace sim
