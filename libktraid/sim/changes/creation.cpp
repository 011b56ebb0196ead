#include "changes/creation.h"

#include "changes/arrays.h"
#include "changes/vdPlan.h"
#include "media/blocks.h"
#include "raid/candidates.h"

#include <algorithm>

namespace sim {

static const KT_U64 LEAST_KIB = KIB_PER_MB;

static KT_U64 downTo(KT_U64 kib, KT_U64 unit) {
    return kib - kib % unit;
}

// Levels whose members hold different amounts: the room on each, in `plan.kib`, shrinks to what `wanted` needs.
static KT_U64 shareUnevenly(VdPlan& plan, const std::vector<Disk>& disks, KT_U64 wanted, KT_U8 rounding) {
    const bool hddCounts = plan.geometry.level == KT_TANDEM_SAFE || plan.geometry.level == KT_HYBRID;
    KT_U64 most = 0;
    for (size_t i = 0; i < disks.size(); ++i)
        if (!hddCounts || !isSolidState(disks[i].info)) most += plan.kib[i];
    const KT_U64 size = roundSize(wanted ? wanted : most, rounding);
    if (size > most || size == 0) return 0;
    const double part = static_cast<double>(size) / static_cast<double>(most);
    for (size_t i = 0; i < disks.size(); ++i) {
        if (hddCounts && isSolidState(disks[i].info)) continue;
        const auto asked = static_cast<KT_U64>(static_cast<double>(plan.kib[i]) * part) + plan.stripe;
        plan.kib[i] = std::min(plan.kib[i], downTo(asked, plan.stripe));
    }
    return size;
}

static KT_U64 shareEvenly(VdPlan& plan, KT_U64 wanted, KT_U8 rounding) {
    const KT_U64 room = *std::min_element(plan.kib.begin(), plan.kib.end());
    const KT_U64 most = capacityOf(plan.geometry, room);
    const KT_U64 size = roundSize(wanted ? wanted : most, rounding);
    if (size > most || size == 0) return 0;
    plan.whole = isWhole(wanted, size, most);
    std::fill(plan.kib.begin(), plan.kib.end(), shareFor(plan.geometry, size, plan.stripe));
    return size;
}

// Fills in `kib` and `size` from the free room of the disks.
static KT_U8 layOut(const Context& context, VdPlan& plan, const std::vector<Disk>& disks, KT_U64 wanted,
                    KT_U8 rounding) {
    for (const Disk& disk : disks) {
        plan.disks.push_back(disk.state.config.HDID);
        plan.kib.push_back(downTo(largestGapKib(context, disk), plan.stripe));
        if (plan.kib.back() == 0) return KT_ERR_NO_RESOURCE;
    }
    const bool uneven = isHybridLevel(plan.geometry.level) || plan.geometry.level == KT_JBOD;
    if (wanted != 0 && wanted < LEAST_KIB) return KT_ERR_OUT_OF_RANGE;
    plan.size = uneven ? shareUnevenly(plan, disks, wanted, rounding) : shareEvenly(plan, wanted, rounding);
    return plan.size < LEAST_KIB ? KT_U8{KT_ERR_NO_RESOURCE} : KT_U8{KT_OK};
}

// Everything about the record up to the lay-out on the disks.
static KT_U8 planLd(const Context& context, const _Create_LD_Param& param, KT_U64 wanted, VdPlan& plan) {
    const _Adapter_Info adapter = adapterInfo(context);
    if (param.HDCount == 0 || param.HDCount > MAX_MEMBERS) return KT_ERR_PD_COUNT;
    if (adapter.MaxPDPerVD && param.HDCount > adapter.MaxPDPerVD) return KT_ERR_PD_COUNT;
    const bool counts = param.RaidMode == KT_RAID6 || param.RaidMode == KT_RAID60;
    plan.geometry = Geometry{param.RaidMode, param.HDCount, counts ? param.NumParityDisk : KT_U8{0}};
    KT_U8 status = checkGeometry(adapter, plan.geometry, isArrayBased(adapter));
    if (status == KT_OK) status = checkStripe(adapter, param.StripeBlockSize);
    if (status == KT_OK) {
        status = checkOptions(adapter, {param.RaidMode, param.CachePolicy, param.InitializationOption,
                                        param.RoundingScheme, param.SectorCoefficient});
    }
    if (status == KT_OK) status = checkName(param.Name);
    if (status != KT_OK) return status;
    plan.stripe = param.StripeBlockSize;
    plan.sectorCoefficient = param.SectorCoefficient;
    plan.cachePolicy = param.CachePolicy;
    plan.initialization = param.InitializationOption;
    plan.dgid = KT_NO_ID;
    plan.startKib = NEVER;
    std::copy(std::begin(param.Name), std::end(param.Name), plan.name);
    std::vector<Disk> disks;
    const Sharing sharing = sharesDisks(adapter, param.RaidMode) ? Sharing::Part : Sharing::Whole;
    status = collectMembers(context, param.RaidMode, {param.HDIDs, param.HDCount}, sharing, disks);
    return status == KT_OK ? layOut(context, plan, disks, wanted, param.RoundingScheme) : status;
}

KT_U8 maxLdSize(const Context& context, _Create_LD_Param& param) {
    _Create_LD_Param asked = param;
    if (asked.StripeBlockSize == 0) asked.StripeBlockSize = defaultStripe();
    asked.CachePolicy = 0;
    asked.InitializationOption = KT_INIT_NONE;
    VdPlan plan = {};
    const KT_U8 status = planLd(context, asked, 0, plan);
    if (status == KT_OK) param.Size = plan.size;
    return status;
}

// Whether the size can be a file's: whole megabytes in KiB, with the rounding that goes with them.
static bool mayBeRestored(const _Create_LD_Param& param) {
    const KT_U64 megabytes = param.Size / KIB_PER_MB;
    const KT_U8 rounding = megabytes % 10000 == 0  ? KT_U8{KT_ROUND_10GB}
                           : megabytes % 1000 == 0 ? KT_U8{KT_ROUND_1GB}
                                                   : KT_U8{KT_ROUND_NONE};
    return param.Size % KIB_PER_MB == 0 && param.RoundingScheme == rounding;
}

static KT_U64 askedKib(const Context& context, const _Adapter_Info& adapter, const _Create_LD_Param& param) {
    const KT_U64 asked = mbToKib(param.Size);
    if (param.ReservedForApp != 0 || (isHybridLevel(param.RaidMode) && param.TandemWaterMark != 0)) return asked;
    if (adapter.DevID > FIRST_GENERATION) return param.Size;
    VdPlan plan = {};
    const bool tooLarge = planLd(context, param, asked, plan) == KT_ERR_NO_RESOURCE;
    return tooLarge && mayBeRestored(param) ? param.Size : asked;
}

KT_U8 createLd(const Context& context, const _Create_LD_Param& param) {
    const _Adapter_Info adapter = adapterInfo(context);
    const KT_U64 wanted = askedKib(context, adapter, param);
    if (isArrayBased(adapter)) return createLdInArray(context, param, wanted);
    VdPlan plan = {};
    const KT_U8 status = planLd(context, param, wanted, plan);
    KT_U16 vd = KT_NO_ID;
    return status == KT_OK ? buildVd(context, plan, vd) : status;
}

} // namespace sim
