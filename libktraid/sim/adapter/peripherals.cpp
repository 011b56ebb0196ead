#include "adapter/settle.h"

namespace sim {

KT_U64 settlePeripherals(Context& /*context*/) {
    return NEVER;
}

} // namespace sim
