// The adapter's stored settings page (image type 0).
#pragma once

#include "state/store.h"

namespace sim {

// The page in flash: the one that was written, else what follows from the adapter's record and settings.
_HBA_Info_Page settingsPage(const Context& context);
// The page as it was read from such an adapter; nothing follows from it.
void restoreSettingsPage(const Context& context, const _HBA_Info_Page& page);
// Takes over a page whose signature, sum and rates are right: serial number, model, addresses, rates and battery
// limits follow it. KT_ERR_FLASH_DATA for another.
KT_U8 writeSettingsPage(const Context& context, const _HBA_Info_Page& page);
// Leaves 0xFF everywhere. What only the page knows is gone: serial number, model and addresses; the settings stay.
void eraseSettingsPage(const Context& context);
// Makes the stored page follow settings that were changed by other means.
void settingsChanged(const Context& context, const _Adapter_Config_V2& config);

} // namespace sim
