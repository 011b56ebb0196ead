#include "devices/smart.h"
#include "frame/call.h"

using namespace sim;

static bool fillSmartStatus(Context& /*context*/, KT_U16 id, const PdState& state, _HD_SMART_STATUS& status) {
    status.HDID = id;
    status.SmartThresholdExceeded = state.smartTripped && state.config.SMARTOn ? 1 : 0;
    return true;
}

KT_U8 KT_PD_GetSmartStatus(KT_U8 a, _HD_SMART_Status_Request* request) {
    return listCall<PdState, _HD_SMART_STATUS>("KT_PD_GetSmartStatus", a, request, KT_ERR_INVALID_PD, fillSmartStatus);
}

KT_U8 KT_PD_GET_SMART_INFO(KT_U8 a, KT_U16 pd, _SMART_Info* info) {
    return call("KT_PD_GET_SMART_INFO", a, Access::Read, {num("pd", pd), out("info", info)},
                [&](Context& context) { return getSmartInfo(context, pd, *info); });
}

KT_U8 KT_PassThrough_ATA(KT_U8 a, KT_U16 pd, _ATA_PassThrough* command) {
    return call("KT_PassThrough_ATA", a, Access::Write, {num("pd", pd), inOut("command", command)},
                [&](Context& context) { return passThroughAta(context, pd, *command); });
}
