#include "raid/cacheMode.h"

#include "state/adapterInfo.h"

namespace sim {

bool batteryKeepsCache(const Context& context) {
    const auto battery = find<_BBU_Info>(context, 0);
    if (!battery && !(adapterInfo(context).AdvancedFeatures & KT_ADV_BBU)) return false;
    // The state of a battery that nobody has looked at yet follows from its record.
    const auto state = find<BatteryState>(context, 0);
    return state ? !state->abnormal : battery && (battery->status & KT_BBU_PRESENT);
}

KT_U8 cacheModeFor(const Context& context, KT_U8 policy) {
    if ((policy & KT_CACHE_AUTO) == 0) return policy;
    const KT_U8 rest = policy & static_cast<KT_U8>(~(KT_CACHE_AUTO | KT_CACHE_OFF));
    return batteryKeepsCache(context) ? rest : static_cast<KT_U8>(rest | KT_CACHE_OFF);
}

} // namespace sim
