#include "activities/migrating.h"
#include "activities/steering.h"
#include "changes/arrays.h"
#include "changes/configuration.h"
#include "frame/call.h"

using namespace sim;

static bool fillConfig(Context& context, KT_U16 id, const _DG_Info& array, _DG_CONFIG& config) {
    config.DGID = id;
    config.WriteCacheOn = find<DgState>(context, id).value_or(DgState{}).writeCacheOn;
    memcpy(config.Name, array.Name, sizeof config.Name);
    return true;
}

KT_U8 KT_DG_GetInfo(KT_U8 a, _DG_Info_Request* request) {
    return listCall<_DG_Info>("KT_DG_GetInfo", a, request, KT_ERR_INVALID_ARRAY);
}

KT_U8 KT_DG_GetConfig(KT_U8 a, _DG_Config_Request* request) {
    return listCall<_DG_Info, _DG_CONFIG>("KT_DG_GetConfig", a, request, KT_ERR_INVALID_ARRAY, fillConfig);
}

KT_U8 KT_DG_SetConfig(KT_U8 a, KT_U16 dg, const _DG_CONFIG* config) {
    return call("KT_DG_SetConfig", a, Access::Write, {num("dg", dg), in("config", config)},
                [&](Context& context) { return configureArray(context, dg, *config); });
}

KT_U8 KT_DG_Delete(KT_U8 a, KT_U16 dg) {
    return call("KT_DG_Delete", a, Access::Write, {num("dg", dg)},
                [&](Context& context) { return deleteArray(context, dg); });
}

KT_U8 KT_DG_BGAControl(KT_U8 a, KT_U16 dg, KT_U8 control) {
    return call("KT_DG_BGAControl", a, Access::Write, {num("dg", dg), num("control", control)},
                [&](Context& context) { return controlArray(context, dg, control); });
}

KT_U8 KT_DG_StartMigration(KT_U8 a, _CreateOrModify_DG_Param* param, KT_U8 sizeOnly) {
    return call("KT_DG_StartMigration", a, sizeOnly ? Access::Read : Access::Write,
                {inOut("param", param), num("sizeOnly", sizeOnly)},
                [&](Context& context) { return startArrayMigration(context, *param, sizeOnly != 0); });
}

KT_U8 KT_CreateOrModify_DG(KT_U8 a, _CreateOrModify_DG_Param* param, KT_U8 sizeOnly) {
    return call("KT_CreateOrModify_DG", a, sizeOnly ? Access::Read : Access::Write,
                {inOut("param", param), num("sizeOnly", sizeOnly)},
                [&](Context& context) { return createArray(context, *param, sizeOnly != 0); });
}
