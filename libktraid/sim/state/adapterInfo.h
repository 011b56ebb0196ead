// What the adapter is and how it is set.
#pragma once

#include "state/store.h"

namespace sim {

_Adapter_Info adapterInfo(const Context& context);
_Adapter_Config_V2 adapterConfig(const Context& context);
inline bool isArrayBased(const _Adapter_Info& adapter) {
    return adapter.MaxDiskGroup != 0;
}

} // namespace sim
