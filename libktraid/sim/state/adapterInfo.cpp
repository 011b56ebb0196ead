#include "state/adapterInfo.h"

namespace sim {

_Adapter_Info adapterInfo(const Context& context) {
    return find<_Adapter_Info>(context, 0).value_or(_Adapter_Info{});
}

_Adapter_Config_V2 adapterConfig(const Context& context) {
    return find<_Adapter_Config_V2>(context, 0).value_or(_Adapter_Config_V2{});
}

} // namespace sim
