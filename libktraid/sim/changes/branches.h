// Shelves and cables that are pulled out, with all that hangs on them, and put back.
#pragma once

#include "state/store.h"

#include <vector>

namespace sim {

// Everything behind a cable from one of the adapter's ports, or in a shelf.
struct Branch {
    std::vector<KT_U16> disks;
    std::vector<KT_U16> expanders;
    std::vector<KT_U16> multipliers;
    std::vector<KT_U16> enclosures;
};
Branch branchOfPort(const Context& context, KT_U8 port);
Branch branchOfEnclosure(const Context& context, KT_U16 enclosure);

// All of it is lost at one blow, and comes back together: KT_ERR_PORT_NOT_FOUND when there is nothing at the port (or
// nothing that was pulled there), KT_ERR_INVALID_ENCLOSURE for a shelf.
KT_U8 pullCable(const Context& context, KT_U8 port);
KT_U8 insertCable(const Context& context, KT_U8 port);
KT_U8 pullEnclosure(const Context& context, KT_U16 enclosure);
KT_U8 insertEnclosure(const Context& context, KT_U16 enclosure);

} // namespace sim
