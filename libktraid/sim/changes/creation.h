// Making virtual disks.
#pragma once

#include "raid/candidates.h"

namespace sim {

// A virtual disk to be.
struct VdPlan {
    Geometry geometry;
    KT_U16 stripe;
    KT_U8 sectorCoefficient;
    KT_U8 cachePolicy;
    KT_U8 initialization;
    KT_U8 waterMark;
    KT_U8 name[16];
    KT_U16 dgid;               // KT_NO_ID outside arrays
    KT_U64 size;               // KiB
    std::vector<KT_U16> disks; // by slot
    std::vector<KT_U64> kib;   // by slot: KiB on that disk
    KT_U64 startKib;           // where on the disks, NEVER = wherever it fits
};

// Checks that do not depend on the disks; KT_OK or what is wrong.
KT_U8 checkName(const KT_U8* name);
KT_U8 checkStripe(const _Adapter_Info& adapter, KT_U16 stripe);
KT_U8 checkOptions(const _Adapter_Info& adapter, KT_U8 level, KT_U8 cachePolicy, KT_U8 initialization, KT_U8 rounding,
                   KT_U8 sectorCoefficient);
// KiB rounded down to what the scheme allows; 0 when nothing is left.
KT_U64 roundSize(KT_U64 kib, KT_U8 scheme);
KT_U16 defaultStripe();
inline KT_U64 mbToKib(KT_U64 megabytes) {
    return megabytes < NEVER / KIB_PER_MB ? megabytes * KIB_PER_MB : NEVER;
}

// Lays the blocks out, adds the virtual disk, logs it and starts its initialisation. Answers its id in `vd`.
KT_U8 buildVd(const Context& context, const VdPlan& plan, KT_U16& vd);
// KiB of an initialisation or a check: what is done on each disk.
KT_U64 initializationWork(KT_U8 kind, KT_U64 share);

// KT_LD_Create. Size 0 takes all there is. Its unit is MB in what a person asks for, KiB in what a configuration file
// restores. From the second generation on the record tells: only people set ReservedForApp, or a hybrid level's water
// mark. The first generation's records (DevID up to 0x4700) do not, so that what fits as MB is MB there, and what does
// not but could come from a file is KiB.
KT_U8 createLd(const Context& context, const _Create_LD_Param& param);
// KT_LD_GetMaxSize: Size in KiB.
KT_U8 maxLdSize(const Context& context, _Create_LD_Param& param);

} // namespace sim
