#include "devices/peripherals.h"

#include "devices/battery.h"
#include "frame/settle.h"
#include "media/surface.h"

namespace sim {

KT_U64 settlePeripherals(Context& context) {
    return settleBattery(context);
}

void forgetDisk(const Context& context, KT_U16 pd) {
    erase<DiskAge>(context, pd);
    forgetSurface(context, pd);
    erase<DiskCipher>(context, pd);
    erase<ArrayLabel>(context, pd);
}

} // namespace sim
