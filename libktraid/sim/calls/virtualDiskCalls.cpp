#include "activities/activities.h"
#include "activities/activityProgress.h"
#include "activities/migrating.h"
#include "activities/rebuilding.h"
#include "activities/steering.h"
#include "changes/arrays.h"
#include "changes/configuration.h"
#include "changes/creation.h"
#include "changes/deletion.h"
#include "changes/foreign.h"
#include "frame/call.h"

using namespace sim;

// Whether media patrol reads one of the disks under this virtual disk.
static bool patrolled(const Context& context, const _LD_Info& vd) {
    for (const KT_U16 blockId : vd.BlockIDs) {
        if (blockId == KT_NO_ID) continue;
        const auto block = find<_Block_Info>(context, blockId);
        const auto disk = block ? find<PdState>(context, block->HDID) : std::nullopt;
        if (disk && disk->patrol.state == KT_STATE_RUNNING) return true;
    }
    return false;
}

static void fillStatus(const Context& context, KT_U16 id, const _LD_Info& vd, _LD_STATUS& status) {
    status.LDID = id;
    status.Status = vd.Status;
    if (vd.BGAStatus == KT_STATE_NONE) return;
    const Activity activity = shownActivity(context, Vd{vd, find<VdState>(context, id).value_or(VdState{})});
    status.Bga = activity.kind;
    status.BgaState = activity.state;
    if (activity.kind) status.BgaPercentage = static_cast<KT_U16>(activityPercent(activity, context.now));
}

static bool fillVdConfig(Context& context, KT_U16 id, const _LD_Info& vd, _LD_Config& config) {
    config.LDID = id;
    config.CachePolicy = find<VdState>(context, id).value_or(VdState{}).cachePolicy;
    memcpy(config.Name, vd.Name, sizeof config.Name);
    return true;
}

KT_U8 KT_LD_GetInfo(KT_U8 a, _LD_Info_Request* request) {
    return listCall<_LD_Info>("KT_LD_GetInfo", a, request, KT_ERR_INVALID_VD);
}

KT_U8 KT_LD_GetStatus(KT_U8 a, _LD_Status_Request* request) {
    std::optional<bool> patrols; // any on the adapter; looked up once
    return listCall<_LD_Info, _LD_STATUS>(
        "KT_LD_GetStatus", a, request, KT_ERR_INVALID_VD,
        [&](const Context& context, KT_U16 id, const _LD_Info& vd, _LD_STATUS& status) {
            fillStatus(context, id, vd, status);
            if (!patrols) patrols = find<AdapterState>(context, 0).value_or(AdapterState{}).patrols != 0;
            if (*patrols && patrolled(context, vd)) status.BgaExt = KT_BGAEXT_MEDIA_PATROL;
            return true;
        });
}

KT_U8 KT_LD_GetConfig(KT_U8 a, _LD_Config_Request* request) {
    return listCall<_LD_Info, _LD_Config>("KT_LD_GetConfig", a, request, KT_ERR_INVALID_VD, fillVdConfig);
}

KT_U8 KT_LD_SetConfig(KT_U8 a, KT_U16 vd, const _LD_Config* config) {
    return call("KT_LD_SetConfig", a, Access::Write, {num("vd", vd), in("config", config)},
                [&](Context& context) { return configureVd(context, vd, *config); });
}

KT_U8 KT_LD_Create(KT_U8 a, _Create_LD_Param* param) {
    return call("KT_LD_Create", a, Access::Write, {inOut("param", param)},
                [&](Context& context) { return createLd(context, *param); });
}

KT_U8 KT_LD_DG_QuickCreate(KT_U8 a, KT_U8 type) {
    return call("KT_LD_DG_QuickCreate", a, Access::Write, {num("type", type)},
                [&](Context& context) { return quickCreate(context, type); });
}

KT_U8 KT_LD_Delete(KT_U8 a, KT_U16 vd, KT_U8 stopBga) {
    return call("KT_LD_Delete", a, Access::Write, {num("vd", vd), num("stopBga", stopBga)},
                [&](Context& context) { return deleteVd(context, vd, stopBga != 0); });
}

