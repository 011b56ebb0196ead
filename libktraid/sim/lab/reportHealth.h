// The age of reported disks, so that they answer for their health as they did.
#pragma once

#include "lab/labReader.h"
#include "state/store.h"

namespace sim {

void addReportedHealth(const Context& context, const LabReader& adapter);

} // namespace sim
