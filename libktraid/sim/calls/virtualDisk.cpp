#include "call.h"

using namespace sim;

KT_U8 KT_LD_GetInfo(KT_U8 a, _LD_Info_Request* request) {
    return notSupported("KT_LD_GetInfo", a, {Arg{"request", ArgType::List, 0, request, sizeof(_LD_Info)}});
}

KT_U8 KT_LD_GetStatus(KT_U8 a, _LD_Status_Request* request) {
    return notSupported("KT_LD_GetStatus", a, {Arg{"request", ArgType::List, 0, request, sizeof(_LD_STATUS)}});
}

KT_U8 KT_LD_GetConfig(KT_U8 a, _LD_Config_Request* request) {
    return notSupported("KT_LD_GetConfig", a, {Arg{"request", ArgType::List, 0, request, sizeof(_LD_Config)}});
}

KT_U8 KT_LD_SetConfig(KT_U8 a, KT_U16 vd, const _LD_Config* config) {
    return notSupported("KT_LD_SetConfig", a, {num("vd", vd), in("config", config)});
}

KT_U8 KT_LD_Create(KT_U8 a, _Create_LD_Param* param) {
    return notSupported("KT_LD_Create", a, {inOut("param", param)});
}

KT_U8 KT_LD_DG_QuickCreate(KT_U8 a, KT_U8 type) {
    return notSupported("KT_LD_DG_QuickCreate", a, {num("type", type)});
}

KT_U8 KT_LD_Delete(KT_U8 a, KT_U16 vd, KT_U8 stopBga) {
    return notSupported("KT_LD_Delete", a, {num("vd", vd), num("stopBga", stopBga)});
}

KT_U8 KT_LD_BGAControl(KT_U8 a, KT_U16 vd, KT_U8 control) {
    return notSupported("KT_LD_BGAControl", a, {num("vd", vd), num("control", control)});
}

KT_U8 KT_LD_StartINIT(KT_U8 a, KT_U16 vd, KT_U8 initType) {
    return notSupported("KT_LD_StartINIT", a, {num("vd", vd), num("initType", initType)});
}

KT_U8 KT_LD_StartConsistencyCheck(KT_U8 a, KT_U16 vd, KT_U8 fix) {
    return notSupported("KT_LD_StartConsistencyCheck", a, {num("vd", vd), num("fix", fix)});
}

KT_U8 KT_LD_StartRebuild(KT_U8 a, KT_U16 vd, KT_U16 pd) {
    return notSupported("KT_LD_StartRebuild", a, {num("vd", vd), num("pd", pd)});
}

KT_U8 KT_LD_DG_StartRebuild(KT_U8 a, KT_U16 dg, KT_U8 pdCount, const KT_U16* pds) {
    return notSupported("KT_LD_DG_StartRebuild", a,
                        {num("dg", dg), num("pdCount", pdCount), bytes("pds", pds, sizeof(KT_U16) * pdCount)});
}

KT_U8 KT_LD_StartMigration(KT_U8 a, _Create_LD_Param* param) {
    return notSupported("KT_LD_StartMigration", a, {inOut("param", param)});
}

KT_U8 KT_LD_GetMaxSize(KT_U8 a, _Create_LD_Param* param) {
    return notSupported("KT_LD_GetMaxSize", a, {inOut("param", param)});
}

KT_U8 KT_LD_GetMigratedLdSize(KT_U8 a, _Create_LD_Param* param) {
    return notSupported("KT_LD_GetMigratedLdSize", a, {inOut("param", param)});
}

KT_U8 KT_LD_GetTargetLDInfo(KT_U8 a, KT_U16 vd, _LD_Info* target) {
    return notSupported("KT_LD_GetTargetLDInfo", a, {num("vd", vd), out("target", target)});
}

KT_U8 KT_LD_Import(KT_U8 a, KT_U16 vd) {
    return notSupported("KT_LD_Import", a, {num("vd", vd)});
}

KT_U8 KT_LD_Report(KT_U8 a, KT_U16 vd) {
    return notSupported("KT_LD_Report", a, {num("vd", vd)});
}

KT_U8 KT_LD_PauseAll(KT_U8 a) {
    return notSupported("KT_LD_PauseAll", a, {});
}

KT_U8 KT_CreateOrModify_VD(KT_U8 a, _CreateOrModify_VD_Param* param) {
    return notSupported("KT_CreateOrModify_VD", a, {inOut("param", param)});
}
