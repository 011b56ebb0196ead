// Starting and steering activities as the library's calls ask for it.
#pragma once

#include "state/store.h"

namespace sim {

// KiB of an initialisation or a check: what is done on each disk.
KT_U64 initializationWork(KT_U8 kind, KT_U64 share);
// `initType` is KT_INIT_QUICK, KT_INIT_FOREGROUND or KT_INIT_BACKGROUND.
KT_U8 startInitialization(const Context& context, KT_U16 id, KT_U8 initType);
KT_U8 startCheck(const Context& context, KT_U16 id, KT_U8 fix);
KT_U8 startPatrol(const Context& context, KT_U16 id);
KT_U8 controlVd(const Context& context, KT_U16 id, KT_U8 control);
KT_U8 controlArray(const Context& context, KT_U16 id, KT_U8 control);
KT_U8 controlPatrol(const Context& context, KT_U16 id, KT_U8 control);

} // namespace sim
