// The enclosures, expanders and other parts of a reported adapter.
#pragma once

#include "lab/labReader.h"
#include "state/store.h"

namespace sim {

void addReportedParts(Context& context, LabReader& adapter);

} // namespace sim
