// NVSRAM and mailbox registers of the adapter. Statuses as the calls answer them.
#pragma once

#include "state/store.h"

namespace sim {

KT_U8 accessNvsram(const Context& context, KT_U8 action, _NVSRAM_Data& data);
KT_U8 readRegister(const Context& context, KT_U8 type, KT_U32 address, _Register_Request& request);
KT_U8 writeRegister(const Context& context, KT_U8 type, KT_U32 address, const _Register_Request& request);

} // namespace sim
