// A virtual disk to be: checking what is asked for, laying it out and making it.
#pragma once

#include "raid/volumes.h"

#include <vector>

namespace sim {

// A virtual disk to be.
struct VdPlan {
    Geometry geometry;
    KT_U16 stripe;
    KT_U8 sectorCoefficient;
    KT_U8 cachePolicy;
    KT_U8 initialization;
    KT_U8 name[16];
    KT_U16 dgid;               // KT_NO_ID outside arrays
    KT_U64 size;               // KiB
    bool whole;                // which is all that there is room for
    std::vector<KT_U16> disks; // by slot
    std::vector<KT_U64> kib;   // by slot: KiB on that disk
    KT_U64 startKib;           // where on the disks, NEVER = wherever it fits
};

// Checks that do not depend on the disks; KT_OK or what is wrong.
KT_U8 checkName(const KT_U8* name);
KT_U8 checkStripe(const _Adapter_Info& adapter, KT_U16 stripe);
// What creation asks for beside size and place.
struct VdOptions {
    KT_U8 level;
    KT_U8 cachePolicy = 0;
    KT_U8 initialization = KT_INIT_NONE;
    KT_U8 rounding = KT_ROUND_NONE;
    KT_U8 sectorCoefficient = 1;
};
KT_U8 checkOptions(const _Adapter_Info& adapter, const VdOptions& options);
// KiB rounded down to what the scheme allows; 0 when nothing is left.
KT_U64 roundSize(KT_U64 kib, KT_U8 scheme);
KT_U16 defaultStripe();
// Whether a size, rounded and perhaps given in megabytes, is all of the room; both in KiB.
inline bool isWhole(KT_U64 wanted, KT_U64 size, KT_U64 room) {
    return wanted == 0 || room - size < KIB_PER_MB;
}
inline KT_U64 mbToKib(KT_U64 megabytes) {
    return megabytes < NEVER / KIB_PER_MB ? megabytes * KIB_PER_MB : NEVER;
}

// Lays the blocks out, adds the virtual disk, logs it and starts its initialisation. Answers its id in `vd`.
KT_U8 buildVd(const Context& context, const VdPlan& plan, KT_U16& vd);

} // namespace sim
