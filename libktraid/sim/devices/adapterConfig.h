// The adapter's own settings and its buzzer.
#pragma once

#include "state/store.h"

namespace sim {

// Takes over what may be set; serial number and model keep to the settings page.
KT_U8 setAdapterConfig(const Context& context, const _Adapter_Config_V2& wanted);
KT_U8 muteAdapter(const Context& context);

} // namespace sim
