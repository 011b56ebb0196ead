// The disks of a reported adapter.
#pragma once

#include "lab/reportPast.h"

namespace sim {

void addReportedDisks(Context& context, LabReader& adapter, const Past& past);

} // namespace sim
