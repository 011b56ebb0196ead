#include "activities/activityProgress.h"
#include "activities/steering.h"
#include "changes/configuration.h"
#include "changes/health.h"
#include "changes/spareRoles.h"
#include "frame/call.h"
#include "media/blocks.h"
#include "raid/volumes.h"

using namespace sim;

static bool fillRaidStatus(Context& /*context*/, KT_U16 id, const PdState& state, _HD_RAID_STATUS& status) {
    status.HDID = id;
    status.DGID = state.dgid;
    status.Status = state.raid;
    if (state.patrol.kind == KT_PD_BGA_MEDIA_PATROL && state.patrol.state == KT_STATE_RUNNING)
        status.Status |= KT_PD_MEDIA_PATROL;
    return true;
}

static bool fillDiskConfig(Context& /*context*/, KT_U16 id, const PdState& state, _HD_CONFIG& config) {
    config = state.config;
    config.HDID = id;
    return true;
}

static bool fillActivity(Context& context, KT_U16 id, const PdState& state, _HD_BGA_STATUS& status) {
    status.HDID = id;
    status.Bga = state.patrol.kind;
    status.BgaState = state.patrol.state;
    if (state.patrol.kind) status.Percentage = static_cast<KT_U8>(activityPercent(state.patrol, context.now));
    return true;
}

static KT_U8 vdHasOs(const Context& context, KT_U16 vd) {
    Vd found = {};
    if (findVd(context, vd, found) != KT_OK) return KT_ERR_INVALID_VD;
    return runsSystem(found) ? KT_ERR_VD_HAS_OS : KT_OK;
}

static KT_U8 pdHasOs(const Context& context, KT_U16 pd) {
    const auto state = find<PdState>(context, pd);
    if (!state) return KT_ERR_INVALID_PD;
    return runsSystem(*state) ? KT_ERR_PD_HAS_OS : KT_OK;
}

KT_U8 KT_PD_GetHDInfo(KT_U8 a, _HD_Info_Request* request) {
    return listCall<_HD_Info>("KT_PD_GetHDInfo", a, request, KT_ERR_INVALID_PD);
}

KT_U8 KT_PD_GetHDInfo_Ext(KT_U8 a, _HD_Info_Request* request) {
    return listCall<_HD_Info>("KT_PD_GetHDInfo_Ext", a, request, KT_ERR_INVALID_PD);
}

KT_U8 KT_PD_GetHDRaidStatus(KT_U8 a, _HD_RAID_Status_Request* request) {
    return listCall<PdState, _HD_RAID_STATUS>("KT_PD_GetHDRaidStatus", a, request, KT_ERR_INVALID_PD, fillRaidStatus);
}

KT_U8 KT_PD_GetConfig(KT_U8 a, _HD_Config_Request* request) {
    return listCall<PdState, _HD_CONFIG>("KT_PD_GetConfig", a, request, KT_ERR_INVALID_PD, fillDiskConfig);
}

KT_U8 KT_PD_SetConfig(KT_U8 a, KT_U16 pd, const _HD_CONFIG* config) {
    return call("KT_PD_SetConfig", a, Access::Write, {num("pd", pd), in("config", config)},
                [&](Context& context) { return configureDisk(context, pd, *config); });
}

KT_U8 KT_PD_SetHDStatus(KT_U8 a, KT_U16 pd, KT_U8 status) {
    return call("KT_PD_SetHDStatus", a, Access::Write, {num("pd", pd), num("status", status)},
                [&](Context& context) { return setDiskStatus(context, pd, status); });
}

KT_U8 KT_PD_GetFreeSpaceInfo(KT_U8 a, KT_U16 pd, _HD_FreeSpaceInfo* info) {
    return call("KT_PD_GetFreeSpaceInfo", a, Access::Read, {num("pd", pd), out("info", info)},
                [&](Context& context) -> KT_U8 {
                    const auto disk = find<_HD_Info>(context, pd);
                    const auto state = find<PdState>(context, pd);
                    if (!disk || !state) return KT_ERR_INVALID_PD;
                    *info = {};
                    info->HDID = pd;
                    info->AdapterID = a;
                    info->ValidSize = validKib(*disk, *state);
                    info->FreeSize = freeKib(context, pd, info->ValidSize);
                    return KT_OK;
                });
}

