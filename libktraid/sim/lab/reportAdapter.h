// A reported adapter, its settings and its keys.
#pragma once

#include "lab/reportPast.h"

namespace sim {

void addReportedAdapter(Context& context, LabReader& adapter);
void addReportedKeys(Context& context, LabReader& adapter, const Past& past);

} // namespace sim
