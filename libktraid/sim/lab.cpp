#include "lab.h"

#include "clock.h"

namespace sim {

void fillDefaultLab(Store& store, const void* /*argument*/) {
    GlobalState global = {};
    global.sgVersion = 30536;
    save(store, ADAPTER_GLOBAL, 0, global);
    const KT_U64 now = realNow();
    save(store, ADAPTER_GLOBAL, 0, Clock{now, now, 1000, 0, {}});
}

} // namespace sim