KT_U8 KT_PD_GetBGAStatus(KT_U8 a, _HD_BGA_Status_Request* request) {
    return listCall<PdState, _HD_BGA_STATUS>("KT_PD_GetBGAStatus", a, request, KT_ERR_INVALID_PD, fillActivity);
}

KT_U8 KT_PD_BGAControl(KT_U8 a, KT_U16 pd, KT_U8 control) {
    return call("KT_PD_BGAControl", a, Access::Write, {num("pd", pd), num("control", control)},
                [&](Context& context) { return controlPatrol(context, pd, control); });
}

KT_U8 KT_PD_StartMediaPatrol(KT_U8 a, KT_U16 pd) {
    return call("KT_PD_StartMediaPatrol", a, Access::Write, {num("pd", pd)},
                [&](Context& context) { return startPatrol(context, pd); });
}

KT_U8 KT_PD_GetMBRInfo(KT_U8 a, _HD_MBR_Info* info) {
    return call("KT_PD_GetMBRInfo", a, Access::Read, {inOut("info", info)}, [&](Context& context) -> KT_U8 {
        if (info->HDCount > sizeof info->hasMBR) return KT_ERR_PD_COUNT;
        for (int i = 0; i < info->HDCount; ++i) {
            const auto state = find<PdState>(context, info->HDIDs[i]);
            if (!state) return KT_ERR_INVALID_PD;
            info->hasMBR[i] = state->hasMbr;
        }
        return KT_OK;
    });
}

KT_U8 KT_PD_FreeHD2DGSpare(KT_U8 a, KT_U16 pd, KT_U16 dg) {
    return call("KT_PD_FreeHD2DGSpare", a, Access::Write, {num("pd", pd), num("dg", dg)},
                [&](Context& context) { return makeDedicatedSpare(context, pd, dg); });
}

KT_U8 KT_PD_FreeHD2GlobalSpare(KT_U8 a, KT_U16 pd) {
    return call("KT_PD_FreeHD2GlobalSpare", a, Access::Write, {num("pd", pd)},
                [&](Context& context) { return makeGlobalSpare(context, pd); });
}

KT_U8 KT_PD_Spare2FreeHD(KT_U8 a, KT_U16 pd) {
    return call("KT_PD_Spare2FreeHD", a, Access::Write, {num("pd", pd)},
                [&](Context& context) { return releaseSpare(context, pd); });
}

KT_U8 KT_PD_WipeHDMDD(KT_U8 a, KT_U16 pd, KT_U8 force) {
    return call("KT_PD_WipeHDMDD", a, Access::Write, {num("pd", pd), num("force", force)},
                [&](Context& context) { return wipeDisk(context, pd, force != 0); });
}

KT_U8 KT_DiskHasOS(KT_U8 a, KT_U8 kind, KT_U8 count, const KT_U16* ids) {
    return call("KT_DiskHasOS", a, Access::Read,
                {num("kind", kind), num("count", count), bytes("ids", ids, sizeof(KT_U16) * count)},
                [&](Context& context) -> KT_U8 {
                    if (kind != KT_DEVICE_VD && kind != KT_DEVICE_PD) return KT_ERR_INVALID_PARAMETER;
                    KT_U8 status = KT_OK;
                    for (int i = 0; i < count && status == KT_OK; ++i)
                        status = kind == KT_DEVICE_VD ? vdHasOs(context, ids[i]) : pdHasOs(context, ids[i]);
                    return status;
                });
}

KT_U8 KT_LocateArrayDevice(KT_U8 a, KT_U8 kind, KT_U16 id, KT_U8 on) {
    return call("KT_LocateArrayDevice", a, Access::Write, {num("kind", kind), num("id", id), num("on", on)},
                [&](Context& context) { return locateDevice(context, kind, id, on != 0); });
}
