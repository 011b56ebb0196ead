#include "adapter/battery.h"
#include "adapter/settle.h"

namespace sim {

KT_U64 settlePeripherals(Context& context) {
    return settleBattery(context);
}

} // namespace sim
