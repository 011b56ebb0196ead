#include "call.h"

using namespace sim;

KT_U8 KT_PD_GetSmartStatus(KT_U8 a, _HD_SMART_Status_Request* request) {
    return notSupported("KT_PD_GetSmartStatus", a,
                        {Arg{"request", ArgType::List, 0, request, sizeof(_HD_SMART_STATUS)}});
}

KT_U8 KT_PD_GET_SMART_INFO(KT_U8 a, KT_U16 pd, _SMART_Info* info) {
    return notSupported("KT_PD_GET_SMART_INFO", a, {num("pd", pd), out("info", info)});
}

KT_U8 KT_PassThrough_ATA(KT_U8 a, KT_U16 pd, _ATA_PassThrough* command) {
    return notSupported("KT_PassThrough_ATA", a, {num("pd", pd), inOut("command", command)});
}
