// The arrays and virtual disks of a reported adapter.
#pragma once

#include "lab/reportPast.h"

namespace sim {

void addReportedVolumes(Context& context, LabReader& adapter, const Past& past);

} // namespace sim
