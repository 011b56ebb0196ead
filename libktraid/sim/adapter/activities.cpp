#include "adapter/settle.h"

namespace sim {

KT_U64 settleRaid(Context& /*context*/) {
    return NEVER;
}

} // namespace sim