KT_U8 KT_LD_BGAControl(KT_U8 a, KT_U16 vd, KT_U8 control) {
    return call("KT_LD_BGAControl", a, Access::Write, {num("vd", vd), num("control", control)},
                [&](Context& context) { return controlVd(context, vd, control); });
}

KT_U8 KT_LD_StartINIT(KT_U8 a, KT_U16 vd, KT_U8 initType) {
    return call("KT_LD_StartINIT", a, Access::Write, {num("vd", vd), num("initType", initType)},
                [&](Context& context) { return startInitialization(context, vd, initType); });
}

KT_U8 KT_LD_StartConsistencyCheck(KT_U8 a, KT_U16 vd, KT_U8 fix) {
    return call("KT_LD_StartConsistencyCheck", a, Access::Write, {num("vd", vd), num("fix", fix)},
                [&](Context& context) { return startCheck(context, vd, fix); });
}

KT_U8 KT_LD_StartRebuild(KT_U8 a, KT_U16 vd, KT_U16 pd) {
    return call("KT_LD_StartRebuild", a, Access::Write, {num("vd", vd), num("pd", pd)},
                [&](Context& context) { return startVdRebuild(context, vd, pd); });
}

KT_U8 KT_LD_DG_StartRebuild(KT_U8 a, KT_U16 dg, KT_U8 pdCount, const KT_U16* pds) {
    return call("KT_LD_DG_StartRebuild", a, Access::Write,
                {num("dg", dg), num("pdCount", pdCount), bytes("pds", pds, sizeof(KT_U16) * pdCount)},
                [&](Context& context) { return startArrayRebuild(context, dg, pds, pdCount); });
}

KT_U8 KT_LD_StartMigration(KT_U8 a, _Create_LD_Param* param) {
    return call("KT_LD_StartMigration", a, Access::Write, {inOut("param", param)},
                [&](Context& context) { return startVdMigration(context, *param); });
}

KT_U8 KT_LD_GetMaxSize(KT_U8 a, _Create_LD_Param* param) {
    return call("KT_LD_GetMaxSize", a, Access::Read, {inOut("param", param)},
                [&](Context& context) { return maxLdSize(context, *param); });
}

KT_U8 KT_LD_GetMigratedLdSize(KT_U8 a, _Create_LD_Param* param) {
    return call("KT_LD_GetMigratedLdSize", a, Access::Read, {inOut("param", param)},
                [&](Context& context) { return migratedVdSize(context, *param); });
}

KT_U8 KT_LD_GetTargetLDInfo(KT_U8 a, KT_U16 vd, _LD_Info* target) {
    return call("KT_LD_GetTargetLDInfo", a, Access::Read, {num("vd", vd), out("target", target)},
                [&](Context& context) -> KT_U8 {
                    if (!find<_LD_Info>(context, vd)) return KT_ERR_INVALID_VD;
                    const auto found = find<VdTarget>(context, vd);
                    if (!found) return KT_ERR_VD_STATUS;
                    *target = found->info;
                    return KT_OK;
                });
}

KT_U8 KT_LD_Import(KT_U8 a, KT_U16 vd) {
    return call("KT_LD_Import", a, Access::Write, {num("vd", vd)},
                [&](Context& context) { return importVd(context, vd); });
}

KT_U8 KT_LD_Report(KT_U8 a, KT_U16 vd) {
    return call("KT_LD_Report", a, Access::Write, {num("vd", vd)},
                [&](Context& context) { return reportVd(context, vd); });
}

KT_U8 KT_LD_PauseAll(KT_U8 a) {
    return call("KT_LD_PauseAll", a, Access::Write, {}, [](Context& context) {
        pauseAll(context);
        return KT_OK;
    });
}

KT_U8 KT_CreateOrModify_VD(KT_U8 a, _CreateOrModify_VD_Param* param) {
    return call("KT_CreateOrModify_VD", a, Access::Write, {inOut("param", param)},
                [&](Context& context) { return createVdInArray(context, *param); });
}
