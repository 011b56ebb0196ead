// The disks that the adapter sees.
#pragma once

#include "state/store.h"

namespace sim {

struct Disk {
    _HD_Info info;
    PdState state;
};

// KT_OK and the disk, or KT_ERR_INVALID_PD.
KT_U8 findDisk(const Context& context, KT_U16 id, Disk& disk);
inline void saveDisk(const Context& context, const Disk& disk) {
    save(context, disk.state.config.HDID, disk.state);
}
// The order in which disks were lost: all that go at one blow have one number. beginLoss() counts a new one.
KT_U64 lastLoss(const Context& context);
KT_U64 beginLoss(const Context& context);
bool isSolidState(const _HD_Info& disk);
// What only the disk itself carried is gone with it: to be called when another disk takes its id.
void forgetDisk(const Context& context, KT_U16 pd);

} // namespace sim
