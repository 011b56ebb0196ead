#include "media/disks.h"

#include "media/surface.h"

namespace sim {

KT_U8 findDisk(const Context& context, KT_U16 id, Disk& disk) {
    const auto info = find<_HD_Info>(context, id);
    if (!info) return KT_ERR_INVALID_PD;
    disk = Disk{*info, find<PdState>(context, id).value_or(PdState{})};
    disk.state.config.HDID = id;
    return KT_OK;
}

KT_U64 lastLoss(const Context& context) {
    return find<AdapterState>(context, 0).value_or(AdapterState{}).losses;
}

KT_U64 beginLoss(const Context& context) {
    AdapterState adapter = find<AdapterState>(context, 0).value_or(AdapterState{});
    ++adapter.losses;
    save(context, 0, adapter);
    return adapter.losses;
}

bool isSolidState(const _HD_Info& disk) {
    return disk.HD_SSD_Type != 0 || (disk.HDType & KT_HD_SSD) != 0;
}

void forgetDisk(const Context& context, KT_U16 pd) {
    erase<DiskAge>(context, pd);
    erase<ToldHealth>(context, pd);
    forgetSurface(context, pd);
    erase<DiskCipher>(context, pd);
    erase<ArrayLabel>(context, pd);
    erase<SolidState>(context, pd);
    erase<MicrocodeUpdate>(context, pd);
}

} // namespace sim
