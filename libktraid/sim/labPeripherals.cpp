#include "lab.h"
#include "labReader.h"

namespace sim {

void addLabPeripherals(Context& /*context*/, LabReader& /*adapter*/) {}

} // namespace sim
