// What a drive says when it is asked through SMART or ATA commands.
#pragma once

#include "state/store.h"

namespace sim {

KT_U8 getSmartInfo(const Context& context, KT_U16 pd, _SMART_Info& info);
// The non-data commands a drive knows; others end with an aborted command, as the registers say.
KT_U8 passThroughAta(const Context& context, KT_U16 pd, _ATA_PassThrough& command);

} // namespace sim
