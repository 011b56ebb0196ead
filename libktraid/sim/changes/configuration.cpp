#include "changes/configuration.h"

#include "changes/health.h"
#include "changes/vdPlan.h"
#include "media/disks.h"
#include "media/wear.h"
#include "raid/cacheMode.h"
#include "state/events.h"

#include <algorithm>
#include <cstring>

namespace sim {

KT_U8 configureVd(const Context& context, KT_U16 id, const _LD_Config& config) {
    Vd vd = {};
    KT_U8 status = findVd(context, id, vd);
    if (status != KT_OK) return status;
    if (!isUsable(vd.info)) return KT_ERR_VD_NOT_READY;
    status = checkOptions(adapterInfo(context), {vd.info.RaidMode, config.CachePolicy});
    if (status == KT_OK) status = checkName(config.Name);
    if (status != KT_OK) return status;
    KT_U8 policy = config.CachePolicy;
    if (adapterInfo(context).AdvancedFeatures & KT_ADV_NO_WRITE_CACHE) policy |= KT_CACHE_OFF;
    const KT_U8 differs = policy ^ vd.state.cachePolicy;
    vd.state.cachePolicy = policy;
    vd.info.CacheMode = cacheModeFor(context, policy);
    memcpy(vd.info.Name, config.Name, sizeof vd.info.Name);
    saveVd(context, vd);
    if (differs & ~KT_CACHE_RESTORE) logEvent(context, EVT_VD_CACHE_CHANGED, id, vdParams(vd.info.RaidMode));
    return KT_OK;
}

KT_U8 configureArray(const Context& context, KT_U16 id, const _DG_CONFIG& config) {
    if (!isArrayBased(adapterInfo(context))) return KT_ERR_NOT_ON_THIS_ADAPTER;
    Array array = {};
    KT_U8 status = findArray(context, id, array);
    if (status == KT_OK) status = checkName(config.Name);
    if (status != KT_OK) return status;
    array.state.writeCacheOn = config.WriteCacheOn ? 1 : 0;
    memcpy(array.info.Name, config.Name, sizeof array.info.Name);
    saveArray(context, array);
    return KT_OK;
}

// Whether the disk's link can have the speed, or has it.
static bool runsAt(const Disk& disk, KT_U8 speed) {
    if (speed == disk.state.config.DriveSpeed) return true;
    return speed >= 1 && speed <= 4 && (disk.info.FeatureSupport & KT_U32{KT_HD_SPEED_1_5} << (speed - 1)) != 0;
}

KT_U8 configureDisk(const Context& context, KT_U16 id, const _HD_CONFIG& config) {
    Disk disk = {};
    const KT_U8 status = findDisk(context, id, disk);
    if (status != KT_OK) return status;
    const bool cacheChanges = (config.WriteCacheOn != 0) != (disk.state.config.WriteCacheOn != 0);
    const bool smartChanges = (config.SMARTOn != 0) != (disk.state.config.SMARTOn != 0);
    if (cacheChanges && !(disk.info.FeatureSupport & KT_HD_WRITE_CACHE)) return KT_ERR_NOT_SUPPORTED;
    if (smartChanges && !(disk.info.FeatureSupport & KT_HD_SMART)) return KT_ERR_NOT_SUPPORTED;
    if (!runsAt(disk, config.DriveSpeed)) return KT_ERR_NOT_SUPPORTED;
    disk.state.config.WriteCacheOn = config.WriteCacheOn ? 1 : 0;
    disk.state.config.SMARTOn = config.SMARTOn ? 1 : 0;
    disk.state.config.DriveSpeed = config.DriveSpeed;
    saveDisk(context, disk);
    if (cacheChanges) logEvent(context, EVT_PD_CACHE_CHANGED, id);
    if (smartChanges && config.SMARTOn) {
        logEvent(context, EVT_PD_SMART_STARTED, id);
        pollSmart(context, id);
    }
    if ((config.Online != 0) == (disk.state.config.Online != 0)) return KT_OK;
    return setDiskStatus(context, id, config.Online ? 1 : 0);
}

static KT_U8 lightDisk(const Context& context, KT_U16 id, bool on) {
    auto disk = find<_HD_Info>(context, id);
    if (!disk) return KT_ERR_INVALID_PD;
    if (disk->LocateLEDStatus == 0xFF) return KT_ERR_SGPIO;
    disk->LocateLEDStatus = on ? 1 : 0;
    save(context, id, *disk);
    return KT_OK;
}

KT_U8 locateDevice(const Context& context, KT_U8 kind, KT_U16 id, bool on) {
    if (kind == KT_DEVICE_PD) return lightDisk(context, id, on);
    if (kind != KT_DEVICE_VD) return KT_ERR_INVALID_PARAMETER;
    Vd vd = {};
    KT_U8 status = findVd(context, id, vd);
    for (int i = 0; status == KT_OK && i < geometryOf(vd.info).disks; ++i) {
        const auto block = find<_Block_Info>(context, vd.info.BlockIDs[i]);
        if (block) status = lightDisk(context, block->HDID, on);
    }
    return status;
}

} // namespace sim
