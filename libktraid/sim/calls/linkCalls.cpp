#include "frame/call.h"

using namespace sim;

KT_U8 KT_PD_GetPMInfo(KT_U8 a, _PM_Info_Request* request) {
    return listCall<_PM_Info>("KT_PD_GetPMInfo", a, request, KT_ERR_INVALID_PM);
}

KT_U8 KT_PD_GetExpanderInfo(KT_U8 a, _Exp_Info_Request* request) {
    return listCall<_Exp_Info>("KT_PD_GetExpanderInfo", a, request, KT_ERR_INVALID_EXPANDER);
}
