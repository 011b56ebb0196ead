#include "changes/vdPlan.h"

#include "activities/activities.h"
#include "activities/steering.h"
#include "media/blocks.h"
#include "media/disks.h"
#include "media/surface.h"
#include "raid/cacheMode.h"
#include "state/events.h"
#include "state/simClock.h"

#include <algorithm>

namespace sim {

static const KT_U16 DEFAULT_STRIPE = 64;
static const KT_U16 STRIPE_UNIT = 16;
static const KT_U64 GB_IN_KIB = 1000 * KIB_PER_MB;

KT_U16 defaultStripe() {
    return DEFAULT_STRIPE;
}

KT_U8 checkName(const KT_U8* name) {
    for (size_t i = 0; i < sizeof(_LD_Info::Name) && name[i] != 0; ++i)
        if (name[i] < ' ' || name[i] > '~') return KT_ERR_VD_NAME;
    return KT_OK;
}

KT_U8 checkStripe(const _Adapter_Info& adapter, KT_U16 stripe) {
    KT_U16 supported = adapter.StripeSizeSupported;
    if (supported == 0) supported = adapter.AdvancedFeatures & KT_ADV_BIG_STRIPE ? 0x7F : 0x0F;
    for (int bit = 0; bit < 7; ++bit)
        if ((supported >> bit & 1) != 0 && stripe == STRIPE_UNIT << bit) return KT_OK;
    return KT_ERR_BLOCK_SIZE;
}

static KT_U8 checkInitialization(const _Adapter_Info& adapter, KT_U8 level, KT_U8 option) {
    const bool brief = option == KT_INIT_QUICK || option == KT_INIT_NONE;
    if (!brief && option != KT_INIT_FOREGROUND && option != KT_INIT_BACKGROUND && option != KT_INIT_INTELLIGENT)
        return KT_ERR_INVALID_PARAMETER;
    if (option == KT_INIT_FOREGROUND && !(adapter.Features & KT_FEATURE_FOREGROUND_INIT)) return KT_ERR_NOT_SUPPORTED;
    if (option == KT_INIT_BACKGROUND && !(adapter.Features & KT_FEATURE_BACKGROUND_INIT)) return KT_ERR_NOT_SUPPORTED;
    return !brief && level == KT_RAID0 ? KT_U8{KT_ERR_NOT_SUPPORTED} : KT_U8{KT_OK};
}

KT_U8 checkOptions(const _Adapter_Info& adapter, const VdOptions& options) {
    const KT_U8 known = KT_CACHE_OFF | KT_CACHE_READ_AHEAD | KT_CACHE_AUTO | KT_CACHE_RESTORE;
    if ((options.cachePolicy & ~known) != 0) return KT_ERR_INVALID_PARAMETER;
    if ((options.cachePolicy & KT_CACHE_AUTO) && !(adapter.AdvancedFeatures & KT_ADV_BBU)) return KT_ERR_NOT_SUPPORTED;
    if ((options.cachePolicy & KT_CACHE_READ_AHEAD) && (adapter.AdvancedFeatures & KT_ADV_NO_READ_CACHE))
        return KT_ERR_NOT_SUPPORTED;
    if (options.rounding > KT_ROUND_10GB) return KT_ERR_INVALID_PARAMETER;
    if (options.rounding != KT_ROUND_NONE && (adapter.AdvancedFeatures & KT_ADV_NO_ROUNDING))
        return KT_ERR_NOT_SUPPORTED;
    if (options.sectorCoefficient > 8 || (options.sectorCoefficient & (options.sectorCoefficient - 1)) != 0)
        return KT_ERR_BLOCK_SIZE;
    return checkInitialization(adapter, options.level, options.initialization);
}

KT_U64 roundSize(KT_U64 kib, KT_U8 scheme) {
    if (scheme == KT_ROUND_NONE) return kib;
    const KT_U64 unit = scheme == KT_ROUND_1GB ? GB_IN_KIB : 10 * GB_IN_KIB;
    return kib - kib % unit;
}

static KT_U8 placeBlock(const Context& context, const VdPlan& plan, size_t slot, KT_U16 vd, KT_U16& blockId) {
    Disk disk = {};
    const KT_U8 status = findDisk(context, plan.disks[slot], disk);
    if (status != KT_OK) return status;
    _Block_Info block = {};
    block.HDID = plan.disks[slot];
    block.LDID = vd;
    block.BlockSize = static_cast<KT_U16>(disk.info.BlockSize);
    block.Size = kibToSectors(plan.kib[slot], disk.info.BlockSize);
    block.StartLBA = kibToSectors(plan.startKib == NEVER ? 0 : plan.startKib, disk.info.BlockSize);
    if (plan.startKib == NEVER) {
        const auto start = findSpace(context, block.HDID, disk.info, disk.state, block.Size);
        if (!start) return KT_ERR_NO_RESOURCE;
        block.StartLBA = *start;
    } else if (!isFreeSpace(context, block.HDID, block.StartLBA, block.Size)) {
        return KT_ERR_NO_RESOURCE;
    }
    blockId = addBlock(context, block);
    if (blockId == KT_NO_ID) return KT_ERR_NO_RESOURCE;
    forgetWrongData(context, block);
    disk.state.raid |= KT_PD_MEMBER;
    if (plan.initialization != KT_INIT_NONE) disk.state.hasMbr = 0;
    saveDisk(context, disk);
    return KT_OK;
}

static bool haveBlocksFor(const Context& context, size_t more) {
    const _Adapter_Info adapter = adapterInfo(context);
    const KT_U64 most = adapter.MaxTotalBlocks_V2 ? adapter.MaxTotalBlocks_V2 : adapter.MaxTotalBlocks;
    return most == 0 || count<_Block_Info>(context) + more <= most;
}

// Unlike every other virtual disk's of this adapter: the events' sequence never repeats.
static void makeGuid(const Context& context, _LD_Info& vd) {
    const KT_U64 sequence = lastRow(context.store, context.adapter, KIND_EVENT).value_or(0) + 1;
    const KT_U64 unique = (context.now / 1000) << 32 | (sequence & 0xFFFFFFFF);
    for (size_t i = 0; i < sizeof vd.LD_GUID; ++i)
        vd.LD_GUID[i] = static_cast<KT_U8>(unique >> (56 - 8 * i) & 0xFF);
    vd.LD_GUID[4] = static_cast<KT_U8>(vd.LD_GUID[4] ^ (context.adapter + 1));
}

static Vd describeVd(const Context& context, const VdPlan& plan, KT_U16 id) {
    Vd vd = {};
    vd.info.ID = id;
    vd.info.StripeBlockSize = plan.stripe;
    vd.info.RaidMode = plan.geometry.level;
    vd.info.HDCount = vd.info.BlkCount = plan.geometry.disks;
    vd.state.cachePolicy = plan.cachePolicy;
    if (adapterInfo(context).AdvancedFeatures & KT_ADV_NO_WRITE_CACHE) vd.state.cachePolicy |= KT_CACHE_OFF;
    vd.info.CacheMode = cacheModeFor(context, vd.state.cachePolicy);
    vd.info.SectorCoefficient = std::max<KT_U8>(plan.sectorCoefficient, 1);
    vd.info.AdapterID = context.adapter;
    vd.info.DGID = plan.dgid;
    vd.info.Size = plan.size;
    std::copy(std::begin(plan.name), std::end(plan.name), vd.info.Name);
    std::fill(std::begin(vd.info.BlockIDs), std::end(vd.info.BlockIDs), KT_U16{KT_NO_ID});
    const KT_U8 subs = subCount(plan.geometry);
    vd.info.SubLDCount = subs > 1 ? subs : KT_U8{0};
    vd.info.NumParityDisk = plan.geometry.parity;
    const auto seconds = static_cast<KT_U32>(shownTime(context) / 1000);
    vd.info.time_hi = static_cast<KT_U16>(seconds >> 16);
    vd.info.time_low = static_cast<KT_U16>(seconds & 0xFFFF);
    vd.state.whole = plan.whole ? 1 : 0;
    vd.state.linkedDisk = vd.state.activity.disk = KT_NO_ID;
    std::fill(std::begin(vd.state.homes), std::end(vd.state.homes), KT_U16{KT_NO_ID});
    std::copy(plan.disks.begin(), plan.disks.end(), vd.state.homes);
    makeGuid(context, vd.info);
    return vd;
}

static void startInitialization(const Context& context, const VdPlan& plan, KT_U16 id) {
    const KT_U64 share = *std::max_element(plan.kib.begin(), plan.kib.end());
    KT_U8 kind = 0;
    if (plan.initialization == KT_INIT_QUICK) kind = KT_BGA_INIT_QUICK;
    if (plan.initialization == KT_INIT_FOREGROUND) kind = KT_BGA_INIT_FOREGROUND;
    if (plan.initialization == KT_INIT_BACKGROUND || plan.initialization == KT_INIT_INTELLIGENT)
        kind = KT_BGA_INIT_BACKGROUND;
    if (kind) startActivity(context, Owner{OwnerKind::Vd, id}, kind, initializationWork(kind, share), KT_NO_ID);
    arbitrate(context);
}

KT_U8 buildVd(const Context& context, const VdPlan& plan, KT_U16& vdId) {
    const _Adapter_Info adapter = adapterInfo(context);
    const KT_U64 most = adapter.MaxLogicalDrive ? adapter.MaxLogicalDrive : 255;
    vdId = freeId(context, KIND_VD, std::min<KT_U64>(most, KT_BLOCK_FREE));
    if (vdId == KT_NO_ID) return KT_ERR_NO_VD_ID;
    if (!haveBlocksFor(context, plan.disks.size())) return KT_ERR_NO_RESOURCE;
    Vd vd = describeVd(context, plan, vdId);
    for (size_t i = 0; i < plan.disks.size(); ++i) {
        const KT_U8 status = placeBlock(context, plan, i, vdId, vd.info.BlockIDs[i]);
        if (status != KT_OK) return status;
        const auto disk = find<_HD_Info>(context, plan.disks[i]);
        if (disk) vd.info.BlockSize = disk->BlockSize;
    }
    saveVd(context, vd);
    logEvent(context, EVT_VD_CREATED, vdId, vdParams(plan.geometry.level));
    refreshVdStatus(context, vdId);
    startInitialization(context, plan, vdId);
    return KT_OK;
}

} // namespace sim
