// The adapter's flash: images that come and go page by page. Statuses as the calls answer them; what fails inside an
// image logs its event and sets context.keepOnFailure.
#pragma once

#include "devices/flashImage.h"
#include "state/store.h"

namespace sim {

inline constexpr KT_U32 FLASH_PAGE = sizeof(_Flash_Data::Data);

// The next page of an update; page 0 begins a new one. The image is in flash with its last page, when it is sound, and
// runs from the next boot on (flashRegions.h).
KT_U8 updateImage(Context& context, KT_U8 type, const _Flash_Data& page);
// Fills the page that page.PageNum names.
KT_U8 backupImage(Context& context, KT_U8 type, _Flash_Data& page);
// The BIOS takes the autoload image along.
KT_U8 eraseImage(const Context& context, KT_U8 type);
// What age and radiation do to the copy that was written last: KT_ERR_FLASH_TYPE when the adapter has no such images,
// KT_ERR_FLASH_DATA when it holds none.
KT_U8 damageImage(const Context& context, KT_U8 type, ImageFault fault);
KT_U8 announceImage(const Context& context, const _KT_FLASH_PER_DATA& announcement);
// The page that remembers disk ids. Those in use stay with their disks, those of pulled disks are free to be given to
// others. KT_PAGE_PD_FORCE numbers the disks afresh, and does not mind background work.
KT_U8 erasePdPage(Context& context, KT_U8 pageCode);

} // namespace sim
